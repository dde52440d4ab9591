#include "machines/linux/naming/SensorRules.h"

#include "base/Text.h"
#include "catalogue/SMCKeyDatabase.h"
#include "machines/linux/sources/SensorValue.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar {

namespace {

using enum SensorKind;

constexpr std::string_view decimalDigits = "0123456789";
constexpr std::string_view hexDigits = "0123456789ABCDEF";
constexpr std::string_view digitsAndLetters = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";

std::vector<std::string> partsOf(std::string_view text, char separator) {
    std::vector<std::string> parts(1);
    for (const char character : text) {
        if (character == separator) {
            parts.emplace_back();
        } else {
            parts.back() += character;
        }
    }
    return parts;
}

/// What a failed expectation says of a rule.
std::string describe(const SensorRule& rule) {
    return std::string(rule.chips).append(" / ").append(rule.labels).append(" -> ").append(rule.keys);
}

/// The types that keys of the kernel's sensors had.
bool isKnownType(std::string_view type) {
    constexpr std::array<std::string_view, 8> types{"flt ", "sp78", "fpe2", "ui8 ",
                                                     "flag", "ui16", "ui32", "ch8*"};
    return std::ranges::find(types, type) != types.end();
}

std::string_view unitOf(SensorKind kind) {
    switch (kind) {
    case temperature:
        return "°C";
    case voltage:
        return "V";
    case current:
        return "A";
    case power:
    case energy:
        return "W";
    case fan:
    case fanMinimum:
    case fanMaximum:
    case fanTarget:
    case fanSafe:
        return "RPM";
    case charge:
        return "mAh";
    default:
        return "";
    }
}

/// The keys that `pattern` stands for, with `digits` for each of its placeholders that is one digit.
std::vector<std::string> keysOf(const std::string& pattern, std::string_view digits) {
    const std::size_t place = pattern.find_first_of("@=#%+^");
    if (place == std::string::npos) return {pattern};
    std::vector<std::string> keys;
    for (const char digit : digits) {
        if (pattern[place] == '^' && digit == '0') continue;
        std::string next = pattern;
        next[place] = digit;
        std::ranges::copy(keysOf(next, digits), std::back_inserter(keys));
    }
    return keys;
}

/// As many of the keys that a pattern with "++" gives as the catalogue names.
std::size_t expectUnitOfPairs(std::string pattern, SensorKind kind) {
    const std::size_t place = pattern.find("++");
    std::size_t named = 0;
    for (const char first : digitsAndLetters) {
        for (const char second : digitsAndLetters) {
            pattern[place] = first;
            pattern[place + 1] = second;
            const auto definition = SMCKeyDatabase::hwMonitorDefinition(pattern);
            if (!definition || SMCKeyDatabase::byKey().contains(pattern)) continue;
            ++named;
            EXPECT_EQ(definition->unit, unitOf(kind)) << pattern;
        }
    }
    return named;
}

void expectNamed(const std::string& key, SensorKind kind) {
    const auto definition = SMCKeyDatabase::hwMonitorDefinition(key);
    ASSERT_TRUE(definition.has_value()) << key;
    EXPECT_EQ(definition->unit, unitOf(kind)) << key;
    EXPECT_FALSE(definition->name.empty()) << key;
}

// Patterns

TEST(SensorRules, APatternWithoutSignsIsTheTextItself) {
    EXPECT_TRUE(fitsPattern("coretemp", "coretemp"));
    EXPECT_FALSE(fitsPattern("coretemp", "coretemp2"));
    EXPECT_FALSE(fitsPattern("coretemp", "xcoretemp"));
    EXPECT_FALSE(fitsPattern("coretemp", "coretem"));
}

TEST(SensorRules, LetterCaseDoesNotCount) {
    EXPECT_TRUE(fitsPattern("*CPU*", "my cpu fan"));
    EXPECT_TRUE(fitsPattern("*cpu*", "MY CPU FAN"));
    EXPECT_TRUE(fitsPattern("Package id *", "pACKAGE ID 0"));
    EXPECT_FALSE(fitsPattern("[", "{"));
    EXPECT_FALSE(fitsPattern("@", "`"));
}

TEST(SensorRules, AStarStandsForAnyTextEvenNone) {
    for (const std::string_view text : {"nvme", "nvme0", "nvme-pci-0100"}) {
        SCOPED_TRACE(text);
        EXPECT_TRUE(fitsPattern("nvme*", text));
    }
    EXPECT_FALSE(fitsPattern("nvme*", "nvm"));
    EXPECT_FALSE(fitsPattern("nvme*", "anvme"));
    EXPECT_TRUE(fitsPattern("*_thermal", "cpu_thermal"));
    EXPECT_FALSE(fitsPattern("*_thermal", "cpu_thermal2"));
}

TEST(SensorRules, StarsTryEveryPlace) {
    EXPECT_TRUE(fitsPattern("a*b*c", "abbbbc"));
    EXPECT_TRUE(fitsPattern("a*b*c", "abcabc"));
    EXPECT_FALSE(fitsPattern("a*b*c", "acb"));
    EXPECT_TRUE(fitsPattern("*ab", "aab"));
    EXPECT_TRUE(fitsPattern("**", ""));
    EXPECT_TRUE(fitsPattern("TSI*_TEMP", "TSI0_TEMP_TEMP"));
}

TEST(SensorRules, AQuestionMarkStandsForOneCharacter) {
    EXPECT_TRUE(fitsPattern("ath1?k*", "ath11k_hwmon"));
    EXPECT_TRUE(fitsPattern("????", "TC0D"));
    EXPECT_FALSE(fitsPattern("????", "TC0"));
    EXPECT_FALSE(fitsPattern("????", "TC0DD"));
    EXPECT_FALSE(fitsPattern("?", ""));
    EXPECT_TRUE(fitsPattern("t?sensor", "T Sensor"));
}

TEST(SensorRules, AnyAlternativeMayFit) {
    for (const std::string_view text : {"in0", "vddgfx", "SVI2_Core"}) {
        SCOPED_TRACE(text);
        EXPECT_TRUE(fitsPattern("vddgfx|in0|svi2*", text));
    }
    EXPECT_FALSE(fitsPattern("vddgfx|in0|svi2*", "in00"));
    EXPECT_FALSE(fitsPattern("vddgfx|in0|svi2*", "vddgfx|in0"));
    EXPECT_FALSE(fitsPattern("vddgfx|in0", ""));
}

TEST(SensorRules, OnlyAStarOrNothingFitsAnEmptyText) {
    EXPECT_TRUE(fitsPattern("*", ""));
    EXPECT_TRUE(fitsPattern("", ""));
    EXPECT_TRUE(fitsPattern("a|*", ""));
    EXPECT_FALSE(fitsPattern("a", ""));
    EXPECT_FALSE(fitsPattern("", "a"));
}

TEST(SensorRules, SignsOfLabelsStandForThemselves) {
    EXPECT_TRUE(fitsPattern("+3.3*|3.3v*", "+3.3V"));
    EXPECT_FALSE(fitsPattern("+3.3*", "+3x3V"));
    EXPECT_FALSE(fitsPattern("+3.3*", "33V"));
    EXPECT_TRUE(fitsPattern("*cpu*", "CPU (PECI)"));
    EXPECT_TRUE(fitsPattern("CPU (PECI)", "cpu (peci)"));
    EXPECT_FALSE(fitsPattern("CPU (PECI)", "cpu peci"));
    EXPECT_FALSE(fitsPattern("T.Sensor", "T Sensor"));
    EXPECT_TRUE(fitsPattern("[a-z]\\", "[a-z]\\"));
    EXPECT_FALSE(fitsPattern("[a-z]", "b"));
}

TEST(SensorRules, SignsOfPatternsInALabelAreOrdinaryText) {
    EXPECT_TRUE(fitsPattern("*", "*?|"));
    EXPECT_FALSE(fitsPattern("CPU", "*"));
    EXPECT_FALSE(fitsPattern("CPU", "???"));
}

// The table

TEST(SensorRules, EveryRuleHasWellFormedPatterns) {
    ASSERT_FALSE(sensorRules().empty());
    for (const SensorRule& rule : sensorRules()) {
        SCOPED_TRACE(describe(rule));
        for (const std::string_view pattern : {rule.chips, rule.labels}) {
            for (const std::string& alternative : partsOf(pattern, '|')) {
                EXPECT_FALSE(alternative.empty()) << pattern;
                EXPECT_EQ(trimmed(alternative), alternative) << pattern;
            }
        }
    }
}

TEST(SensorRules, EveryRuleHasKeysOfFourCharactersApartByABlank) {
    for (const SensorRule& rule : sensorRules()) {
        SCOPED_TRACE(describe(rule));
        for (const std::string& key : partsOf(rule.keys, ' ')) {
            EXPECT_EQ(key.size(), 4U) << key;
            EXPECT_TRUE(key == "????" || !contains(key, "?")) << key;
            EXPECT_EQ(key.find_first_of("@=#%+^|*"), key.find_first_of("@=#%+^", 1)) << key;
        }
    }
}

TEST(SensorRules, EveryRuleIsCoveredByKeysOfFourCharactersIfAtAll) {
    for (const SensorRule& rule : sensorRules()) {
        if (rule.coveredBy.empty()) continue;
        SCOPED_TRACE(describe(rule));
        for (const std::string& key : partsOf(rule.coveredBy, '|')) EXPECT_EQ(key.size(), 4U) << key;
    }
}

TEST(SensorRules, EveryRuleHasATypeThatHoldsItsKind) {
    for (const SensorRule& rule : sensorRules()) {
        SCOPED_TRACE(describe(rule));
        EXPECT_TRUE(isKnownType(rule.type)) << rule.type;
        EXPECT_EQ(rule.type == "ch8*", rule.kind == text);
    }
}

TEST(SensorRules, TheCatalogueNamesEveryKeyWithTheUnitOfTheKind) {
    for (const SensorRule& rule : sensorRules()) {
        SCOPED_TRACE(describe(rule));
        for (const std::string& pattern : partsOf(rule.keys, ' ')) {
            if (pattern == "????") continue;
            if (contains(pattern, "++")) {
                EXPECT_GT(expectUnitOfPairs(pattern, rule.kind), 0U) << pattern;
                continue;
            }
            // Fans of the controller are counted in decimal.
            const bool isDecimal = pattern.front() == 'F' && !pattern.starts_with("Fan");
            for (const std::string& key : keysOf(pattern, isDecimal ? decimalDigits : hexDigits)) {
                expectNamed(key, rule.kind);
            }
        }
    }
}

TEST(SensorRules, TheLastRuleOfAMeasurementIsForAnyChannel) {
    for (const SensorKind kind : {temperature, voltage, current, power, energy, fan}) {
        SCOPED_TRACE(static_cast<int>(kind));
        std::optional<SensorRule> last;
        for (const SensorRule& rule : sensorRules()) {
            if (rule.kind == kind) last = rule;
        }
        ASSERT_TRUE(last.has_value());
        EXPECT_EQ(last->chips, "*");
        EXPECT_EQ(last->labels, "*");
        EXPECT_EQ(last->coveredBy, "");
    }
}

TEST(SensorRules, NoRuleStandsBehindOneThatTakesAllItsChannels) {
    const auto rules = sensorRules();
    for (std::size_t later = 0; later < rules.size(); ++later) {
        for (std::size_t earlier = 0; earlier < later; ++earlier) {
            const bool takesAll = rules[earlier].labels == "*" &&
                                  (rules[earlier].chips == rules[later].chips || rules[earlier].chips == "*");
            EXPECT_FALSE(takesAll && rules[earlier].kind == rules[later].kind)
                << describe(rules[earlier]) << " before " << describe(rules[later]);
        }
    }
}

TEST(SensorRules, NoRuleIsThereTwice) {
    const auto rules = sensorRules();
    for (std::size_t later = 0; later < rules.size(); ++later) {
        for (std::size_t earlier = 0; earlier < later; ++earlier) {
            EXPECT_FALSE(rules[earlier].chips == rules[later].chips &&
                         rules[earlier].kind == rules[later].kind &&
                         rules[earlier].labels == rules[later].labels)
                << describe(rules[later]);
        }
    }
}

TEST(SensorRules, FrequenciesAndHumidityHaveNoRules) {
    for (const SensorRule& rule : sensorRules()) {
        SCOPED_TRACE(describe(rule));
        EXPECT_NE(rule.kind, frequency);
        EXPECT_NE(rule.kind, humidity);
    }
}

TEST(SensorRules, TheCatalogueNamesTheAttributesOfTenFans) {
    ASSERT_FALSE(fanAttributeRules().empty());
    for (const FanAttributeRule& rule : fanAttributeRules()) {
        SCOPED_TRACE(rule.keyEnd);
        ASSERT_EQ(rule.keyEnd.size(), 2U);
        EXPECT_TRUE(isKnownType(rule.type)) << rule.type;
        for (const char digit : decimalDigits) {
            expectNamed(std::string{'F', digit}.append(rule.keyEnd), rule.kind);
        }
    }
}

TEST(SensorRules, ClassNamesOfTheRegistrySayWhatTheDriverReads) {
    const auto classNameOf = [](std::string_view chip) {
        for (const RegistryRule& rule : registryRules()) {
            if (fitsPattern(rule.chips, chip)) return asciiLowercased(rule.className);
        }
        return asciiLowercased(plainRegistryClass);
    };
    for (const std::string_view chip :
         {"nct6798", "nct6775", "nct6687", "it8628", "it8792", "it87", "f71882fg", "w83627ehf", "sch5627"}) {
        SCOPED_TRACE(chip);
        EXPECT_TRUE(contains(classNameOf(chip), "superio"));
    }
    for (const std::string_view chip : {"asus_wmi_sensors", "asusec", "atk0110"}) {
        SCOPED_TRACE(chip);
        EXPECT_TRUE(contains(classNameOf(chip), "acpisensors"));
    }
    for (const std::string_view chip :
         {"coretemp", "k10temp", "amdgpu", "nvme", "thinkpad", "applesmc", "dell_smm"}) {
        SCOPED_TRACE(chip);
        EXPECT_EQ(classNameOf(chip), "hwmondevice");
    }
}

TEST(SensorRules, AQuestionMarkStandsForACharacterOfSeveralBytes) {
    EXPECT_TRUE(fitsPattern("t?sensor", "T°Sensor"));
}

} // namespace

} // namespace kelvinbar
