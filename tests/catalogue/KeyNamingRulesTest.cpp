#include "catalogue/KeyNamingRules.h"

#include "catalogue/SMCKeyDatabase.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::key_naming_rules_test {
namespace {

using enum SMCCategory;

/// The upper-case hex digits; the index of a digit is its value.
constexpr std::string_view hexDigits = "0123456789ABCDEF";

/// Characters next to the digits and the letters A to F, and the lower-case digits.
constexpr std::string_view noHexDigits = "/:@Ggabcdef z";

void expectDefinition(const std::string& key, const std::string& name, SMCCategory category,
                      const std::string& unit) {
    SCOPED_TRACE(key);
    const std::optional<SMCKeyDefinition> definition = definitionByPattern(key);
    ASSERT_TRUE(definition.has_value());
    EXPECT_EQ(definition->key, key);
    EXPECT_EQ(definition->name, name);
    EXPECT_EQ(rawValue(definition->category), rawValue(category));
    EXPECT_EQ(definition->unit, unit);
}

void expectNoDefinition(std::string_view key) {
    EXPECT_EQ(definitionByPattern(key), std::nullopt) << testing::PrintToString(key);
}

TEST(CpuTemperatureKeys, AreNamedByTheLetterAtTheEnd) {
    for (std::size_t value = 0; value < hexDigits.size(); ++value) {
        const std::string number = std::to_string(value);
        const std::string front = std::string("TC") + hexDigits[value];
        expectDefinition(front + "C", "Core " + number, cpu, "°C");
        expectDefinition(front + "D", "CPU " + number + " Diode", cpu, "°C");
        expectDefinition(front + "P", "CPU Proximity", cpu, "°C");
        expectDefinition(front + "H", "CPU Heatsink", cpu, "°C");
        expectDefinition(front + "T", "CPU Package", cpu, "°C");
        expectDefinition(front + "p", "CPU Package", cpu, "°C");
        for (const std::string letter : {"E", "F", "J"}) {
            const std::string key = front + letter;
            expectDefinition(key, "CPU " + key, cpu, "°C");
        }
    }
}

TEST(CpuTemperatureKeys, HaveNoOtherLettersAtTheEnd) {
    for (const char letter : std::string_view("ABGIKMSXcdefhjt019 "))
        expectNoDefinition(std::string("TC1") + letter);
}

TEST(CpuTemperatureKeys, HaveAnUpperCaseHexDigitAsIndex) {
    expectNoDefinition("TCaC");
    for (const char index : noHexDigits) expectNoDefinition(std::string("TC") + index + "C");
}

TEST(HybridCoreKeys, AreNamedByTheirFamily) {
    for (std::size_t value = 0; value < hexDigits.size(); ++value) {
        const std::string number = std::to_string(value);
        const std::string back = std::string(1, hexDigits[value]) + "C";
        expectDefinition("Tp" + back, "CPU P-Core " + number, cpu, "°C");
        expectDefinition("Te" + back, "CPU E-Core " + number, cpu, "°C");
        expectDefinition("Ts" + back, "CPU Sensor " + number, cpu, "°C");
    }
}

TEST(HybridCoreKeys, HaveAnUpperCaseHexDigitAndEndWithC) {
    for (const std::string front : {"Tp", "Te", "Ts"}) {
        for (const char index : noHexDigits) expectNoDefinition(front + index + "C");
        for (const char kind : std::string_view("cDPT0")) expectNoDefinition(front + "1" + kind);
    }
}

TEST(HybridCoreKeys, HaveALowerCaseFamilyLetter) {
    expectDefinition("TP1C", "TP1C", thermal, "°C");
    expectDefinition("TS1C", "SATA 1 Proximity", storage, "°C");
    expectNoDefinition("TE1C");
    expectNoDefinition("Tc1C");
}

TEST(GpuTemperatureKeys, AreNamedByTheLetterAtTheEnd) {
    for (std::size_t value = 0; value < hexDigits.size(); ++value) {
        const std::string front = std::string("TG") + hexDigits[value];
        const std::string name = "GPU " + std::to_string(value);
        expectDefinition(front + "D", name + " Die", gpu, "°C");
        expectDefinition(front + "P", name + " Proximity", gpu, "°C");
        expectDefinition(front + "H", name + " Heatsink", gpu, "°C");
        expectDefinition(front + "C", name + " Core", gpu, "°C");
        expectDefinition(front + "M", name + " Memory", gpu, "°C");
        for (const std::string other : {"X", "T", "d", "p", "0", " "}) {
            expectDefinition(front + other, name + " Temperature", gpu, "°C");
        }
    }
}

TEST(GpuTemperatureKeys, HaveAnUpperCaseHexDigitAsIndex) {
    for (const char index : noHexDigits) expectNoDefinition(std::string("TG") + index + "D");
}

TEST(MemoryTemperatureKeys, AreModulesWhenTheyEndWithP) {
    for (std::size_t value = 0; value < hexDigits.size(); ++value) {
        const std::string front = std::string("TM") + hexDigits[value];
        expectDefinition(front + "P", "DIMM " + std::to_string(value), memory, "°C");
        for (const std::string other : {"S", "A", "p", "1", " "}) {
            const std::string key = front + other;
            expectDefinition(key, "Memory " + key, memory, "°C");
        }
    }
}

TEST(MemoryTemperatureKeys, HaveAnUpperCaseHexDigitAsIndex) {
    for (const char index : noHexDigits) expectNoDefinition(std::string("TM") + index + "P");
}

TEST(StorageTemperatureKeys, AreNamedByBusAndWhatStandsBetween) {
    expectDefinition("TN0D", "NVMe 0 Die", storage, "°C");
    expectDefinition("TN2D", "NVMe 2 Die", storage, "°C");
    expectDefinition("TN2P", "NVMe 2 Proximity", storage, "°C");
    expectDefinition("TN2d", "NVMe 2 Proximity", storage, "°C");
    expectDefinition("TNzD", "NVMe z Die", storage, "°C");
    expectDefinition("TS2a", "SATA 2 Proximity", storage, "°C");
    expectDefinition("TS2D", "SATA 2 Proximity", storage, "°C");
    expectDefinition("TH3P", "Drive 3 Proximity", storage, "°C");
    expectDefinition("TH0P", "Drive 0 Proximity", storage, "°C");
    expectDefinition("TH D", "Drive   Proximity", storage, "°C");
}

TEST(ThermalZoneKeys, AreNamedOrKeepTheirKey) {
    expectDefinition("TA0P", "Ambient", thermal, "°C");
    expectDefinition("TPCD", "PCH", thermal, "°C");
    for (const std::string key : {"TA1P", "TP1P", "TW1P", "TL1P", "TI2P", "TB2T", "TAxx", "TWab", "TLLL"}) {
        expectDefinition(key, key, thermal, "°C");
    }
}

TEST(ThermalZoneKeys, HaveAnUpperCaseComponentLetter) {
    for (const std::string_view key :
         {"Ta0P", "Tw0P", "Tl0P", "Ti0P", "Tb0T", "Tn0D", "Th0P", "Tm0P", "Tg0D"}) {
        expectNoDefinition(key);
    }
}

TEST(TemperatureKeys, HaveNoOtherComponentLetters) {
    for (const char component : std::string_view("DEFJKOQRTUVXYZ019x ")) {
        expectNoDefinition(std::string("T") + component + "0P");
    }
    expectNoDefinition("tC0P");
}

TEST(FanKeys, AreNamedByTheirNumberAndTheirEnd) {
    for (const std::string number : {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"}) {
        const std::string key = "F" + number;
        const std::string name = "Fan " + number;
        expectDefinition(key + "Ac", name, fans, "RPM");
        expectDefinition(key + "Mn", name + " Minimum", fans, "RPM");
        expectDefinition(key + "Mx", name + " Maximum", fans, "RPM");
        expectDefinition(key + "Tg", name + " Target", fans, "RPM");
        expectDefinition(key + "Sf", name + " Safe", fans, "RPM");
        expectDefinition(key + "ID", name + " Name", fans, "");
        expectDefinition(key + "Md", name + " Mode", fans, "");
    }
}

TEST(FanKeys, HaveNoOtherEnds) {
    for (const std::string_view key :
         {"F3Xy", "F0AC", "F0ac", "F0MN", "F0mx", "F0tg", "F0id", "F0Id", "F0MD", "F0  "}) {
        expectNoDefinition(key);
    }
}

TEST(FanKeys, HaveADecimalDigitAsNumber) {
    for (const std::string_view key : {"FAAc", "FaAc", "F Ac", "F/Ac", "F:Ac", "FAN8", "FNum", "f0Ac"}) {
        expectNoDefinition(key);
    }
}

TEST(FanKeys, KeepTheirKeyAsNameWhenTheyBeginWithFan) {
    for (const std::string key : {"Fan9", "Fan0", "FanX", "Fan "}) expectDefinition(key, key, fans, "RPM");
    for (const std::string_view key : {"FAn9", "fan9", "FaN9", "Fa09"}) expectNoDefinition(key);
}

TEST(PowerKeys, BelongToTheProcessorOrTheGpuByTheirPrefix) {
    expectDefinition("PSTR", "CPU Package Energy", power, "W");
    expectDefinition("PC0C", "Package Total", power, "W");
    expectDefinition("PCPG", "Package IGPU", power, "W");
    expectDefinition("PC5C", "PC5C", power, "W");
    expectDefinition("PG0R", "GPU 0 Power", gpu, "W");
    expectDefinition("PG1C", "PG1C", gpu, "W");
    for (const std::string_view key : {"PSTr", "PSTX", "PM0C", "PDTR", "pC0C", "Pc0C", "Pg0C"})
        expectNoDefinition(key);
}

TEST(VoltageKeys, BeginWithV) {
    expectDefinition("VC0C", "CPU Core Voltage", voltages, "V");
    for (const std::string key : {"VXYZ", "V   ", "VV1R", "V°°°"}) expectDefinition(key, key, voltages, "V");
    expectNoDefinition("vC0C");
}

TEST(CurrentKeys, BeginWithI) {
    expectDefinition("IC0C", "CPU Core Current", currents, "A");
    expectDefinition("IB0R", "Battery Current", currents, "A");
    for (const std::string key : {"IXYZ", "I0xx", "ID2L"}) expectDefinition(key, key, currents, "A");
    expectNoDefinition("iC0C");
}

TEST(BatteryKeys, BeginWithBOrCHOrAreThePowerOfTheAdapter) {
    expectDefinition("BNum", "Battery Count", battery, "");
    expectDefinition("CH0B", "Charger Connected", battery, "");
    expectDefinition("CHBI", "Battery Charge Current", battery, "A");
    expectDefinition("ACPW", "AC Adapter Power", battery, "W");
    expectDefinition("CH1B", "CH1B", battery, "");
    for (const std::string_view key : {"ACPw", "ACXX", "ACAV", "CG0B", "Ch0B", "C0FC", "b0FC"})
        expectNoDefinition(key);
}

TEST(BatteryKeys, KeepTheirKeyAsNameAndHaveAUnitByTheirSuffix) {
    expectDefinition("B4FC", "B4FC", battery, "mAh");
    expectDefinition("B4RM", "B4RM", battery, "mAh");
    expectDefinition("B4DC", "B4DC", battery, "mAh");
    expectDefinition("B4AV", "B4AV", battery, "V");
    expectDefinition("B4AC", "B4AC", battery, "A");
    expectDefinition("B4Am", "B4Am", battery, "A");
    expectDefinition("B4AP", "B4AP", battery, "W");
    expectDefinition("B4CT", "B4CT", battery, "");
    expectDefinition("BXYZ", "BXYZ", battery, "");
    expectDefinition("CHAV", "CHAV", battery, "V");
}

TEST(NamedThermalKeys, KeepTheirKeyAsNameWhenNoEarlierRuleApplies) {
    for (const std::string key : {"TCPU", "TGPU", "TMOS", "TVRM"}) expectDefinition(key, key, thermal, "°C");
}

TEST(NamedThermalKeys, AreNamedByAnEarlierRuleWhereOneApplies) {
    expectDefinition("TMB1", "Memory TMB1", memory, "°C");
    expectDefinition("TMB2", "Memory TMB2", memory, "°C");
    expectDefinition("TSYS", "SATA Y Proximity", storage, "°C");
    expectDefinition("THRM", "Drive R Proximity", storage, "°C");
    for (const std::string key : {"TAMB", "TAUX", "TPCH"}) expectDefinition(key, key, thermal, "°C");
}

TEST(KeyNamingRules, NameNoKeyOfThreeOrFiveCharacters) {
    for (const std::string_view key :
         {"", "T", "TC0", "TC0PP", "TC10C", "F0A", "F10Ac", "PC0", "PSTR ", "VC0", "VC0CC", "I0C", "B0A",
          "BNum ", "CH0", "TCP", "TCPU ", "Fan", "Fan10"}) {
        expectNoDefinition(key);
    }
}

TEST(KeyNamingRules, CountCharactersNotBytes) {
    expectDefinition("TN°D", "NVMe ° Die", storage, "°C"); // four characters in five bytes
    expectDefinition("TG1°", "GPU 1 Temperature", gpu, "°C");
    expectNoDefinition("V°°");  // three characters in five bytes
    expectNoDefinition("V—");   // two characters in four bytes
    expectNoDefinition("TC°C"); // no hex digit
}

TEST(KeyNamingRules, EndOnAnyBytes) {
    expectDefinition("V\xFF\xFE\x80", "V\xFF\xFE\x80", voltages, "V");
    expectNoDefinition("\xFF\xFE\xFD\xFC");
    expectNoDefinition(std::string_view("\0\0\0\0", 4));
    expectNoDefinition("T\xC2\xB0\xC2\xB0\xC2\xB0");
    expectNoDefinition("    ");
}

TEST(KeyNamingRules, NameNoKeyOutsideTheFamilies) {
    for (const std::string_view key :
         {"#KEY", "REV ", "RVBF", "MSDS", "NATJ", "OSK0", "ALV0", "DPLM", "SBF ", "zETM"}) {
        expectNoDefinition(key);
    }
}

struct NamedKeys {
    std::string_view name;
    std::vector<std::string_view> keys;
};

/// That `nameOf` gives the listed names, and for every other key of the catalogue the key itself.
void expectNames(std::string (*nameOf)(std::string_view), const std::vector<NamedKeys>& names) {
    std::vector<std::string_view> listed;
    for (const auto& [name, keys] : names) {
        for (const std::string_view key : keys) {
            EXPECT_EQ(nameOf(key), name) << key;
            listed.push_back(key);
        }
    }
    std::vector<std::string_view> others{"",     "T",    "TA0",  "TA0PP", "PC0C ",
                                         "vBLC", "IC0c", "bNum", "XXXX",  "°"};
    others.insert(others.end(), SMCKeyDatabase::allKeys().begin(), SMCKeyDatabase::allKeys().end());
    for (const std::string_view key : others) {
        const bool isListed = std::ranges::find(listed, key) != listed.end();
        EXPECT_TRUE(isListed || nameOf(key) == key) << key << " is named " << nameOf(key);
    }
}

TEST(ThermalName, IsListedOrTheKeyItself) {
    expectNames(thermalName, {
                                 {"Ambient", {"TA0P", "TA0S", "TA0V"}},
                                 {"PCH", {"TP0P", "TCHP", "TPCD"}},
                                 {"Wi-Fi Proximity", {"TW0P"}},
                                 {"LCD Proximity", {"TL0P"}},
                                 {"Thunderbolt Proximity", {"TI0P", "TI1P"}},
                                 {"Battery Temperature", {"TB0T", "TB1T"}},
                             });
}

TEST(PowerName, IsListedOrTheKeyItself) {
    expectNames(powerName, {
                               {"Package Total", {"PC0C", "PC0R"}},
                               {"Package Core", {"PCPC"}},
                               {"Package IGPU", {"PCPG"}},
                               {"CPU Power Limit", {"PCPL"}},
                               {"CPU Package Power", {"PCPR"}},
                               {"CPU Power", {"PCPT", "PCTR"}},
                               {"GPU 0 Power", {"PG0C", "PG0R"}},
                           });
}

TEST(VoltageName, IsListedOrTheKeyItself) {
    expectNames(voltageName, {
                                 {"Backlight Voltage", {"VBLC"}},
                                 {"CPU Core Voltage", {"VC0C", "VC0R", "VCPU", "VCOR"}},
                                 {"CPU AXG Voltage", {"VC0G"}},
                                 {"CPU Memory Voltage", {"VC0M"}},
                                 {"CPU System Agent Voltage", {"VC0S"}},
                                 {"VCCIO Voltage", {"VC1C"}},
                                 {"CPU High-Side Voltage EMC1704", {"VC1R"}},
                                 {"VCCSA Voltage", {"VC2C"}},
                                 {"FIVR CPU Supply Voltage", {"VCFR"}},
                                 {"GPU 0 Voltage", {"VG0C"}},
                                 {"+12V", {"V12R"}},
                                 {"+5V", {"V05R", "V50R", "V5VP"}},
                                 {"+3.3V", {"V33R", "V3V3"}},
                                 {"Battery Voltage", {"VBAT"}},
                             });
}

TEST(CurrentName, IsListedOrTheKeyItself) {
    expectNames(currentName, {
                                 {"+5V Low-Side Current", {"I50R"}},
                                 {"Airport Current", {"IAPC"}},
                                 {"Battery Current", {"IB0R", "IBAC", "B0AC"}},
                                 {"Backlight Current", {"IBLC"}},
                                 {"CPU Core Current", {"IC0C"}},
                                 {"CPU AXG Current", {"IC0G"}},
                                 {"CPU I/O Current", {"IC0I"}},
                                 {"CPU Memory Current", {"IC0M"}},
                                 {"CPU High-Side Current", {"IC0R", "Ic0R"}},
                                 {"CPU System Agent Current", {"IC0S"}},
                                 {"VCCIO Current", {"IC1C"}},
                                 {"CPU High-Side Current EMC1704", {"IC1R"}},
                                 {"VCCSA Current", {"IC2C"}},
                                 {"CPU DDR Current", {"IC3C"}},
                                 {"Camera Current", {"ICMC"}},
                                 {"CPU IMON Current", {"ICS0", "ICS1"}},
                                 {"CPU Riser 12V Current", {"ICTR"}},
                                 {"DC-In Current", {"ID0R"}},
                                 {"CPU 1V5 Current", {"ID1R"}},
                                 {"PSU 12V Current", {"ID2E", "ID2F", "ID2I", "ID2J", "ID2R", "ID2T"}},
                                 {"GPU 0 Core Current", {"IG0C"}},
                                 {"GPU 0 Framebuffer Current", {"IG0F"}},
                                 {"GPU 0 VDDCI Current", {"IG0I"}},
                                 {"GPU 0 High-Side Current", {"IG0R"}},
                                 {"GPU 0 VDDCI Low-Side Current", {"IG0S"}},
                                 {"GPU 0 Uncore Current", {"IG0U"}},
                                 {"GPU 1 Aux Current", {"IG1A"}},
                                 {"GPU 1 Core Current", {"IG1C"}},
                                 {"GPU 1 Framebuffer Current", {"IG1F"}},
                                 {"GPU 1 High-Side Current", {"IG1R"}},
                                 {"GPU 1 VDDCI Low-Side Current", {"IG1S"}},
                                 {"GPU 2 Core Current", {"IG2C"}},
                                 {"GPU 3 Current", {"IG3C"}},
                                 {"Drive 12V Current", {"IH02"}},
                                 {"Drive 5V Current", {"IH05"}},
                                 {"SSD 3.3V Current", {"IH0R", "IH1R"}},
                                 {"Drive Current", {"IHDC"}},
                                 {"Thunderbolt Current", {"IHSC", "IHSP"}},
                                 {"I/O Board 12V Current", {"II0R"}},
                                 {"LCD Panel Current", {"ILDC"}},
                                 {"Memory Current", {"IM0C", "IM0R"}},
                                 {"LPDDR/Memory Current", {"IM1C", "IM2C", "IM3C"}},
                                 {"Memory 1V5 Current", {"IMTR"}},
                                 {"Internal GPU Current", {"IN0C", "IN0R"}},
                                 {"MCP DDR Current", {"IN1C"}},
                                 {"PCH Current", {"IN1R"}},
                                 {"Other High-Side Current", {"IO0R"}},
                                 {"3.3V Current", {"IO3R"}},
                                 {"5V Current", {"IO5R"}},
                                 {"ODD Current", {"IODC"}},
                                 {"Discrete Battery Current", {"IP0R", "IPB1", "IPBR"}},
                                 {"3.3V S0 Current", {"IR0C"}},
                                 {"S3 3.3V Current", {"IR1C"}},
                                 {"PCH/GPU/TBT 1.05V Current", {"IR1R"}},
                                 {"S3 5V Current", {"IR2C"}},
                                 {"3.3V S0/S5 Current", {"IR3C"}},
                                 {"5V S0/S5 Current", {"IR5C"}},
                                 {"S2 Camera Current", {"IS2C"}},
                                 {"PCH Core Current", {"ISBC"}},
                                 {"SSD Current", {"ISDC"}},
                             });
}

TEST(CurrentName, KeepsTheUnevenNames) {
    EXPECT_EQ(currentName("IG2C"), "GPU 2 Core Current");
    EXPECT_EQ(currentName("IG3C"), "GPU 3 Current");
    EXPECT_EQ(currentName("Ic0R"), "CPU High-Side Current");
    EXPECT_EQ(currentName("B0AC"), "Battery Current"); // no rule asks for it
    expectDefinition("B0AC", "B0AC", battery, "A");
}

TEST(BatteryName, IsListedOrTheKeyItself) {
    expectNames(batteryName, {
                                 {"Battery Count", {"BNum"}},
                                 {"Charger Connected", {"CH0B"}},
                                 {"Battery Charge Current", {"CHBI"}},
                                 {"Battery Installed", {"BBIN"}},
                                 {"Battery Bad", {"BBAD"}},
                                 {"AC Adapter Power", {"ACPW"}},
                             });
}

TEST(StorageName, IsByPrefixOrTheKeyItself) {
    EXPECT_EQ(storageName("TN0D"), "NVMe 0 Die");
    EXPECT_EQ(storageName("TN0P"), "NVMe 0 Proximity");
    EXPECT_EQ(storageName("TS1P"), "SATA 1 Proximity");
    EXPECT_EQ(storageName("TS1D"), "SATA 1 Proximity");
    EXPECT_EQ(storageName("TH2P"), "Drive 2 Proximity");
    EXPECT_EQ(storageName("TN10D"), "NVMe 10 Die"); // all between the first two characters and the last
    for (const std::string_view key : {"", "T", "TC0D", "tN0D", "Tn0D", "XTN0"})
        EXPECT_EQ(storageName(key), key);
}

TEST(StorageName, EndsOnKeysWithNothingBetween) {
    EXPECT_EQ(storageName("TSP"), "SATA  Proximity");
    EXPECT_EQ(storageName("TND"), "NVMe  Die");
}

struct KeyUnit {
    std::string_view key;
    std::string_view unit;
};

TEST(BatteryUnit, IsByTheSuffixOrTheKey) {
    const std::vector<KeyUnit> units{
        {"B0AV", "V"}, {"CH0V", "V"}, {"B0AC", "A"}, {"B0Am", "A"},   {"CH0C", "A"},   {"CHBI", "A"},
        {"B0AP", "W"}, {"CH0W", "W"}, {"ACPW", "W"}, {"B0RM", "mAh"}, {"B0FC", "mAh"}, {"B0DC", "mAh"},
        {"XXAV", "V"}, {"CHAC", "A"}, {"AV", "V"},   {"DC", "mAh"},
    };
    for (const auto& [key, unit] : units) EXPECT_EQ(batteryUnit(key), unit) << key;
}

TEST(BatteryUnit, IsEmptyOtherwise) {
    for (const std::string_view key :
         {"B0CT", "B0St", "B0TF", "BNum", "CH0B", "CH1V", "CH1C", "CH1W", "CHB0", "B0AM",
          "B0av", "B0aC", "B0ap", "B0rm", "B0fc", "AVB0", "V",    "",     "B0XC", "CH0V "}) {
        EXPECT_EQ(batteryUnit(key), "") << key;
    }
}

} // namespace
} // namespace kelvinbar::key_naming_rules_test
