#include "catalogue/KeyTable.h"

#include "catalogue/SMCKeyDatabase.h"

#include <algorithm>
#include <functional>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::key_table_test {
namespace {

using enum SMCCategory;
using testing::Contains;
using testing::Not;

struct NamedKey {
    std::string_view key;
    std::string_view name;
};

/// The table as it shall be, by key, put together by category and unit.
class ExpectedTable {
  public:
    void add(SMCCategory category, std::string_view unit, std::initializer_list<NamedKey> rows) {
        for (const auto& [key, name] : rows) add(category, unit, std::string(key), std::string(name));
    }

    void add(SMCCategory category, std::string_view unit, const std::string& key, const std::string& name) {
        const bool isNew =
            entries_.emplace(key, SMCKeyDefinition{key, name, category, std::string(unit)}).second;
        EXPECT_TRUE(isNew) << key << " is expected twice";
    }

    [[nodiscard]] const std::map<std::string, SMCKeyDefinition, std::less<>>& entries() const {
        return entries_;
    }

  private:
    std::map<std::string, SMCKeyDefinition, std::less<>> entries_; // sorts by code unit
};

void addController(ExpectedTable& table) {
    table.add(overview, "", {{"REV ", "SMC Revision"}, {"RBr ", "SMC Branch"}, {"RVBF", "SMC Build"}});
}

void addCpus(ExpectedTable& table) {
    table.add(cpu, "°C",
              {
                  {"TC0C", "Core 0"},
                  {"TC1C", "Core 1"},
                  {"TC2C", "Core 2"},
                  {"TC3C", "Core 3"},
                  {"TC4C", "Core 4"},
                  {"TC5C", "Core 5"},
                  {"TC6C", "Core 6"},
                  {"TC7C", "Core 7"},
                  {"TC8C", "Core 8"},
                  {"TC9C", "Core 9"},
                  {"TCAC", "Core 10"},
                  {"TCBC", "Core 11"},
                  {"TCCC", "Core 12"},
                  {"TCDC", "Core 13"},
                  {"TCEC", "Core 14"},
                  {"TCFC", "Core 15"},
                  {"TC0D", "CPU 0 Diode"},
                  {"TC0P", "CPU Proximity"},
                  {"TC0H", "CPU Heatsink"},
                  {"TC0E", "CPU 0 TCOE"},
                  {"TC0F", "CPU Fin Stack"},
                  {"TC0J", "CPU Junction"},
                  {"TC0T", "CPU Package"},
                  {"TC0p", "CPU Package"},
                  {"TCGC", "CPU Graphics Core"},
                  {"TCGc", "CPU Graphics Core Raw"},
                  {"Th0H", "CPU Heatpipe"},
                  {"TCAH", "CPU A Heatsink"},
                  {"TCBH", "CPU B Heatsink"},
                  {"TCAD", "CPU A Package Diode"},
                  {"TCBD", "CPU B Package Diode"},
              });
    int number = 0;
    for (const char digit : std::string_view("0123456789ABCDEF")) {
        const std::string index(1, digit);
        const std::string text = std::to_string(number++);
        table.add(cpu, "°C", "Tp" + index + "C", "CPU P-Core " + text);
        table.add(cpu, "°C", "Te" + index + "C", "CPU E-Core " + text);
        table.add(cpu, "°C", "Ts" + index + "C", "CPU Sensor " + text);
    }
}

void addGpus(ExpectedTable& table) {
    table.add(gpu, "°C",
              {
                  {"TG0D", "GPU 0 Die"},
                  {"TG0P", "GPU 0 Proximity"},
                  {"TG0H", "GPU 0 Heatsink"},
                  {"TG0C", "GPU 0 Core"},
                  {"TG0M", "GPU 0 Memory"},
                  {"TG1D", "GPU 1 Die"},
                  {"TG1P", "GPU 1 Proximity"},
                  {"TG1H", "GPU 1 Heatsink"},
                  {"TG1C", "GPU 1 Core"},
                  {"TG1M", "GPU 1 Memory"},
              });
    table.add(gpu, "W", {{"PCPG", "Package IGPU"}, {"PG0C", "GPU 0 Package"}, {"PG0R", "GPU 0 Rail"}});
}

void addMemory(ExpectedTable& table) {
    table.add(memory, "°C",
              {
                  {"TM0P", "Memory Proximity"},
                  {"TM0S", "Memory Slot"},
                  {"TM0A", "Memory Ambient"},
                  {"TM1P", "DIMM 1"},
                  {"TM2P", "DIMM 2"},
                  {"TM3P", "DIMM 3"},
                  {"TM4P", "DIMM 4"},
                  {"TM5P", "DIMM 5"},
                  {"TM6P", "DIMM 6"},
                  {"TM7P", "DIMM 7"},
                  {"TM8P", "DIMM 8"},
                  {"TM9P", "DIMM 9"},
                  {"TMAP", "DIMM 10"},
                  {"TMBP", "DIMM 11"},
                  {"TMCP", "DIMM 12"},
                  {"TMDP", "DIMM 13"},
                  {"TMEP", "DIMM 14"},
                  {"TMFP", "DIMM 15"},
              });
}

void addFans(ExpectedTable& table) {
    for (const std::string number : {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"}) {
        const std::string key = "F" + number;
        const std::string name = "Fan " + number;
        table.add(fans, "RPM", key + "Ac", name);
        table.add(fans, "RPM", key + "Mn", name + " Minimum");
        table.add(fans, "RPM", key + "Mx", name + " Maximum");
        table.add(fans, "RPM", key + "Tg", name + " Target");
        table.add(fans, "RPM", key + "Sf", name + " Safe");
        table.add(fans, "", key + "ID", name + " Name");
        table.add(fans, "", key + "Md", name + " Mode");
    }
    table.add(fans, "RPM",
              {{"FAN0", "FAN0"},
               {"FAN1", "FAN1"},
               {"FAN2", "FAN2"},
               {"FAN3", "FAN3"},
               {"FAN4", "FAN4"},
               {"FAN5", "FAN5"},
               {"FAN6", "FAN6"},
               {"FAN7", "FAN7"}});
    table.add(fans, "",
              {{"FNum", "Fan Count"},
               {"FRD0", "Fan Raw Data 0"},
               {"FRD1", "Fan Raw Data 1"},
               {"FRD2", "Fan Raw Data 2"},
               {"FRD3", "Fan Raw Data 3"}});
}

void addPlaces(ExpectedTable& table) {
    table.add(thermal, "°C",
              {
                  {"TA0P", "Ambient"},
                  {"TA0S", "Ambient Sensor"},
                  {"TA0V", "Ambient Virtual"},
                  {"TCHP", "PCH Proximity"},
                  {"TP0P", "PCH Proximity"},
                  {"TPCD", "PCH Diode"},
                  {"TW0P", "Wi-Fi Proximity"},
                  {"TL0P", "LCD Proximity"},
                  {"TI0P", "Thunderbolt 0 Proximity"},
                  {"TI1P", "Thunderbolt 1 Proximity"},
                  {"TB0T", "Battery Temperature"},
                  {"TB1T", "Battery Temperature 1"},
                  {"TCPU", "CPU"},
                  {"TSYS", "System"},
                  {"TAUX", "Aux"},
                  {"TMOS", "MOS"},
                  {"TPCH", "PCH"},
                  {"TVRM", "VRM"},
                  {"TGPU", "GPU"},
                  {"TAMB", "Ambient"},
                  {"TMB1", "Motherboard 1"},
                  {"TMB2", "Motherboard 2"},
                  {"THRM", "Thermal"},
              });
    table.add(storage, "°C",
              {
                  {"TH0P", "Drive Bay Proximity"},
                  {"TH1P", "Drive 1 Proximity"},
                  {"TH2P", "Drive 2 Proximity"},
                  {"TN0P", "NVMe 0 Proximity"},
                  {"TN0D", "NVMe 0 Die"},
                  {"TN1P", "NVMe 1 Proximity"},
                  {"TN1D", "NVMe 1 Die"},
                  {"TS0P", "SATA 0 Proximity"},
                  {"TS1P", "SATA 1 Proximity"},
              });
}

void addPowers(ExpectedTable& table) {
    table.add(power, "W",
              {
                  {"PC0C", "Package Total"},
                  {"PC0R", "Package Total"},
                  {"PCPC", "Package Core"},
                  {"PCPL", "CPU Power Limit"},
                  {"PCPR", "CPU Package Power"},
                  {"PSTR", "CPU Package Energy"},
                  {"PCPT", "CPU Power"},
                  {"PCTR", "CPU Power"},
              });
}

void addVoltages(ExpectedTable& table) {
    table.add(voltages, "V",
              {
                  {"VC0C", "Voltage"},
                  {"VC0R", "CPU Voltage"},
                  {"VG0C", "GPU 0 Voltage"},
                  {"VCPU", "CPU Voltage"},
                  {"VCOR", "CPU Core Voltage"},
                  {"V12R", "+12V"},
                  {"V05R", "+5V"},
                  {"V33R", "+3.3V"},
                  {"V50R", "+5V"},
                  {"V3V3", "+3.3V"},
                  {"V5VP", "+5V"},
                  {"VSB3", "3VSB"},
                  {"VBAT", "Battery Voltage"},
                  {"VTT ", "VTT"},
                  {"VSA ", "VCCSA"},
                  {"VCC ", "VCC"},
                  {"VIO ", "VCCIO"},
                  {"VPLL", "PLL Voltage"},
                  {"VAXG", "VAXG"},
                  {"VBLC", "Backlight Voltage"},
                  {"VC0G", "CPU AXG Voltage"},
                  {"VC0M", "CPU Memory Voltage"},
                  {"VC0S", "CPU System Agent Voltage"},
                  {"VC1C", "VCCIO Voltage"},
                  {"VC1R", "CPU High-Side Voltage EMC1704"},
                  {"VC2C", "VCCSA Voltage"},
                  {"VCFR", "FIVR CPU Supply Voltage"},
                  {"VIN0", "Voltage 0"},
                  {"VIN1", "Voltage 1"},
                  {"VIN2", "Voltage 2"},
                  {"VIN3", "Voltage 3"},
                  {"VIN4", "Voltage 4"},
                  {"VIN5", "Voltage 5"},
                  {"VIN6", "Voltage 6"},
                  {"VIN7", "Voltage 7"},
                  {"VIN8", "Voltage 8"},
                  {"VIN9", "Voltage 9"},
              });
}

void addCurrents(ExpectedTable& table) {
    table.add(currents, "A",
              {
                  {"IC0C", "CPU Current"},
                  {"IG0C", "GPU 0 Current"},
                  {"I50R", "+5V Low-Side Current"},
                  {"IAPC", "Airport Current"},
                  {"IBLC", "Backlight Current"},
                  {"IC0G", "CPU AXG Current"},
                  {"IC0I", "CPU I/O Current"},
                  {"IC0M", "CPU Memory Current"},
                  {"IC0R", "CPU High-Side Current"},
                  {"Ic0R", "CPU CSReg Current"},
                  {"IC0S", "CPU System Agent Current"},
                  {"IC1C", "VCCIO Current"},
                  {"IC1R", "CPU High-Side Current EMC1704"},
                  {"IC2C", "VCCSA Current"},
                  {"IC3C", "CPU DDR Current"},
                  {"ICMC", "Camera Current"},
                  {"ICS0", "CPU Core Current"},
                  {"ICS1", "CPU IMON Current"},
                  {"ICTR", "CPU Riser 12V Current"},
                  {"ID0R", "DC-In Current"},
                  {"ID1R", "CPU 1V5 Current"},
                  {"ID2R", "Power Supply 12V Current"},
                  {"IG0F", "GPU 0 Framebuffer Current"},
                  {"IG0I", "GPU 0 VDDCI Current"},
                  {"IG0R", "GPU 0 High-Side Current"},
                  {"IG0S", "GPU 0 VDDCI Low-Side Current"},
                  {"IG0U", "GPU 0 Uncore Current"},
                  {"IG1A", "GPU 1 Aux Current"},
                  {"IG1C", "GPU 1 Core Current"},
                  {"ID2E", "PSU 12V Filtered Current"},
                  {"ID2F", "PSU 12V Adjusted Current"},
                  {"ID2I", "PSU 12V Filter Input"},
                  {"ID2J", "PSU 12V Max Error"},
                  {"ID2L", "PSU 12V Filter Coefficient"},
                  {"ID2T", "PSU 12V Current Trend"},
                  {"IG1F", "GPU 1 Framebuffer Current"},
                  {"IG1R", "GPU 1 High-Side Current"},
                  {"IG1S", "GPU 1 VDDCI Low-Side Current"},
                  {"IG2C", "GPU 2 Core Current"},
                  {"IG3C", "GPU 3 Current"},
                  {"IH02", "Drive 12V Current"},
                  {"IH05", "Drive 5V Current"},
                  {"IH0R", "SSD 3.3V Current"},
                  {"IH1R", "Drive 1 3.3V Current"},
                  {"IHDC", "Drive Current"},
                  {"IHSC", "Thunderbolt Current"},
                  {"IHSP", "Thunderbolt Power Current"},
                  {"II0R", "I/O Board 12V Current"},
                  {"ILDC", "LCD Panel Current"},
                  {"IM0C", "Memory Current"},
                  {"IM0R", "DIMM Current"},
                  {"IM1C", "LPDDR/DDR Current"},
                  {"IM2C", "LPDDR Current"},
                  {"IM3C", "DDR S3 Current"},
                  {"IMTR", "Memory 1V5 Current"},
                  {"IN0C", "Internal GPU Core Current"},
                  {"IN0R", "Internal GPU Vcore Current"},
                  {"IN1C", "MCP DDR Current"},
                  {"IN1R", "PCH Current"},
                  {"IO0R", "Other High-Side Current"},
                  {"IO3R", "3.3V Current"},
                  {"IO5R", "5V Current"},
                  {"IODC", "ODD Current"},
                  {"IR0C", "3.3V S0 Current"},
                  {"IR1C", "S3 3.3V Current"},
                  {"IR1R", "PCH/GPU/TBT 1.05V Current"},
                  {"IR2C", "S3 5V Current"},
                  {"IR3C", "3.3V S0/S5 Current"},
                  {"IR5C", "5V S0/S5 Current"},
                  {"IS2C", "S2 Camera Current"},
                  {"ISBC", "PCH Core Current"},
                  {"ISDC", "SSD Current"},
              });
}

void addBatteries(ExpectedTable& table) {
    for (const std::string number : {"0", "1", "2", "3"}) {
        const std::string key = "B" + number;
        const std::string name = "Battery " + number;
        table.add(battery, "V", key + "AV", name + " Voltage");
        table.add(battery, "A", key + "Am", name + " Current");
        table.add(battery, "W", key + "AP", name + " Power");
        table.add(battery, "mAh", key + "RM", name + " Remaining");
        table.add(battery, "mAh", key + "FC", name + " Full Charge");
        table.add(battery, "mAh", key + "DC", name + " Design Capacity");
        table.add(battery, "", key + "CT", name + " Cycles");
        table.add(battery, "", key + "St", name + " Status");
        table.add(battery, "", key + "TF", name + " Time");
    }
    table.add(battery, "",
              {{"BNum", "Battery Count"},
               {"CH0B", "Charger Connected"},
               {"B0RS", "Battery 0 Res Scale"},
               {"B1RS", "Battery 1 Res Scale"},
               {"BBAD", "Battery Bad"},
               {"BBIN", "Battery Installed"}});
    table.add(battery, "V", {{"CH0V", "Charger Voltage"}});
    table.add(battery, "W", {{"CH0W", "Charger Power"}, {"ACPW", "AC Adapter Power"}});
    table.add(battery, "A",
              {
                  {"CH0C", "Charger Current"},
                  {"CHBI", "Battery Charge Current"},
                  {"B0AC", "Battery 0 Actual Current"},
                  {"B1AC", "Battery 1 Actual Current"},
                  {"IB0R", "Battery Discharge Current"},
                  {"IBAC", "Battery Current"},
                  {"IP0R", "Battery Current Discrete"},
                  {"IPB1", "Discrete Battery Current"},
                  {"IPBR", "PBus Battery Current"},
              });
}

ExpectedTable expectedTable() {
    ExpectedTable table;
    addController(table);
    addCpus(table);
    addGpus(table);
    addMemory(table);
    addFans(table);
    addPlaces(table);
    addPowers(table);
    addVoltages(table);
    addCurrents(table);
    addBatteries(table);
    return table;
}

SMCKeyDefinition entryFor(std::string_view key) {
    const auto& entries = SMCKeyDatabase::byKey();
    const auto found = entries.find(key);
    return found == entries.end() ? SMCKeyDefinition{} : found->second;
}

TEST(KeyTable, HasThreeHundredAndNinetyNineEntries) { EXPECT_EQ(makeDefinitions().size(), 399U); }

TEST(KeyTable, HoldsExactlyTheExpectedEntriesInTheirOrder) {
    const ExpectedTable table = expectedTable();
    const std::vector<SMCKeyDefinition> definitions = makeDefinitions();

    std::vector<std::string> expectedKeys;
    for (const auto& [key, entry] : table.entries()) expectedKeys.push_back(key);
    std::vector<std::string> keys;
    keys.reserve(definitions.size());
    for (const SMCKeyDefinition& definition : definitions) keys.push_back(definition.key);
    EXPECT_EQ(keys, expectedKeys);

    for (const SMCKeyDefinition& definition : definitions) {
        SCOPED_TRACE(definition.key);
        const auto expected = table.entries().find(definition.key);
        ASSERT_NE(expected, table.entries().end());
        EXPECT_EQ(definition.name, expected->second.name);
        EXPECT_EQ(rawValue(definition.category), rawValue(expected->second.category));
        EXPECT_EQ(definition.unit, expected->second.unit);
    }
}

TEST(KeyTable, IsWhatTheDatabaseHolds) { EXPECT_EQ(SMCKeyDatabase::definitions(), makeDefinitions()); }

TEST(KeyTable, IsSortedByCodeUnitSoThatUpperCaseComesFirst) {
    const auto& keys = SMCKeyDatabase::allKeys();
    EXPECT_TRUE(std::ranges::is_sorted(keys));
    const auto indexOf = [&](std::string_view key) { return std::ranges::find(keys, key) - keys.begin(); };
    EXPECT_THAT(keys, Contains("FAN0"));
    EXPECT_LT(indexOf("FAN0"), indexOf("FNum"));
    EXPECT_LT(indexOf("TC0C"), indexOf("TC0p"));
    EXPECT_LT(indexOf("F0Ac"), indexOf("FAN0"));
    EXPECT_LT(indexOf("VC0R"), indexOf("VCC "));
    EXPECT_EQ(keys.front(), "ACPW");
    EXPECT_EQ(keys.back(), "VTT ");
}

TEST(KeyTable, HoldsEachKeyOnce) {
    const auto& keys = SMCKeyDatabase::allKeys();
    EXPECT_EQ(std::ranges::adjacent_find(keys), keys.end());
    EXPECT_EQ(std::ranges::count(keys, "TC0T"), 1);
}

TEST(KeyTable, HasOneNameForAKeyThatTwoFamiliesCouldName) {
    EXPECT_EQ(entryFor("TC0T"), (SMCKeyDefinition{"TC0T", "CPU Package", cpu, "°C"}));
    EXPECT_EQ(entryFor("TCAC"), (SMCKeyDefinition{"TCAC", "Core 10", cpu, "°C"}));
    EXPECT_EQ(entryFor("TCBC"), (SMCKeyDefinition{"TCBC", "Core 11", cpu, "°C"}));
    EXPECT_EQ(entryFor("IG0C"), (SMCKeyDefinition{"IG0C", "GPU 0 Current", currents, "A"}));
    EXPECT_EQ(entryFor("B0AV"), (SMCKeyDefinition{"B0AV", "Battery 0 Voltage", battery, "V"}));
    EXPECT_EQ(entryFor("B1AV"), (SMCKeyDefinition{"B1AV", "Battery 1 Voltage", battery, "V"}));
}

TEST(KeyTable, HasOnlyKeysOfFourCharacters) {
    for (const std::string& key : SMCKeyDatabase::allKeys()) EXPECT_EQ(key.size(), 4U) << key;
}

TEST(KeyTable, HasNoKeysOfIndexesThatTakeTwoDigits) {
    const auto& keys = SMCKeyDatabase::allKeys();
    for (const std::string key : {"TC10C", "TC1FC", "Tp10C", "Te10C", "Ts1FC", "F10Ac", "F15Md"}) {
        EXPECT_THAT(keys, Not(Contains(key)));
        // Nor does a cut key stand for one.
        EXPECT_EQ(std::ranges::count(keys, key.substr(0, 4)), 0) << key;
    }
}

TEST(KeyTable, EndsEachNumberedFamilyAtItsLastIndex) {
    const auto& keys = SMCKeyDatabase::allKeys();
    for (const std::string_view last :
         {"TCFC", "TpFC", "TeFC", "TsFC", "TMFP", "F9Md", "FAN7", "B3TF", "FRD3", "VIN9"}) {
        EXPECT_EQ(std::ranges::count(keys, last), 1) << last;
    }
    for (const std::string_view beyond :
         {"TCGP", "TpGC", "TMGP", "FAN8", "B4AV", "FRD4", "TG2D", "TH3P", "B2RS"}) {
        EXPECT_EQ(std::ranges::count(keys, beyond), 0) << beyond;
    }
}

TEST(KeyTable, KeepsTrailingSpacesAsPartOfAKey) {
    EXPECT_EQ(entryFor("REV ").name, "SMC Revision");
    EXPECT_EQ(entryFor("RBr ").name, "SMC Branch");
    EXPECT_EQ(entryFor("VTT ").name, "VTT");
    const auto& keys = SMCKeyDatabase::allKeys();
    EXPECT_THAT(keys, Not(Contains("REV")));
    EXPECT_THAT(keys, Not(Contains("VTT")));
}

TEST(KeyTable, PutsThePackageGraphicsPowerAmongTheGpusDespiteItsPrefix) {
    EXPECT_EQ(entryFor("PCPG").category, gpu);
    EXPECT_EQ(entryFor("PCPC").category, power);
}

TEST(KeyTable, PutsCurrentsOfBatteriesAmongTheBatteries) {
    for (const std::string_view key : {"IB0R", "IBAC", "IP0R", "IPB1", "IPBR"}) {
        EXPECT_EQ(entryFor(key).category, battery) << key;
        EXPECT_EQ(entryFor(key).unit, "A") << key;
    }
}

TEST(KeyTable, KeepsTheLetterOInTheNameOfTC0E) { EXPECT_EQ(entryFor("TC0E").name, "CPU 0 TCOE"); }

} // namespace
} // namespace kelvinbar::key_table_test
