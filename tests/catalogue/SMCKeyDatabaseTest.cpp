#include "catalogue/SMCKeyDatabase.h"

#include <array>
#include <cstddef>
#include <future>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::smc_key_database_test {
namespace {

using enum SMCCategory;

TEST(SMCKeyDatabase, HoldsTheSameEntriesByKey) {
    const auto& definitions = SMCKeyDatabase::definitions();
    const auto& byKey = SMCKeyDatabase::byKey();
    EXPECT_EQ(byKey.size(), definitions.size());
    for (const SMCKeyDefinition& definition : definitions) {
        SCOPED_TRACE(definition.key);
        const auto found = byKey.find(definition.key);
        ASSERT_NE(found, byKey.end());
        EXPECT_EQ(found->second, definition);
    }
}

TEST(SMCKeyDatabase, ListsTheKeysInTheOrderOfTheTable) {
    const auto& definitions = SMCKeyDatabase::definitions();
    const auto& keys = SMCKeyDatabase::allKeys();
    ASSERT_EQ(keys.size(), definitions.size());
    for (std::size_t index = 0; index < keys.size(); ++index) EXPECT_EQ(keys[index], definitions[index].key);
}

TEST(SMCKeyDatabase, IsBuiltOnceForAllThreads) {
    const auto addresses = [] {
        return std::vector<const void*>{&SMCKeyDatabase::allKeys(), &SMCKeyDatabase::byKey(),
                                        &SMCKeyDatabase::definitions()};
    };
    std::array<std::future<std::vector<const void*>>, 4> seen;
    for (auto& there : seen) there = std::async(std::launch::async, addresses);
    const std::vector<const void*> here = addresses();
    for (auto& there : seen) EXPECT_EQ(there.get(), here);
}

TEST(SMCKeyDatabase, IsAskedForKeysOfAnyLengthAndAnyBytes) {
    const auto& byKey = SMCKeyDatabase::byKey();
    EXPECT_TRUE(byKey.contains(std::string_view("TC0P")));
    for (const std::string_view key :
         {"", "T", "TC0", "TC0P ", "TC0PTC0P", "xTC0P", "\xFF\xFE\xFD\xFC", "°C"}) {
        EXPECT_FALSE(byKey.contains(key)) << testing::PrintToString(key);
        EXPECT_FALSE(SMCKeyDatabase::hwMonitorDefinition(key).has_value()) << testing::PrintToString(key);
    }
}

TEST(SMCKeyDatabase, CountsTrailingBlanksAndCaseInKeys) {
    const auto& byKey = SMCKeyDatabase::byKey();
    EXPECT_TRUE(byKey.contains("REV "));
    EXPECT_FALSE(byKey.contains("REV"));
    EXPECT_TRUE(byKey.contains("TC0p"));
    EXPECT_FALSE(byKey.contains("tc0p"));
}

TEST(SMCKeyDatabase, HasThePackageGraphicsPowerAmongTheGpus) {
    EXPECT_EQ(SMCKeyDatabase::byKey().at("PCPG"), (SMCKeyDefinition{"PCPG", "Package IGPU", gpu, "W"}));
}

TEST(SMCKeyDatabase, GivesEveryEntryOfTheTableUnchanged) {
    for (const SMCKeyDefinition& definition : SMCKeyDatabase::definitions()) {
        EXPECT_EQ(SMCKeyDatabase::hwMonitorDefinition(definition.key), definition) << definition.key;
    }
}

TEST(SMCKeyDatabase, NamesAKeyByTheTableWhereARuleWouldNameItOtherwise) {
    const std::vector<SMCKeyDefinition> tableWins{
        {"TH0P", "Drive Bay Proximity", storage, "°C"},
        {"PG0R", "GPU 0 Rail", gpu, "W"},
        {"PG0C", "GPU 0 Package", gpu, "W"},
        {"PCPG", "Package IGPU", gpu, "W"},
        {"TC0D", "CPU 0 Diode", cpu, "°C"},
        {"TC0E", "CPU 0 TCOE", cpu, "°C"},
        {"TCAH", "CPU A Heatsink", cpu, "°C"},
        {"TCAD", "CPU A Package Diode", cpu, "°C"},
        {"TM0P", "Memory Proximity", memory, "°C"},
        {"TA0S", "Ambient Sensor", thermal, "°C"},
        {"TI1P", "Thunderbolt 1 Proximity", thermal, "°C"},
        {"TMB1", "Motherboard 1", thermal, "°C"},
        {"TSYS", "System", thermal, "°C"},
        {"THRM", "Thermal", thermal, "°C"},
        {"VC0C", "Voltage", voltages, "V"},
        {"VCPU", "CPU Voltage", voltages, "V"},
        {"IC0C", "CPU Current", currents, "A"},
        {"IG0C", "GPU 0 Current", currents, "A"},
        {"IB0R", "Battery Discharge Current", battery, "A"},
        {"IM0R", "DIMM Current", currents, "A"},
        {"B0AV", "Battery 0 Voltage", battery, "V"},
        {"FNum", "Fan Count", fans, ""},
    };
    for (const SMCKeyDefinition& expected : tableWins) {
        SCOPED_TRACE(expected.key);
        EXPECT_EQ(SMCKeyDatabase::hwMonitorDefinition(expected.key), expected);
    }
}

TEST(SMCKeyDatabase, NamesTheNamedThermalKeysByTheTable) {
    for (const std::string_view key :
         {"TCPU", "TSYS", "TAUX", "TMOS", "TPCH", "TVRM", "TGPU", "TAMB", "TMB1", "TMB2", "THRM"}) {
        SCOPED_TRACE(key);
        const auto definition = SMCKeyDatabase::hwMonitorDefinition(key);
        ASSERT_TRUE(definition.has_value());
        EXPECT_EQ(definition->category, thermal);
        EXPECT_EQ(definition->unit, "°C");
        EXPECT_NE(definition->name, key);
    }
}

TEST(SMCKeyDatabase, NamesOtherKeysByTheirPattern) {
    const std::vector<SMCKeyDefinition> byPattern{
        {"TC3D", "CPU 3 Diode", cpu, "°C"},
        {"TC2H", "CPU Heatsink", cpu, "°C"},
        {"TC1E", "CPU TC1E", cpu, "°C"},
        {"TG2D", "GPU 2 Die", gpu, "°C"},
        {"TG2X", "GPU 2 Temperature", gpu, "°C"},
        {"TM1S", "Memory TM1S", memory, "°C"},
        {"TN2D", "NVMe 2 Die", storage, "°C"},
        {"TH3P", "Drive 3 Proximity", storage, "°C"},
        {"TS2a", "SATA 2 Proximity", storage, "°C"},
        {"PG1C", "PG1C", gpu, "W"},
        {"B4FC", "B4FC", battery, "mAh"},
        {"B4AV", "B4AV", battery, "V"},
        {"B4CT", "B4CT", battery, ""},
        {"Fan9", "Fan9", fans, "RPM"},
    };
    for (const SMCKeyDefinition& expected : byPattern) {
        SCOPED_TRACE(expected.key);
        ASSERT_FALSE(SMCKeyDatabase::byKey().contains(expected.key));
        EXPECT_EQ(SMCKeyDatabase::hwMonitorDefinition(expected.key), expected);
    }
}

TEST(SMCKeyDatabase, CannotNameEveryKey) {
    for (const std::string_view key : {"TCaC", "F3Xy", "FAN8", "FAN9", "#KEY", "OSK0", "MSDS"}) {
        EXPECT_EQ(SMCKeyDatabase::hwMonitorDefinition(key), std::nullopt) << key;
    }
}

TEST(SMCKeyDatabase, CannotNameAKeyOfThreeOrFiveCharacters) {
    for (const std::string_view key :
         {"TC0", "TC10C", "F1A", "F10Ac", "PC0", "VC0CC", "B0A", "Fan", "Fan10"}) {
        EXPECT_EQ(SMCKeyDatabase::hwMonitorDefinition(key), std::nullopt) << key;
    }
}

} // namespace
} // namespace kelvinbar::smc_key_database_test
