#include "catalogue/KeyTable.h"

#include "base/NumberText.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>
#include <iterator>
#include <span>
#include <string>
#include <string_view>

namespace kelvinbar {

namespace {

using enum SMCCategory;

constexpr std::string_view celsius = "°C";

struct NamedKey {
    std::string_view key;
    std::string_view name;
};

/// A named key with what its group leaves open.
struct NamedKeyIn {
    std::string_view key;
    std::string_view name;
    SMCCategory category;
};

struct NamedKeyWithUnit {
    std::string_view key;
    std::string_view name;
    std::string_view unit;
};

constexpr std::array controllerKeys{
    NamedKey{"REV ", "SMC Revision"},
    NamedKey{"RBr ", "SMC Branch"},
    NamedKey{"RVBF", "SMC Build"},
};

constexpr std::array cpuKeys{
    NamedKey{"TC0D", "CPU 0 Diode"}, NamedKey{"TC0P", "CPU Proximity"}, NamedKey{"TC0H", "CPU Heatsink"},
    NamedKey{"TC0E", "CPU 0 TCOE"},  NamedKey{"TC0F", "CPU Fin Stack"}, NamedKey{"TC0J", "CPU Junction"},
    NamedKey{"TC0T", "CPU Package"}, NamedKey{"TC0p", "CPU Package"},   NamedKey{"TC0C", "Core 0"},
};

constexpr std::array powerKeys{
    NamedKeyIn{"PC0C", "Package Total", power},      NamedKeyIn{"PC0R", "Package Total", power},
    NamedKeyIn{"PCPC", "Package Core", power},       NamedKeyIn{"PCPG", "Package IGPU", gpu},
    NamedKeyIn{"PCPL", "CPU Power Limit", power},    NamedKeyIn{"PCPR", "CPU Package Power", power},
    NamedKeyIn{"PSTR", "CPU Package Energy", power}, NamedKeyIn{"PCPT", "CPU Power", power},
    NamedKeyIn{"PCTR", "CPU Power", power},
};

constexpr std::array memoryKeys{
    NamedKey{"TM0P", "Memory Proximity"},
    NamedKey{"TM0S", "Memory Slot"},
    NamedKey{"TM0A", "Memory Ambient"},
};

constexpr std::array thermalAndStorageKeys{
    NamedKey{"TA0P", "Ambient"},
    NamedKey{"TA0S", "Ambient Sensor"},
    NamedKey{"TA0V", "Ambient Virtual"},
    NamedKey{"TCHP", "PCH Proximity"},
    NamedKey{"TP0P", "PCH Proximity"},
    NamedKey{"TPCD", "PCH Diode"},
    NamedKey{"TH0P", "Drive Bay Proximity"},
    NamedKey{"TH1P", "Drive 1 Proximity"},
    NamedKey{"TH2P", "Drive 2 Proximity"},
    NamedKey{"TN0P", "NVMe 0 Proximity"},
    NamedKey{"TN0D", "NVMe 0 Die"},
    NamedKey{"TN1P", "NVMe 1 Proximity"},
    NamedKey{"TN1D", "NVMe 1 Die"},
    NamedKey{"TS0P", "SATA 0 Proximity"},
    NamedKey{"TS1P", "SATA 1 Proximity"},
    NamedKey{"TW0P", "Wi-Fi Proximity"},
    NamedKey{"TL0P", "LCD Proximity"},
    NamedKey{"TI0P", "Thunderbolt 0 Proximity"},
    NamedKey{"TI1P", "Thunderbolt 1 Proximity"},
    NamedKey{"TB0T", "Battery Temperature"},
    NamedKey{"TB1T", "Battery Temperature 1"},
};

constexpr std::array namedThermalKeys{
    NamedKey{"TCPU", "CPU"},           NamedKey{"TSYS", "System"},  NamedKey{"TAUX", "Aux"},
    NamedKey{"TMOS", "MOS"},           NamedKey{"TPCH", "PCH"},     NamedKey{"TVRM", "VRM"},
    NamedKey{"TGPU", "GPU"},           NamedKey{"TAMB", "Ambient"}, NamedKey{"TMB1", "Motherboard 1"},
    NamedKey{"TMB2", "Motherboard 2"}, NamedKey{"THRM", "Thermal"},
};

constexpr std::array voltageKeys{
    NamedKey{"VCPU", "CPU Voltage"}, NamedKey{"VCOR", "CPU Core Voltage"},
    NamedKey{"VIN0", "Voltage 0"},   NamedKey{"VIN1", "Voltage 1"},
    NamedKey{"VIN2", "Voltage 2"},   NamedKey{"VIN3", "Voltage 3"},
    NamedKey{"VIN4", "Voltage 4"},   NamedKey{"VIN5", "Voltage 5"},
    NamedKey{"VIN6", "Voltage 6"},   NamedKey{"VIN7", "Voltage 7"},
    NamedKey{"VIN8", "Voltage 8"},   NamedKey{"VIN9", "Voltage 9"},
    NamedKey{"V12R", "+12V"},        NamedKey{"V05R", "+5V"},
    NamedKey{"V33R", "+3.3V"},       NamedKey{"V50R", "+5V"},
    NamedKey{"V3V3", "+3.3V"},       NamedKey{"V5VP", "+5V"},
    NamedKey{"VSB3", "3VSB"},        NamedKey{"VBAT", "Battery Voltage"},
    NamedKey{"VTT ", "VTT"},         NamedKey{"VSA ", "VCCSA"},
    NamedKey{"VCC ", "VCC"},         NamedKey{"VIO ", "VCCIO"},
    NamedKey{"VPLL", "PLL Voltage"}, NamedKey{"VAXG", "VAXG"},
};

constexpr std::array chargerKeys{
    NamedKeyWithUnit{"BNum", "Battery Count", ""},    NamedKeyWithUnit{"CH0B", "Charger Connected", ""},
    NamedKeyWithUnit{"CH0C", "Charger Current", "A"}, NamedKeyWithUnit{"CH0V", "Charger Voltage", "V"},
    NamedKeyWithUnit{"CH0W", "Charger Power", "W"},   NamedKeyWithUnit{"ACPW", "AC Adapter Power", "W"},
};

constexpr std::array moreCpuKeys{
    NamedKey{"TC0T", "CPU Package"},
    NamedKey{"TCGC", "CPU Graphics Core"},
    NamedKey{"TCGc", "CPU Graphics Core Raw"},
    NamedKey{"Th0H", "CPU Heatpipe"},
    NamedKey{"TCAH", "CPU A Heatsink"},
    NamedKey{"TCBH", "CPU B Heatsink"},
    NamedKey{"TCAC", "CPU A Relative ProcHot"},
    NamedKey{"TCBC", "CPU B Relative ProcHot"},
    NamedKey{"TCAD", "CPU A Package Diode"},
    NamedKey{"TCBD", "CPU B Package Diode"},
};

constexpr std::array currentKeys{
    NamedKeyIn{"I50R", "+5V Low-Side Current", currents},
    NamedKeyIn{"IAPC", "Airport Current", currents},
    NamedKeyIn{"IB0R", "Battery Discharge Current", battery},
    NamedKeyIn{"IBAC", "Battery Current", battery},
    NamedKeyIn{"IBLC", "Backlight Current", currents},
    NamedKeyIn{"IC0G", "CPU AXG Current", currents},
    NamedKeyIn{"IC0I", "CPU I/O Current", currents},
    NamedKeyIn{"IC0M", "CPU Memory Current", currents},
    NamedKeyIn{"IC0R", "CPU High-Side Current", currents},
    NamedKeyIn{"Ic0R", "CPU CSReg Current", currents},
    NamedKeyIn{"IC0S", "CPU System Agent Current", currents},
    NamedKeyIn{"IC1C", "VCCIO Current", currents},
    NamedKeyIn{"IC1R", "CPU High-Side Current EMC1704", currents},
    NamedKeyIn{"IC2C", "VCCSA Current", currents},
    NamedKeyIn{"IC3C", "CPU DDR Current", currents},
    NamedKeyIn{"ICMC", "Camera Current", currents},
    NamedKeyIn{"ICS0", "CPU Core Current", currents},
    NamedKeyIn{"ICS1", "CPU IMON Current", currents},
    NamedKeyIn{"ICTR", "CPU Riser 12V Current", currents},
    NamedKeyIn{"ID0R", "DC-In Current", currents},
    NamedKeyIn{"ID1R", "CPU 1V5 Current", currents},
    NamedKeyIn{"ID2R", "Power Supply 12V Current", currents},
    NamedKeyIn{"IG0C", "GPU 0 Core Current", currents},
    NamedKeyIn{"IG0F", "GPU 0 Framebuffer Current", currents},
    NamedKeyIn{"IG0I", "GPU 0 VDDCI Current", currents},
    NamedKeyIn{"IG0R", "GPU 0 High-Side Current", currents},
    NamedKeyIn{"IG0S", "GPU 0 VDDCI Low-Side Current", currents},
    NamedKeyIn{"IG0U", "GPU 0 Uncore Current", currents},
    NamedKeyIn{"IG1A", "GPU 1 Aux Current", currents},
    NamedKeyIn{"IG1C", "GPU 1 Core Current", currents},
};

constexpr std::array batteryDetailKeys{
    NamedKeyWithUnit{"B0AC", "Battery 0 Actual Current", "A"},
    NamedKeyWithUnit{"B1AC", "Battery 1 Actual Current", "A"},
    NamedKeyWithUnit{"B0AV", "Battery 0 Actual Voltage", "V"},
    NamedKeyWithUnit{"B1AV", "Battery 1 Actual Voltage", "V"},
    NamedKeyWithUnit{"B0RS", "Battery 0 Res Scale", ""},
    NamedKeyWithUnit{"B1RS", "Battery 1 Res Scale", ""},
    NamedKeyWithUnit{"BBAD", "Battery Bad", ""},
    NamedKeyWithUnit{"BBIN", "Battery Installed", ""},
    NamedKeyWithUnit{"CHBI", "Battery Charge Current", "A"},
};

constexpr std::array moreCurrentKeys{
    NamedKeyIn{"ID2E", "PSU 12V Filtered Current", currents},
    NamedKeyIn{"ID2F", "PSU 12V Adjusted Current", currents},
    NamedKeyIn{"ID2I", "PSU 12V Filter Input", currents},
    NamedKeyIn{"ID2J", "PSU 12V Max Error", currents},
    NamedKeyIn{"ID2L", "PSU 12V Filter Coefficient", currents},
    NamedKeyIn{"ID2T", "PSU 12V Current Trend", currents},
    NamedKeyIn{"IG1F", "GPU 1 Framebuffer Current", currents},
    NamedKeyIn{"IG1R", "GPU 1 High-Side Current", currents},
    NamedKeyIn{"IG1S", "GPU 1 VDDCI Low-Side Current", currents},
    NamedKeyIn{"IG2C", "GPU 2 Core Current", currents},
    NamedKeyIn{"IG3C", "GPU 3 Current", currents},
    NamedKeyIn{"IH02", "Drive 12V Current", currents},
    NamedKeyIn{"IH05", "Drive 5V Current", currents},
    NamedKeyIn{"IH0R", "SSD 3.3V Current", currents},
    NamedKeyIn{"IH1R", "Drive 1 3.3V Current", currents},
    NamedKeyIn{"IHDC", "Drive Current", currents},
    NamedKeyIn{"IHSC", "Thunderbolt Current", currents},
    NamedKeyIn{"IHSP", "Thunderbolt Power Current", currents},
    NamedKeyIn{"II0R", "I/O Board 12V Current", currents},
    NamedKeyIn{"ILDC", "LCD Panel Current", currents},
    NamedKeyIn{"IM0C", "Memory Current", currents},
    NamedKeyIn{"IM0R", "DIMM Current", currents},
    NamedKeyIn{"IM1C", "LPDDR/DDR Current", currents},
    NamedKeyIn{"IM2C", "LPDDR Current", currents},
    NamedKeyIn{"IM3C", "DDR S3 Current", currents},
    NamedKeyIn{"IMTR", "Memory 1V5 Current", currents},
    NamedKeyIn{"IN0C", "Internal GPU Core Current", currents},
    NamedKeyIn{"IN0R", "Internal GPU Vcore Current", currents},
    NamedKeyIn{"IN1C", "MCP DDR Current", currents},
    NamedKeyIn{"IN1R", "PCH Current", currents},
    NamedKeyIn{"IO0R", "Other High-Side Current", currents},
    NamedKeyIn{"IO3R", "3.3V Current", currents},
    NamedKeyIn{"IO5R", "5V Current", currents},
    NamedKeyIn{"IODC", "ODD Current", currents},
    NamedKeyIn{"IP0R", "Battery Current Discrete", battery},
    NamedKeyIn{"IPB1", "Discrete Battery Current", battery},
    NamedKeyIn{"IPBR", "PBus Battery Current", battery},
    NamedKeyIn{"IR0C", "3.3V S0 Current", currents},
    NamedKeyIn{"IR1C", "S3 3.3V Current", currents},
    NamedKeyIn{"IR1R", "PCH/GPU/TBT 1.05V Current", currents},
    NamedKeyIn{"IR2C", "S3 5V Current", currents},
    NamedKeyIn{"IR3C", "3.3V S0/S5 Current", currents},
    NamedKeyIn{"IR5C", "5V S0/S5 Current", currents},
    NamedKeyIn{"IS2C", "S2 Camera Current", currents},
    NamedKeyIn{"ISBC", "PCH Core Current", currents},
    NamedKeyIn{"ISDC", "SSD Current", currents},
};

constexpr std::array namedVoltageKeys{
    NamedKey{"VBLC", "Backlight Voltage"},  NamedKey{"VC0G", "CPU AXG Voltage"},
    NamedKey{"VC0M", "CPU Memory Voltage"}, NamedKey{"VC0S", "CPU System Agent Voltage"},
    NamedKey{"VC1C", "VCCIO Voltage"},      NamedKey{"VC1R", "CPU High-Side Voltage EMC1704"},
    NamedKey{"VC2C", "VCCSA Voltage"},      NamedKey{"VCFR", "FIVR CPU Supply Voltage"},
};

/// Keys that two groups name, in code-unit order. The repeats are intended, and the earlier name is the one
/// to show: "TCAC" and "TCBC", for example, are cores 10 and 11.
[[maybe_unused]] constexpr std::array<std::string_view, 6> repeatedKeys{
    "B0AV", "B1AV", "IG0C", "TC0T", "TCAC", "TCBC",
};

/// The key of every row of `sorted` that has the key of the row before it.
[[maybe_unused]] std::vector<std::string_view> keysOfRepeats(std::span<const SMCKeyDefinition> sorted) {
    std::vector<std::string_view> keys;
    for (std::size_t row = 1; row < sorted.size(); ++row) {
        if (sorted[row].key == sorted[row - 1].key) keys.push_back(sorted[row].key);
    }
    return keys;
}

/// Collects rows in the order of the groups. A key that is not exactly four characters long is skipped: the
/// generated groups count past the last index that a four-character key can hold.
class TableBuilder {
  public:
    void add(std::string_view key, std::string_view name, SMCCategory category, std::string_view unit = "") {
        if (key.size() != 4) return;
        rows_.push_back({std::string(key), std::string(name), category, std::string(unit)});
    }

