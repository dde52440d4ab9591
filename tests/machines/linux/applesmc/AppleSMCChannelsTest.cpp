#include "machines/linux/applesmc/AppleSMCChannels.h"

#include "tests/fakes/RawReadingText.h"
#include "tests/machines/linux/LabelledChannel.h"

#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <gtest/gtest.h>

namespace kelvinbar::apple_smc_channels_test {

namespace {

using enum SensorKind;

/// "TC0P sp78"; "-" for a channel without a key.
std::string keyAndType(const SensorChannel& channel) {
    const auto key = controllerKeyOf(channel);
    return key ? key->key + " " + std::string(key->type) : "-";
}

/// The bytes of a number as hex digits; "-" when the type cannot hold it.
std::string rawOf(std::string_view type, double number) {
    const auto reading = controllerReading("TEST", type, number);
    return reading ? reading->raw : "-";
}

TEST(AppleSMCChannels, ATemperaturesKeyIsItsLabel) {
    EXPECT_EQ(keyAndType(labelled(temperature, 1, "TC0P")), "TC0P sp78");
    EXPECT_EQ(keyAndType(labelled(temperature, 7, "Tp0 ")), "Tp0  sp78");
}

TEST(AppleSMCChannels, ATemperatureWithoutAKeyForALabelHasNone) {
    EXPECT_EQ(keyAndType(SensorChannel(temperature, 1)), "-");
    for (const std::string_view label : {"", "TC0", "TC0PX", "TC\x01P", "TCé"}) {
        SCOPED_TRACE(label);
        EXPECT_EQ(keyAndType(labelled(temperature, 1, label)), "-");
    }
    SensorChannel unlabelled(temperature, 1);
    unlabelled.label = "temp";
    EXPECT_EQ(keyAndType(unlabelled), "-");
}

TEST(AppleSMCChannels, AFansKeysCountFromNought) {
    for (const auto& [kind, expected] : {std::pair{fan, "F0Ac fpe2"},
                                         {fanMinimum, "F0Mn fpe2"},
                                         {fanMaximum, "F0Mx fpe2"},
                                         {fanTarget, "F0Tg fpe2"},
                                         {fanSafe, "F0Sf fpe2"},
                                         {fanMode, "F0Md ui8 "}}) {
        EXPECT_EQ(keyAndType(SensorChannel(kind, 1)), expected);
    }
    EXPECT_EQ(keyAndType(SensorChannel(fan, 10)), "F9Ac fpe2");
    EXPECT_EQ(keyAndType(SensorChannel(fan, 16)), "FFAc fpe2");
    EXPECT_EQ(keyAndType(SensorChannel(fan, 17)), "-");
    EXPECT_EQ(keyAndType(SensorChannel(fan, 0)), "-");
}

TEST(AppleSMCChannels, OtherKindsHaveNoKey) {
    for (const SensorKind kind : {voltage, current, power, energy, charge, count, duration, percent, flag,
                                  text, frequency, humidity}) {
        SCOPED_TRACE(static_cast<int>(kind));
        EXPECT_EQ(keyAndType(labelled(kind, 1, "VC0C")), "-");
    }
}

TEST(AppleSMCChannels, AReadingIsTheControllersOwn) {
    const RawReading expected{.key = "TC0P",
                              .type = "sp78",
                              .value = "45.75",
                              .numericValue = 45.75,
                              .raw = "2DC0",
                              .size = 2,
                              .name = {},
                              .category = {},
                              .unit = {}};
    EXPECT_EQ(controllerReading("TC0P", "sp78", 45.75), expected);
}

TEST(AppleSMCChannels, NumbersAreBigEndianInTheScaleOfTheirType) {
    EXPECT_EQ(rawOf("sp78", 0), "0000");
    EXPECT_EQ(rawOf("sp78", -0.25), "FFC0");
    EXPECT_EQ(rawOf("sp78", -1), "FF00");
    EXPECT_EQ(rawOf("sp78", -128), "8000");
    EXPECT_EQ(rawOf("sp78", 127.99609375), "7FFF");
    EXPECT_EQ(rawOf("fpe2", 0.25), "0001");
    EXPECT_EQ(rawOf("fpe2", 1200), "12C0");
    EXPECT_EQ(rawOf("fpe2", 16383.75), "FFFF");
    EXPECT_EQ(rawOf("ui8 ", 0), "00");
    EXPECT_EQ(rawOf("ui8 ", 255), "FF");
}

TEST(AppleSMCChannels, AFractionIsRoundedToTheNearestNumberOfTheType) {
    EXPECT_EQ(rawOf("sp78", 45.85), "2DDA"); // 217.6 of 256
    EXPECT_EQ(rawOf("sp78", -45.85), "D226");
    EXPECT_EQ(rawOf("fpe2", 1200.1), "12C0");
}

TEST(AppleSMCChannels, ANumberBeyondItsTypeHasNoReading) {
    for (const auto& [type, number] : {std::pair<std::string_view, double>{"sp78", 128},
                                       {"sp78", -128.01},
                                       {"fpe2", 16384},
                                       {"fpe2", -0.25},
                                       {"ui8 ", 256},
                                       {"ui8 ", -1},
                                       {"flt ", 1},
                                       {"", 1}}) {
        SCOPED_TRACE(std::string(type).append(" ").append(std::to_string(number)));
        EXPECT_EQ(rawOf(type, number), "-");
    }
    for (const std::string_view type : {"sp78", "fpe2", "ui8 "}) {
        EXPECT_EQ(rawOf(type, std::numeric_limits<double>::quiet_NaN()), "-");
        EXPECT_EQ(rawOf(type, std::numeric_limits<double>::infinity()), "-");
        EXPECT_EQ(rawOf(type, -std::numeric_limits<double>::infinity()), "-");
        EXPECT_EQ(rawOf(type, 1e300), "-");
    }
}

TEST(AppleSMCChannels, AFansLabelIsReadUnderItsNamesKey) {
    const auto name = fanNameReading(labelled(fan, 2, "Right side"));
    ASSERT_TRUE(name);
    EXPECT_EQ(name->key, "F1ID");
    EXPECT_EQ(name->type, "ch8*");
    EXPECT_EQ(name->value, "Right side");
    EXPECT_EQ(name->size, 32U);
    EXPECT_EQ(name->numericValue, std::nullopt);
}

TEST(AppleSMCChannels, ALongLabelOfAFanIsCutToWhatItsKeyHolds) {
    const std::string label = "abcdefghijklmnopqrstuvwxyz0123456789ABCD";
    const auto name = fanNameReading(labelled(fan, 1, label));
    ASSERT_TRUE(name);
    EXPECT_EQ(name->value, label.substr(0, 32));
    EXPECT_EQ(name->raw.size(), 64U);
}

TEST(AppleSMCChannels, AFanWithoutALabelHasNoName) {
    EXPECT_EQ(fanNameReading(SensorChannel(fan, 1)), std::nullopt);
    EXPECT_EQ(fanNameReading(labelled(fan, 17, "Too many")), std::nullopt);
}

} // namespace
} // namespace kelvinbar::apple_smc_channels_test
