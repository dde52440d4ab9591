#include "machines/linux/sources/PowerSupplies.h"

#include "base/Text.h"
#include "machines/linux/files/DevicePath.h"
#include "machines/linux/files/SystemFile.h"
#include "sensors/ReadWatch.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <optional>
#include <utility>

namespace kelvinbar {

namespace {

namespace fs = std::filesystem;

struct Attribute {
    std::string_view file;
    SensorKind kind;
    double countsPerUnit;
};

constexpr std::array attributes{
    Attribute{"voltage_now", SensorKind::voltage, 1e6},
    Attribute{"current_now", SensorKind::current, 1e6},
    Attribute{"power_now", SensorKind::power, 1e6},
    Attribute{"charge_now", SensorKind::charge, 1e3},
    Attribute{"charge_full", SensorKind::charge, 1e3},
    Attribute{"charge_full_design", SensorKind::charge, 1e3},
    Attribute{"cycle_count", SensorKind::count, 1},
    Attribute{"capacity", SensorKind::percent, 1},
    Attribute{"temp", SensorKind::temperature, 10},
    Attribute{"temp_ambient", SensorKind::temperature, 10},
    Attribute{"time_to_empty_now", SensorKind::duration, 60},
    Attribute{"time_to_full_now", SensorKind::duration, 60},
    Attribute{"status", SensorKind::text, 1},
    Attribute{"online", SensorKind::flag, 1},
};

/// Attributes of batteries that count energy instead of charge.
constexpr std::array<std::pair<std::string_view, std::string_view>, 3> energyAttributes{{
    {"energy_now", "charge_now"},
    {"energy_full", "charge_full"},
    {"energy_full_design", "charge_full_design"},
}};

SensorChannel channelOf(const fs::path& supply, std::string_view attribute, SensorKind kind,
                        double countsPerUnit) {
    SensorChannel channel(kind, 0);
    channel.feature = channel.label = attribute;
    channel.isLabelled = true;
    channel.file = supply / attribute;
    channel.countsPerUnit = countsPerUnit;
    return channel;
}

/// The voltage for converting the battery's energy to charge, in microvolts: the design voltage, or else the
/// present one; 0 when both are unknown.
double microvoltsOfCharge(const fs::path& supply) {
    for (const char* const file : {"voltage_min_design", "voltage_max_design", "voltage_now"}) {
        const auto voltage = systemFileNumber(supply / file);
        if (voltage && *voltage > 0) return static_cast<double>(*voltage);
    }
    return 0;
}

void appendEnergies(SensorChip& chip) {
    const double voltage = microvoltsOfCharge(chip.folder);
    if (voltage == 0) return;
    for (const auto& [energy, charge] : energyAttributes) {
        if (isThere(chip.folder / charge) || !isThere(chip.folder / energy)) continue;
        // Microwatt-hours over microvolts are ampere-hours.
        chip.channels.push_back(channelOf(chip.folder, energy, SensorKind::charge, voltage / 1e3));
    }
}

bool isOfAnotherDevice(const fs::path& supply) { return systemFileLine(supply / "scope") == "Device"; }

std::string_view chipPrefix(const fs::path& supply) {
    const auto type = systemFileLine(supply / "type");
    if (type != "Battery" && type != "UPS") return chargerChipPrefix;
    return isOfAnotherDevice(supply) ? peripheralChipPrefix : batteryChipPrefix;
}

SensorChip chipAt(const fs::path& supply) {
    const std::string entry = supply.filename().string();
    const std::string_view prefix = chipPrefix(supply);
    SensorChip chip;
    chip.name = std::string(prefix).append(entry);
    // The number in a peripheral's entry increases at each connection; its serial number stays.
    chip.device = systemFileLine(supply / "serial_number").value_or(entry);
    chip.stableName = prefix;
    chip.sensorsName = entry;
    chip.entry = chip.folder = supply;
    for (const Attribute& attribute : attributes) {
        const bool isForChargersOnly = attribute.kind == SensorKind::flag;
        if (isForChargersOnly && prefix != chargerChipPrefix) continue;
        if (!isThere(supply / attribute.file)) continue;
        chip.channels.push_back(channelOf(supply, attribute.file, attribute.kind, attribute.countsPerUnit));
    }
    appendEnergies(chip);
    return chip;
}

void leaveOutSupply(LeftOutChannels* leftOut, const fs::path& supply) {
    if (leftOut == nullptr) return;
    leftOut->push_back({supply.native(), supply.filename().native(), LeftOutReason::unconnected});
}

} // namespace

std::vector<SensorChip> powerSupplyChips(const fs::path& root, LeftOutChannels* leftOut) {
    std::vector<SensorChip> chips;
    std::vector<SensorChip> ofOtherDevices;
    for (const fs::path& supply : visitedClassEntries(root, "power_supply")) {
        const DeviceVisit visit(supply.native(), LogCategory::sourceKernel);
        if (!visit.isAllowed()) continue;
        if (systemFileLine(supply / "present") == "0") {
            leaveOutSupply(leftOut, supply);
            continue;
        }
        (isOfAnotherDevice(supply) ? ofOtherDevices : chips).push_back(chipAt(supply));
    }
    std::ranges::move(ofOtherDevices, std::back_inserter(chips));
    return chips;
}

} // namespace kelvinbar
