#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace kelvinbar {

/// What a channel measures or tells. It decides the unit of a value and what a value can be at all.
enum class SensorKind : std::uint8_t {
    temperature, ///< °C
    voltage,     ///< V
    current,     ///< A
    power,       ///< W
    energy,      ///< a counter of joules, shown as the power it grows by
    fan,         ///< RPM
    fanMinimum,
    fanMaximum,
    fanTarget,
    fanSafe,
    fanMode,
    charge,    ///< mAh
    count,     ///< a number of something
    duration,  ///< minutes
    percent,   ///< %
    flag,      ///< 0 or 1
    text,      ///< a word
    frequency, ///< MHz
    humidity,  ///< %
};

/// One channel of a chip: one value that the kernel publishes.
struct SensorChannel {
    SensorChannel() = default;

    SensorChannel(SensorKind kindOfChannel, int numberOfChannel)
        : kind(kindOfChannel), number(numberOfChannel) {}

    SensorKind kind = SensorKind::temperature;
    int number = 0;              ///< the channel's number among those of its kind
    std::string feature;         ///< the kernel's name of the channel: "temp3", "charge_now"
    std::string label;           ///< the driver's; where it gives none, the channel's file prefix ("temp3")
    bool isLabelled = false;     ///< whether the label is the driver's
    std::filesystem::path file;  ///< empty for a channel that is switched off
    double countsPerUnit = 1;    ///< what the file's number is divided by
    std::filesystem::path fault; ///< says 1 while the value is not to be trusted; empty when there is none
    std::filesystem::path range; ///< of an energy counter: the number after which it begins anew
};

/// A device with channels.
struct SensorChip {
    std::string device;       ///< where it sits on its bus: the same after every boot
    std::string name;         ///< the driver's name of the chip
    std::string stableName;   ///< the name without what the kernel counts up ("iwlwifi_1" is "iwlwifi")
    std::string sensorsName;  ///< as libsensors names it ("k10temp-pci-00c3"); a supply's or zone's own name
    std::string model;        ///< of a drive, as its maker names it; empty when it tells none
    std::string network;      ///< the network interface of the device that has the chip ("enp3s0")
    std::optional<int> place; ///< socket or slot, counted from 0, where the device tells it
    std::filesystem::path folder;                   ///< where its channels are
    std::vector<std::filesystem::path> powerStates; ///< files that tell whether the device sleeps
    std::vector<SensorChannel> channels;
};

} // namespace kelvinbar