    void addAll(std::span<const NamedKey> keys, SMCCategory category, std::string_view unit = "") {
        for (const NamedKey& row : keys) add(row.key, row.name, category, unit);
    }

    void addAll(std::span<const NamedKeyIn> keys, std::string_view unit) {
        for (const NamedKeyIn& row : keys) add(row.key, row.name, row.category, unit);
    }

    void addAll(std::span<const NamedKeyWithUnit> keys, SMCCategory category) {
        for (const NamedKeyWithUnit& row : keys) add(row.key, row.name, category, row.unit);
    }

    /// Sorted by key, the first row of each key kept. A debug build stops here when any keys but
    /// `repeatedKeys` repeat, because the later row would be dropped without anybody noticing.
    std::vector<SMCKeyDefinition> finish() && {
        std::ranges::stable_sort(rows_, {}, &SMCKeyDefinition::key);
        assert(std::ranges::equal(keysOfRepeats(rows_), repeatedKeys));
        const auto sameKey = [](const auto& left, const auto& right) { return left.key == right.key; };
        rows_.erase(std::unique(rows_.begin(), rows_.end(), sameKey), rows_.end());
        return std::move(rows_);
    }

  private:
    std::vector<SMCKeyDefinition> rows_;
};

void addCores(TableBuilder& table) {
    for (unsigned i = 1; i <= 31; ++i) {
        const std::string index = hexadecimalText(i);
        const std::string number = std::to_string(i);
        table.add("TC" + index + "C", "Core " + number, cpu, celsius);
    }
}

void addHybridCores(TableBuilder& table) {
    for (unsigned i = 0; i <= 31; ++i) {
        const std::string index = hexadecimalText(i);
        const std::string number = std::to_string(i);
        table.add("Tp" + index + "C", "CPU P-Core " + number, cpu, celsius);
        table.add("Te" + index + "C", "CPU E-Core " + number, cpu, celsius);
        table.add("Ts" + index + "C", "CPU Sensor " + number, cpu, celsius);
    }
}

void addCpuRails(TableBuilder& table) {
    table.add("VC0C", "Voltage", voltages, "V");
    table.add("VC0R", "CPU Voltage", voltages, "V");
    table.add("IC0C", "CPU Current", currents, "A");
}

void addGpus(TableBuilder& table) {
    constexpr std::array places{
        NamedKey{"D", "Die"},  NamedKey{"P", "Proximity"}, NamedKey{"H", "Heatsink"},
        NamedKey{"C", "Core"}, NamedKey{"M", "Memory"},
    };
    for (const std::string number : {"0", "1"}) {
        for (const NamedKey& place : places) {
            const std::string key = std::string("TG").append(number).append(place.key);
            table.add(key, std::string("GPU ").append(number).append(" ").append(place.name), gpu, celsius);
        }
    }
    table.add("PG0C", "GPU 0 Package", gpu, "W");
    table.add("PG0R", "GPU 0 Rail", gpu, "W");
    table.add("VG0C", "GPU 0 Voltage", voltages, "V");
    table.add("IG0C", "GPU 0 Current", currents, "A");
}

void addMemoryModules(TableBuilder& table) {
    for (unsigned i = 1; i <= 15; ++i) {
        const std::string index = hexadecimalText(i);
        const std::string number = std::to_string(i);
        table.add("TM" + index + "P", "DIMM " + number, memory, celsius);
    }
}

void addThermalAndStorage(TableBuilder& table) {
    for (const NamedKey& row : thermalAndStorageKeys) {
        const bool isDrive =
            row.key.starts_with("TN") || row.key.starts_with("TS") || row.key.starts_with("TH");
        table.add(row.key, row.name, isDrive ? storage : thermal, celsius);
    }
}

void addFans(TableBuilder& table) {
    for (unsigned i = 0; i <= 15; ++i) {
        const std::string number = std::to_string(i);
        const std::string key = "F" + number;
        const std::string name = "Fan " + number;
        table.add(key + "Ac", name, fans, "RPM");
        table.add(key + "Mn", name + " Minimum", fans, "RPM");
        table.add(key + "Mx", name + " Maximum", fans, "RPM");
        table.add(key + "Tg", name + " Target", fans, "RPM");
        table.add(key + "Sf", name + " Safe", fans, "RPM");
        table.add(key + "ID", name + " Name", fans);
        table.add(key + "Md", name + " Mode", fans);
    }
}

void addEmulatorFans(TableBuilder& table) {
    for (unsigned i = 0; i <= 7; ++i) {
        const std::string number = std::to_string(i);
        const std::string key = "FAN" + number;
        table.add(key, key, fans, "RPM");
    }
}

void addBatteries(TableBuilder& table) {
    for (unsigned i = 0; i <= 3; ++i) {
        const std::string number = std::to_string(i);
        const std::string key = "B" + number;
        const std::string name = "Battery " + number;
        table.add(key + "AV", name + " Voltage", battery, "V");
        table.add(key + "Am", name + " Current", battery, "A");
        table.add(key + "AP", name + " Power", battery, "W");
        table.add(key + "RM", name + " Remaining", battery, "mAh");
        table.add(key + "FC", name + " Full Charge", battery, "mAh");
        table.add(key + "DC", name + " Design Capacity", battery, "mAh");
        table.add(key + "CT", name + " Cycles", battery);
        table.add(key + "St", name + " Status", battery);
        table.add(key + "TF", name + " Time", battery);
    }
}

void addFanRawData(TableBuilder& table) {
    for (unsigned i = 0; i <= 3; ++i) {
        const std::string number = std::to_string(i);
        table.add("FRD" + number, "Fan Raw Data " + number, fans);
    }
}

} // namespace

std::vector<SMCKeyDefinition> makeDefinitions() {
    TableBuilder table;
    table.addAll(controllerKeys, overview);
    table.add("FNum", "Fan Count", fans);
    table.addAll(cpuKeys, cpu, celsius);
    addCores(table);
    addHybridCores(table);
    table.addAll(powerKeys, "W");
    addCpuRails(table);
    addGpus(table);
    table.addAll(memoryKeys, memory, celsius);
    addMemoryModules(table);
    addThermalAndStorage(table);
    addFans(table);
    table.addAll(namedThermalKeys, thermal, celsius);
    addEmulatorFans(table);
    table.addAll(voltageKeys, voltages, "V");
    addBatteries(table);
    table.addAll(chargerKeys, battery);
    table.addAll(moreCpuKeys, cpu, celsius);
    table.addAll(currentKeys, "A");
    table.addAll(batteryDetailKeys, battery);
    addFanRawData(table);
    table.addAll(moreCurrentKeys, "A");
    table.addAll(namedVoltageKeys, voltages, "V");
    return std::move(table).finish();
}

} // namespace kelvinbar
