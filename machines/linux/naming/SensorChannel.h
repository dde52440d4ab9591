#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// Kernel sensors as data: chips and their channels with the paths of their files. The sources fill these in,
/// naming works on them, and neither needs the other. Plain values.
namespace kelvinbar {

/// What a channel measures or reports. Determines the unit of a value and its possible range.
enum class SensorKind : std::uint8_t {
    temperature, ///< °C
    voltage,     ///< V
    current,     ///< A
    power,       ///< W
    energy,      ///< a counter in joules, shown as power
    fan,         ///< RPM
    fanMinimum,
    fanMaximum,
    fanTarget,
    fanSafe,
    fanMode,
    charge,    ///< mAh
    count,     ///< without a unit
    duration,  ///< minutes
    percent,   ///< %
    flag,      ///< 0 or 1
    text,      ///< "Charging"
    frequency, ///< MHz
    humidity,  ///< %
};

/// One channel of a chip: one value that the kernel publishes.
struct SensorChannel {
    SensorChannel() = default;

    SensorChannel(SensorKind kindOfChannel, int numberOfChannel)
        : kind(kindOfChannel), number(numberOfChannel) {}

    SensorKind kind = SensorKind::temperature;
    int number = 0;              ///< within its kind
    std::string feature;         ///< the kernel's name of the channel: "temp3", "charge_now"
    std::string label;           ///< the driver's, or else the channel's file prefix ("temp3")
    bool isLabelled = false;     ///< whether the driver or the user has set the label
    std::filesystem::path file;  ///< empty for a channel that is switched off
    double countsPerUnit = 1;    ///< the number in the file is divided by this
    std::filesystem::path fault; ///< contains 1 while the value is invalid; may be empty
    std::filesystem::path range; ///< of an energy counter: contains its highest value
};

/// A device with channels.
struct SensorChip {
    std::string device;           ///< its path on the bus; the same after every boot
    std::string name;             ///< the driver's name of the chip
    std::string stableName;       ///< the name without the kernel's counter ("iwlwifi" of "iwlwifi_1")
    std::string sensorsName;      ///< as in libsensors ("k10temp-pci-00c3"), or a supply's or zone's own name
    std::string model;            ///< of a drive, as reported by it; may be empty
    std::string network;          ///< the network interface of its device ("enp3s0"); may be empty
    std::optional<int> place;     ///< socket or slot from 0, if the device reports it
    std::filesystem::path entry;  ///< in the kernel's class; the device's name for the watch
    std::filesystem::path folder; ///< contains the files of its channels
    std::vector<std::filesystem::path> powerStates; ///< files with the power state of its devices
    std::vector<SensorChannel> channels;
};

} // namespace kelvinbar
