#include "smc/NativeMacSupport.h"

#include "tests/fakes/FakeSystemInformation.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::native_mac_support_test {

namespace {

using fakes::FakeSystemInformation;
using testing::ElementsAre;
using namespace std::string_literals;

SMCReading textReading(std::string key, std::string name, SMCCategory category, const std::string& value) {
    return {.key = std::move(key),
            .name = std::move(name),
            .category = category,
            .type = "native",
            .value = value,
            .numericValue = std::nullopt,
            .unit = "",
            .raw = value,
            .status = "OK"};
}

class NativeMacSupportTest : public testing::Test {
  protected:
    FakeSystemInformation system;
    NativeMacSupport native{system};

    [[nodiscard]] std::optional<SMCReading> reading(std::string_view key) const {
        const auto readings = native.readings();
        const auto found = std::ranges::find(readings, key, &SMCReading::key);
        return found == readings.end() ? std::nullopt : std::optional(*found);
    }

    [[nodiscard]] std::string valueOf(std::string_view key) const {
        const auto found = reading(key);
        return found ? found->value : "(left out)";
    }
};

// sysctl entries

TEST_F(NativeMacSupportTest, ASystemTextEndsAtItsZeroByte) {
    system.entries["hw.model"] = "Model1,1\0behind\0"s;
    EXPECT_EQ(native.sysctlString("hw.model"), "Model1,1");
}

TEST_F(NativeMacSupportTest, ASystemTextIsTrimmedOfWhiteSpaceAndLineEnds) {
    system.entries["hw.model"] = " \t\r\n Some  Processor \u00A0\u2028\n\0"s;
    EXPECT_EQ(native.sysctlString("hw.model"), "Some  Processor");
}

TEST_F(NativeMacSupportTest, ASystemTextMayHoldCharactersOfSeveralBytes) {
    system.entries["hw.model"] = "Prozessor \u00FC\0"s;
    EXPECT_EQ(native.sysctlString("hw.model"), "Prozessor \u00FC");
}

TEST_F(NativeMacSupportTest, AMissingSystemEntryHasNoText) {
    EXPECT_EQ(native.sysctlString("hw.model"), std::nullopt);
}

TEST_F(NativeMacSupportTest, ASystemEntryOfLessThanTwoBytesHasNoText) {
    for (const std::string& bytes : {""s, "\0"s, "M"s}) {
        SCOPED_TRACE(bytes.size());
        system.entries["hw.model"] = bytes;
        EXPECT_EQ(native.sysctlString("hw.model"), std::nullopt);
    }
    system.entries["hw.model"] = "M\0"s;
    EXPECT_EQ(native.sysctlString("hw.model"), "M");
}

TEST_F(NativeMacSupportTest, ASystemEntryOfSpacesHasNoText) {
    for (const std::string& bytes : {"\0\0"s, "\0hidden\0"s, "  \0"s, "\n\t\r\n\0"s, "\u2003\0"s}) {
        SCOPED_TRACE(bytes.size());
        system.entries["hw.model"] = bytes;
        EXPECT_EQ(native.sysctlString("hw.model"), std::nullopt);
    }
}

TEST_F(NativeMacSupportTest, ASystemEntryThatIsNotWellFormedUtf8HasNoText) {
    for (const std::string& bytes :
         {"Prozessor \xFC\0"s, "\xFC\xFC"s, "cut short \xC3\0"s, "overlong \xC0\xAF\0"s,
          "surrogate \xED\xA0\x80\0"s, "\x80 alone\0"s, "\xFF\xFE\0"s}) {
        SCOPED_TRACE(bytes.size());
        system.entries["hw.model"] = bytes;
        EXPECT_EQ(native.sysctlString("hw.model"), std::nullopt);
    }
}

TEST_F(NativeMacSupportTest, BytesBehindTheZeroByteNeedNotBeUtf8) {
    system.entries["hw.model"] = "Model1,1\0\xFC\xFF\0"s;
    EXPECT_EQ(native.sysctlString("hw.model"), "Model1,1");
}

// The list

TEST_F(NativeMacSupportTest, AllReadingsStandInFixedOrderWithAllFields) {
    system.entries["machdep.cpu.brand_string"] = "Some Processor\0"s;
    system.entries["hw.model"] = "Model1,1\0"s;
    system.processors = 8;
    system.memory = std::uint64_t{1} << 34U;
    system.thermal = 0;

    SMCReading cores = textReading("NCOR", "Active CPU Cores", SMCCategory::cpu, "8");
    cores.numericValue = 8;
    cores.raw = "8.0";
    SMCReading memory = textReading("NRAM", "Physical Memory", SMCCategory::memory, "16.0");
    memory.numericValue = 16;
    memory.unit = "GB";
    memory.raw = "17179869184";
    EXPECT_THAT(native.readings(),
                ElementsAre(textReading("NCPU", "CPU Model", SMCCategory::cpu, "Some Processor"),
                            textReading("NARC", "Architecture", SMCCategory::cpu, "Apple Silicon"), cores,
                            memory,
                            textReading("NTHR", "macOS Thermal State", SMCCategory::thermal, "Nominal"),
                            textReading("NLPM", "Low Power Mode", SMCCategory::power, "Disabled")));
}

TEST_F(NativeMacSupportTest, AMachineWithoutSystemFactsStillHasThreeReadings) {
    std::vector<std::string> keys;
    for (const SMCReading& each : native.readings()) keys.push_back(each.key);
    EXPECT_THAT(keys, ElementsAre("NARC", "NTHR", "NLPM"));
}

// Processor model

TEST_F(NativeMacSupportTest, TheModelReplacesAMissingProcessorName) {
    system.entries["hw.model"] = "Model1,1\0"s;
    const auto readings = native.readings();
    ASSERT_FALSE(readings.empty());
    EXPECT_EQ(readings.front(), textReading("NCPU", "CPU Model", SMCCategory::cpu, "Model1,1"));
}

TEST_F(NativeMacSupportTest, TheModelReplacesAProcessorNameOfSpaces) {
    system.entries["machdep.cpu.brand_string"] = "   \0"s;
    system.entries["hw.model"] = "Model1,1\0"s;
    EXPECT_EQ(valueOf("NCPU"), "Model1,1");
}

TEST_F(NativeMacSupportTest, AProcessorNameInLatin1IsNeverAReading) {
    system.entries["machdep.cpu.brand_string"] = "Prozessor \xFC\0"s;
    EXPECT_EQ(reading("NCPU"), std::nullopt);
    system.entries["hw.model"] = "Modell \xE4\0"s;
    EXPECT_EQ(reading("NCPU"), std::nullopt);
    system.entries["hw.model"] = "Model1,1\0"s;
    EXPECT_EQ(valueOf("NCPU"), "Model1,1");
}

TEST_F(NativeMacSupportTest, AProcessorNameThatIsAPlaceholderIsLeftOut) {
    system.entries["hw.model"] = "Model1,1\0"s;
    for (const std::string& name : {"N/A\0"s, "Unsupported\0"s, "--\0"s, "Infinity CPU\0"s}) {
        SCOPED_TRACE(name);
        system.entries["machdep.cpu.brand_string"] = name;
        EXPECT_EQ(reading("NCPU"), std::nullopt);
    }
}

// Processor count

TEST_F(NativeMacSupportTest, TheCoresAreLeftOutBelowOne) {
    for (const int count : {0, -1, std::numeric_limits<int>::min()}) {
        SCOPED_TRACE(count);
        system.processors = count;
        EXPECT_EQ(reading("NCOR"), std::nullopt);
    }
}

TEST_F(NativeMacSupportTest, TheRawCoreCountIsADoublesText) {
    for (const auto& [count, value, raw] :
         {std::tuple{1, "1", "1.0"}, {10, "10", "10.0"}, {256, "256", "256.0"}}) {
        SCOPED_TRACE(count);
        system.processors = count;
        const auto cores = reading("NCOR");
        ASSERT_TRUE(cores.has_value());
        EXPECT_EQ(cores->value, value);
        EXPECT_EQ(cores->raw, raw);
        EXPECT_EQ(cores->numericValue, count);
    }
}

// Memory

TEST_F(NativeMacSupportTest, MemoryIsShownInGibibytesWithOneDecimal) {
    struct Case {
        std::uint64_t bytes;
        std::string_view value;
        double number;
        std::string_view raw;
    };

    for (const Case& memory : {
             Case{17179869184, "16.0", 16, "17179869184"},
             Case{1610612736, "1.5", 1.5, "1610612736"},
             Case{1073741824, "1.0", 1, "1073741824"},
             Case{268435456, "0.2", 0.25, "268435456"}, // ties go to the even digit
             Case{1, "0.0", 1.0 / 1073741824, "1"},
             Case{0xFFFFFFFFFFFFFFFF, "17179869184.0", 17179869184, "18446744073709551615"},
         }) {
        SCOPED_TRACE(memory.bytes);
        system.memory = memory.bytes;
        const auto found = reading("NRAM");
        ASSERT_TRUE(found.has_value());
        EXPECT_EQ(found->value, memory.value);
        EXPECT_EQ(found->numericValue, memory.number);
        EXPECT_EQ(found->raw, memory.raw);
        EXPECT_EQ(found->unit, "GB");
    }
}

TEST_F(NativeMacSupportTest, NoMemoryIsLeftOut) {
    system.memory = 0;
    EXPECT_EQ(reading("NRAM"), std::nullopt);
}

// States

TEST_F(NativeMacSupportTest, EachThermalStateHasItsTextAndNoNumber) {
    for (const auto& [state, text] : {std::pair{0, "Nominal"},
                                      {1, "Fair"},
                                      {2, "Serious"},
                                      {3, "Critical"},
                                      {4, "Unknown"},
                                      {-1, "Unknown"},
                                      {std::numeric_limits<int>::max(), "Unknown"},
                                      {std::numeric_limits<int>::min(), "Unknown"}}) {
        SCOPED_TRACE(state);
        system.thermal = state;
        EXPECT_EQ(reading("NTHR"), textReading("NTHR", "macOS Thermal State", SMCCategory::thermal, text));
    }
}

TEST_F(NativeMacSupportTest, LowPowerModeIsEnabledOrDisabled) {
    system.lowPower = true;
    EXPECT_EQ(reading("NLPM"), textReading("NLPM", "Low Power Mode", SMCCategory::power, "Enabled"));
    system.lowPower = false;
    EXPECT_EQ(reading("NLPM"), textReading("NLPM", "Low Power Mode", SMCCategory::power, "Disabled"));
}

TEST_F(NativeMacSupportTest, ReadingsAreTakenAfreshAtEveryCall) {
    system.thermal = 3;
    EXPECT_EQ(valueOf("NTHR"), "Critical");
    system.thermal = 1;
    EXPECT_EQ(valueOf("NTHR"), "Fair");
}

} // namespace
} // namespace kelvinbar::native_mac_support_test
