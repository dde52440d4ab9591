#include "smc/RegistryFans.h"

#include "smc/SMCBridge.h"
#include "tests/fakes/FakeMachine.h"

#include <chrono>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar {

namespace {

using fakes::FakeEntry;
using fakes::FakeIORegistry;
using fakes::FakeMachine;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using namespace std::chrono_literals;

constexpr std::int64_t usualSpeed = 1450;

Dictionary property(std::string_view name, Value value) {
    Dictionary properties;
    properties.set(name, std::move(value));
    return properties;
}

Dictionary usualFan(std::string_view name = "FAN1") { return property(name, usualSpeed); }

std::vector<std::string> textsOf(const std::vector<SMCKeyResult>& fans, std::string_view entry) {
    std::vector<std::string> texts;
    texts.reserve(fans.size());
    for (const SMCKeyResult& fan : fans) texts.push_back(fan.textOr(entry, "?"));
    return texts;
}

double speedOf(const SMCKeyResult& fan) {
    const auto* speed = fan.find<double>("numericValue");
    return speed == nullptr ? -1 : *speed;
}

class RegistryFans : public testing::Test {
  protected:
    FakeMachine machine;
    FakeIORegistry& registry = *machine.registry;

    void addDriver(std::optional<Dictionary> properties) {
        registry.add("SMCSuperIO", "SMCSuperIO", std::move(properties));
    }

    void addOther(std::optional<Dictionary> properties) {
        registry.add("IOPlatformDevice", "PWRB", std::move(properties));
    }

    /// The fans of a fresh walk.
    std::vector<SMCKeyResult> walked() {
        machine.clock->advance(15s);
        return cachedRegistryFans();
    }

    /// What a fresh walk makes of a fan property with this value on a sensor driver.
    std::vector<SMCKeyResult> walkedWithValue(Value value) {
        registry.entries.clear();
        addDriver(property("CPU Fan", std::move(value)));
        return walked();
    }
};

// Hints

TEST_F(RegistryFans, AFanHintIsFoundAnywhereInAnyCase) {
    for (const std::string_view text : {"fan", "FAN1", "CPU Fan Speed", "Infant", "tach", "TACHOMETER", "rpm",
                                        "MaxRPM0", "F0Ac", "f1ac", "F2AC", "xF3AcX"}) {
        SCOPED_TRACE(text);
        EXPECT_TRUE(stringContainsFanHint(text));
    }
}

TEST_F(RegistryFans, OtherTextsHoldNoFanHint) {
    for (const std::string_view text :
         {"", "F", "fa", "f an", "F4Ac", "F0Mn", "F0A", "speed", "tac", "rp m", "temperature"}) {
        SCOPED_TRACE(text);
        EXPECT_FALSE(stringContainsFanHint(text));
    }
}

// What counts as a fan

TEST_F(RegistryFans, AFanPropertyOutsideSensorDriversIsAccepted) {
    addOther(usualFan());
    EXPECT_THAT(cachedRegistryFans(), ElementsAre(SMCKeyResult{{"key", "FAN1"},
                                                               {"type", "ioreg"},
                                                               {"value", "1450"},
                                                               {"numericValue", 1450.0},
                                                               {"raw", "5AA"},
                                                               {"size", std::int64_t{0}},
                                                               {"status", "OK"},
                                                               {"name", "Fan 0"},
                                                               {"category", "Fans"},
                                                               {"unit", "RPM"}}));
}

TEST_F(RegistryFans, TheRegistryIsWalkedInTheServicePlane) {
    cachedRegistryFans();
    EXPECT_THAT(registry.walkedPlanes, ElementsAre("IOService"));
}

TEST_F(RegistryFans, APropertyThatDoesNotBeginWithFanIsSkippedOutsideSensorDrivers) {
    for (const std::string_view name :
         {"CPU Fan Speed", "F0Ac", "fAN1", "FaN1", "faN1", "FAn1", " FAN1", "tach", "rpm0"}) {
        SCOPED_TRACE(name);
        registry.entries.clear();
        addOther(usualFan(name));
        EXPECT_THAT(walked(), IsEmpty());
    }
}

TEST_F(RegistryFans, APropertyThatBeginsWithFanInAUsualSpellingIsAcceptedOutsideSensorDrivers) {
    for (const std::string_view name : {"FAN1", "Fan1", "fan1", "FAN", "fanatic", "Fan Speed", "FANTach"}) {
        SCOPED_TRACE(name);
        registry.entries.clear();
        addOther(usualFan(name));
        EXPECT_THAT(walked(), SizeIs(1));
    }
}

TEST_F(RegistryFans, APropertyOfASensorDriverNeedsOnlyAHint) {
    addDriver(usualFan("CPU Fan Speed"));
    const auto fans = cachedRegistryFans();
    EXPECT_THAT(textsOf(fans, "key"), ElementsAre("FAN0"));
    EXPECT_THAT(textsOf(fans, "name"), ElementsAre("CPU Fan Speed"));
}

TEST_F(RegistryFans, EachHintLetsAPropertyOfASensorDriverThrough) {
    for (const std::string_view name : {"A FAN", "Tachometer 1", "rpm0", "F0Ac", "F1Ac", "f2ac", "F3AC"}) {
        SCOPED_TRACE(name);
        registry.entries.clear();
        addDriver(usualFan(name));
        EXPECT_THAT(walked(), SizeIs(1));
    }
}

TEST_F(RegistryFans, APropertyOfASensorDriverWithoutAHintIsSkipped) {
    for (const std::string_view name : {"Temperature", "F4Ac", "F0Mn", "Speed", ""}) {
        SCOPED_TRACE(name);
        registry.entries.clear();
        addDriver(usualFan(name));
        EXPECT_THAT(walked(), IsEmpty());
    }
}

// What counts as a sensor driver

/// An entry and what makes it one, or no, sensor driver.
struct Described {
    std::string_view description;
    std::string className;
    std::string name;
    Dictionary properties;
};

TEST_F(RegistryFans, EachDriverWordInTheClassNameMakesASensorDriver) {
    for (const std::string className : {"SMCSuperIO", "superio", "XFakeSMCX", "HWSensors", "LPCSensors",
                                        "ACPISensors", "VirtualSMC", "org_driver_SuperIODevice", "fakesmc"}) {
        SCOPED_TRACE(className);
        registry.entries.clear();
        registry.add(className, "x", usualFan("CPU Fan"));
        EXPECT_THAT(walked(), SizeIs(1));
    }
}

TEST_F(RegistryFans, ADriverWordCountsInNameCompatibleAndModelToo) {
    Dictionary compatible = usualFan("CPU Fan");
    compatible.set("compatible", "acpi,VirtualSMC");
    Dictionary model = usualFan("CPU Fan");
    model.set("model", "Board with HWSensors");
    for (const Described& entry : {Described{"name", "IOService", "ACPISensors", usualFan("CPU Fan")},
                                   Described{"compatible", "IOService", "x", compatible},
                                   Described{"model", "IOService", "x", model}}) {
        SCOPED_TRACE(entry.description);
        registry.entries.clear();
        registry.add(entry.className, entry.name, entry.properties);
        EXPECT_THAT(walked(), SizeIs(1));
    }
}

TEST_F(RegistryFans, ADriverWordCountsNowhereElse) {
    Dictionary vendor = usualFan("CPU Fan");
    vendor.set("vendor", "VirtualSMC");
    Dictionary bytes = usualFan("CPU Fan");
    bytes.set("compatible", Data{'V', 'i', 'r', 't', 'u', 'a', 'l', 'S', 'M', 'C'});
    for (const Described& entry :
         {Described{"another property", "IOService", "x", vendor},
          Described{"bytes", "IOService", "x", bytes},
          Described{"the property's name", "IOService", "x", usualFan("VirtualSMC Fan")},
          Described{"near misses", "AppleSMC", "Super IO LPC Sensors", usualFan("CPU Fan")},
          Described{"a word over two names", "IOFake", "SMC", usualFan("CPU Fan")}}) {
        SCOPED_TRACE(entry.description);
        registry.entries.clear();
        registry.add(entry.className, entry.name, entry.properties);
        EXPECT_THAT(walked(), IsEmpty());
    }
}

TEST_F(RegistryFans, ThePartsOfTheDescriptionAreJoinedByOneBlank) {
    // No word holds a blank, so parts that touched would make words of their own.
    Dictionary properties = usualFan("CPU Fan");
    properties.set("compatible", "virtual");
    properties.set("model", "smc");
    registry.add("super", "io", properties);
    EXPECT_THAT(walked(), IsEmpty());
}

TEST_F(RegistryFans, NamesAreCutAfter127Bytes) {
    for (const auto& [padding, expected] : {std::pair{117, 1U}, {118, 0U}}) {
        SCOPED_TRACE(padding);
        const std::string name = std::string(static_cast<std::size_t>(padding), 'x') + "VirtualSMC";
        registry.entries.clear();
        registry.add(name, "x", usualFan("CPU Fan"));
        EXPECT_THAT(walked(), SizeIs(expected)) << "class name";
        registry.entries.clear();
        registry.add("IOService", name, usualFan("CPU Fan"));
        EXPECT_THAT(walked(), SizeIs(expected)) << "entry name";
    }
}

TEST_F(RegistryFans, PropertiesAreNotCut) {
    Dictionary properties = usualFan("CPU Fan");
    properties.set("compatible", std::string(500, 'x') + "VirtualSMC");
    registry.add("IOService", "x", properties);
    EXPECT_THAT(cachedRegistryFans(), SizeIs(1));
}

TEST_F(RegistryFans, NamesThatDifferOnlyBeyondTheirCutAreTheSameName) {
    const std::string common(127, 'x');
    registry.add(common + "a", "n", usualFan());
    registry.add(common + "b", "n", usualFan());
    EXPECT_THAT(cachedRegistryFans(), SizeIs(1));
}

TEST_F(RegistryFans, AStringPropertyIsGivenOnlyAsText) {
    const FakeEntry entry("IOService", "x",
                          Dictionary{{"model", "Board"}, {"number", std::int64_t{1}}, {"data", Data{65}}});
    EXPECT_EQ(registryStringValue(entry, "model"), "Board");
    EXPECT_EQ(registryStringValue(entry, "number"), "");
    EXPECT_EQ(registryStringValue(entry, "data"), "");
    EXPECT_EQ(registryStringValue(entry, "compatible"), "");
}

// Speeds

TEST_F(RegistryFans, ANumberIsItsOwnSpeedFrom0To30000) {
    for (const double speed : {0.0, 0.4, 1.0, 79.5, 1450.25, 29999.9, 30000.0}) {
        SCOPED_TRACE(speed);
        const auto fans = walkedWithValue(speed);
        ASSERT_THAT(fans, SizeIs(1));
        EXPECT_EQ(speedOf(fans.front()), speed);
    }
    for (const std::int64_t speed : {std::int64_t{0}, std::int64_t{1}, std::int64_t{30000}}) {
        SCOPED_TRACE(speed);
        const auto fans = walkedWithValue(speed);
        ASSERT_THAT(fans, SizeIs(1));
        EXPECT_EQ(speedOf(fans.front()), static_cast<double>(speed));
    }
}

TEST_F(RegistryFans, ANumberBelowZeroAboveThirtyThousandOrNotFiniteIsDropped) {
    for (const double speed :
         {-1.0, -0.01, 30000.01, 30001.0, 1e300, std::numeric_limits<double>::infinity(),
          -std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        SCOPED_TRACE(speed);
        EXPECT_THAT(walkedWithValue(speed), IsEmpty());
    }
    for (const std::int64_t speed :
         {std::int64_t{-1}, std::int64_t{30001}, std::numeric_limits<std::int64_t>::min(),
          std::numeric_limits<std::int64_t>::max()}) {
        SCOPED_TRACE(speed);
        EXPECT_THAT(walkedWithValue(speed), IsEmpty());
    }
}

TEST_F(RegistryFans, DataIsReadInTheByteOrderThatMakesALikelySpeed) {
    struct Case {
        std::string_view name;
        Data bytes;
        std::optional<double> speed;
    };

    for (const Case& data : {
             Case{"big-endian", {0x05, 0xDC}, 1500},
             Case{"little-endian", {0xDC, 0x05}, 1500},
             Case{"big-endian wins", {0x05, 0x06}, 0x0506},
             Case{"80 big-endian is likely", {0x00, 0x50}, 80},
             Case{"0x5000 big-endian comes before 80 little-endian", {0x50, 0x00}, 0x5000},
             Case{"79 big-endian is not", {0x00, 0x4F}, 0x4F00},
             Case{"25000 big-endian is likely", {0x61, 0xA8}, 25000},
             Case{"25000 little-endian is likely", {0xA8, 0x61}, 25000},
             Case{"25001 is in neither order", {0x61, 0xA9}, 25001},
             Case{"25001 the other way round is too fast", {0xA9, 0x61}, std::nullopt},
             Case{"neither: big-endian, kept", {0x00, 0x00}, 0},
             Case{"neither: big-endian, small", {0x00, 0x01}, 256}, // 0x0100 little-endian is likely
             Case{"neither: too fast", {0xFF, 0xFF}, std::nullopt},
             Case{"a likely low byte alone", {0x75, 0x30}, 0x3075}, // 30000, but 12405 is likelier
             Case{"only the first two bytes", {0x05, 0xDC, 0xFF, 0xFF}, 1500},
             Case{"three bytes", {0xDC, 0x05, 0x01}, 1500},
             Case{"one byte", {0x05}, 5},
             Case{"one byte, highest", {0xFF}, 255},
             Case{"one byte, zero", {0x00}, 0},
             Case{"no byte", {}, std::nullopt},
         }) {
        SCOPED_TRACE(data.name);
        EXPECT_EQ(fanSpeed(data.bytes), data.speed);
        EXPECT_THAT(walkedWithValue(data.bytes), SizeIs(data.speed ? 1 : 0));
    }
}

TEST_F(RegistryFans, TextIsKeptOnlyWhenItsNumberIsAboveZero) {
    struct Case {
        std::string text;
        std::optional<double> speed;
    };

    for (const Case& value : {
             Case{"1450", 1450},
             Case{"1450.5", 1450.5},
             Case{"  1450 RPM", 1450},
             Case{"1,450", 1},
             Case{"1e3", 1000},
             Case{"+80", 80},
             Case{"0.01", 0.01},
             Case{"30000", 30000},
             Case{"0", std::nullopt},
             Case{"0.0", std::nullopt},
             Case{"-1", std::nullopt},
             Case{"30001", std::nullopt},
             Case{"1e999", std::nullopt},
             Case{"", std::nullopt},
             Case{"fast", std::nullopt},
             Case{"RPM 1450", std::nullopt},
             Case{"inf", std::nullopt},
             Case{"nan", std::nullopt},
         }) {
        SCOPED_TRACE(value.text);
        EXPECT_EQ(fanSpeed(value.text), value.speed);
        EXPECT_THAT(walkedWithValue(value.text), SizeIs(value.speed ? 1 : 0));
    }
}

TEST_F(RegistryFans, OtherKindsOfValuesAreSkipped) {
    EXPECT_THAT(walkedWithValue(true), IsEmpty());
    EXPECT_THAT(walkedWithValue(TextList{"1450"}), IsEmpty());
}

// Results

TEST_F(RegistryFans, AFanOfASensorDriverHasExactlyTenEntries) {
    addDriver(property("CPU Fan", Data{0x05, 0xDC}));
    EXPECT_THAT(cachedRegistryFans(), ElementsAre(SMCKeyResult{{"key", "FAN0"},
                                                               {"type", "ioreg"},
                                                               {"value", "1500"},
                                                               {"numericValue", 1500.0},
                                                               {"raw", "05DC"},
                                                               {"size", std::int64_t{0}},
                                                               {"status", "OK"},
                                                               {"name", "CPU Fan"},
                                                               {"category", "Fans"},
                                                               {"unit", "RPM"}}));
}

TEST_F(RegistryFans, APrintablePropertyNameOfFourCharactersThatBeginsWithACapitalFIsTheKey) {
    for (const std::string_view name : {"FAN1", "Fan1", "F0Ac", "FAN ", "Ftac"}) {
        SCOPED_TRACE(name);
        const SMCKeyResult fan = fanResult(name, usualSpeed, 1450, 3);
        EXPECT_EQ(fan.textOr("key", "?"), name);
        EXPECT_EQ(fan.textOr("name", "?"), "Fan 3");
    }
}

TEST_F(RegistryFans, EveryOtherPropertyNameIsTheNameAndTheKeyCountsFans) {
    for (const std::string_view name : {"fan1", "FAN", "FAN10", "RPM1", "FA\tN", "F\u00C4N", "CPU Fan"}) {
        SCOPED_TRACE(name);
        const SMCKeyResult fan = fanResult(name, usualSpeed, 1450, 3);
        EXPECT_EQ(fan.textOr("key", "?"), "FAN3");
        EXPECT_EQ(fan.textOr("name", "?"), name);
    }
}

TEST_F(RegistryFans, AnEmptyPropertyNameIsNamedByItsNumber) {
    const SMCKeyResult fan = fanResult("", usualSpeed, 1450, 3);
    EXPECT_EQ(fan.textOr("key", "?"), "FAN3");
    EXPECT_EQ(fan.textOr("name", "?"), "Fan 3");
}

TEST_F(RegistryFans, TheNinthFanHasTheKeyFAN8AndTheTenthFAN9) {
    EXPECT_EQ(fanResult("CPU Fan", usualSpeed, 1450, 8).textOr("key", "?"), "FAN8");
    EXPECT_EQ(fanResult("CPU Fan", usualSpeed, 1450, 9).textOr("key", "?"), "FAN9");
}

TEST_F(RegistryFans, TheTenthAndLaterFansShareTheKeyFAN9ButNotTheName) {
    for (const std::size_t index : {9U, 10U, 15U, 18U}) {
        SCOPED_TRACE(index);
        EXPECT_EQ(fanResult("CPU Fan", usualSpeed, 1450, index).textOr("key", "?"), "FAN9");
        EXPECT_EQ(fanResult("F0Ac", usualSpeed, 1450, index).textOr("name", "?"),
                  "Fan " + std::to_string(index));
    }
}

TEST_F(RegistryFans, TheSpeedsTextHasTwoDecimalsUnlessItIsNearAWholeNumber) {
    for (const auto& [speed, text] : {std::pair{1450.0, "1450"},
                                      {1450.004, "1450"},
                                      {1449.996, "1450"},
                                      {1450.25, "1450.25"},
                                      {1450.5, "1450.50"},
                                      {0.0, "0"},
                                      {30000.0, "30000"}}) {
        SCOPED_TRACE(speed);
        EXPECT_EQ(fanResult("CPU Fan", speed, speed, 0).textOr("value", "?"), text);
    }
}

TEST_F(RegistryFans, TheRawTextIsHexForBytesAndNumbersAndTheTextItselfOtherwise) {
    EXPECT_EQ(fanRawText(Data{0x05, 0xDC, 0x0F}), "05DC0F");
    EXPECT_EQ(fanRawText(Data(40, 0xAB)).size(), 64U);
    EXPECT_EQ(fanRawText(std::int64_t{1450}), "5AA");
    EXPECT_EQ(fanRawText(std::int64_t{0}), "0");
    EXPECT_EQ(fanRawText(std::int64_t{-1}), "FFFFFFFFFFFFFFFF");
    EXPECT_EQ(fanRawText(1450.0), "5AA");
    EXPECT_EQ(fanRawText(1450.9), "5AA");
    EXPECT_EQ(fanRawText(" 1450 RPM"), " 1450 RPM");
    EXPECT_EQ(fanRawText(""), "");
}

TEST_F(RegistryFans, FansAreNumberedInTheOrderFoundAcrossEntries) {
    Dictionary several;
    several.set("CPU Fan", usualSpeed);
    several.set("Temperature", usualSpeed);
    several.set("F1Ac", std::int64_t{-1});
    several.set("F0Ac", usualSpeed);
    addDriver(several);
    addOther(usualFan("fan of the case"));
    const auto fans = cachedRegistryFans();
    EXPECT_THAT(textsOf(fans, "key"), ElementsAre("FAN0", "F0Ac", "FAN2"));
    EXPECT_THAT(textsOf(fans, "name"), ElementsAre("CPU Fan", "Fan 1", "fan of the case"));
}

TEST_F(RegistryFans, AnEntryWithoutReadablePropertiesIsSkipped) {
    addDriver(std::nullopt);
    addOther(usualFan());
    EXPECT_THAT(textsOf(cachedRegistryFans(), "name"), ElementsAre("Fan 0"));
}

// Repeats

TEST_F(RegistryFans, ARepeatWithTheSameRoundedSpeedIsSkipped) {
    addDriver(property("CPU Fan", 1450.2));
    addDriver(property("CPU Fan", 1449.8));
    addDriver(property("CPU Fan", 1450.5)); // ties go to the even number
    addDriver(property("CPU Fan", Data{0x05, 0xAA}));
    const auto fans = cachedRegistryFans();
    ASSERT_THAT(fans, SizeIs(1));
    EXPECT_EQ(speedOf(fans.front()), 1450.2);
}

TEST_F(RegistryFans, AnotherClassNameOrPropertyOrSpeedMakesAnotherFan) {
    registry.add("VirtualSMC", "a", property("CPU Fan", 1450.0));
    registry.add("FakeSMC", "a", property("CPU Fan", 1450.0));
    registry.add("VirtualSMC", "b", property("CPU Fan", 1450.0));
    registry.add("VirtualSMC", "a", property("GPU Fan", 1450.0));
    registry.add("VirtualSMC", "a", property("CPU Fan", 1451.0));
    registry.add("VirtualSMC", "a", property("CPU Fan", 1450.0));
    EXPECT_THAT(cachedRegistryFans(), SizeIs(5));
}

TEST_F(RegistryFans, RepeatsOfAnEarlierWalkAreNotSkipped) {
    addOther(usualFan());
    ASSERT_THAT(walked(), SizeIs(1));
    EXPECT_THAT(walked(), SizeIs(1));
    EXPECT_THAT(registry.walkedPlanes, SizeIs(2));
}

// Limits

TEST_F(RegistryFans, TheEntryNumbered4096IsTheLastThatIsVisited) {
    for (int count = 0; count < 4095; ++count)
        addOther(count % 2 == 0 ? std::nullopt : std::optional(Dictionary{}));
    registry.add("IOService", "last", usualFan("FAN1"));
    registry.add("IOService", "beyond", usualFan("FAN2"));
    EXPECT_THAT(textsOf(cachedRegistryFans(), "key"), ElementsAre("FAN1"));
}

TEST_F(RegistryFans, NoEntryIsVisitedAfterTheSixteenthFan) {
    for (int index = 0; index < 20; ++index) {
        registry.add("IOService", "fan" + std::to_string(index), usualFan("fan " + std::to_string(index)));
    }
    const auto fans = cachedRegistryFans();
    ASSERT_THAT(fans, SizeIs(16));
    EXPECT_EQ(fans.back().textOr("name", "?"), "fan 15");
    EXPECT_EQ(fans.back().textOr("key", "?"), "FAN9");
}

TEST_F(RegistryFans, TheLastEntryVisitedMayCarryTheFansPastSixteen) {
    for (int index = 0; index < 15; ++index) {
        registry.add("IOService", "fan" + std::to_string(index), usualFan("fan " + std::to_string(index)));
    }
    Dictionary several;
    for (int index = 15; index < 20; ++index) several.set("fan " + std::to_string(index), usualSpeed);
    addOther(several);
    registry.add("IOService", "beyond", usualFan("FAN2"));
    const auto fans = cachedRegistryFans();
    ASSERT_THAT(fans, SizeIs(20));
    EXPECT_EQ(fans.back().textOr("name", "?"), "fan 19");
}

TEST_F(RegistryFans, OneEntryMayGiveMoreThanSixteenFans) {
    Dictionary many;
    for (int index = 0; index < 30; ++index) many.set("fan " + std::to_string(index), usualSpeed);
    addOther(many);
    addOther(usualFan("FAN2"));
    EXPECT_THAT(cachedRegistryFans(), SizeIs(30));
}

// Cache

TEST_F(RegistryFans, ASecondCallWithin15SecondsReturnsTheSameFansWithoutWalking) {
    addOther(usualFan());
    const auto first = cachedRegistryFans();
    registry.entries.clear();
    for (const auto step : {0ms, 1ms, 14'998ms}) {
        SCOPED_TRACE(step.count());
        machine.clock->advance(step);
        EXPECT_EQ(cachedRegistryFans(), first);
    }
    EXPECT_THAT(registry.walkedPlanes, SizeIs(1));
}

TEST_F(RegistryFans, After15SecondsTheRegistryIsWalkedAgain) {
    addOther(usualFan());
    ASSERT_THAT(cachedRegistryFans(), SizeIs(1));
    registry.entries.clear();
    machine.clock->advance(15s);
    EXPECT_THAT(cachedRegistryFans(), IsEmpty());
    EXPECT_THAT(registry.walkedPlanes, SizeIs(2));
}

TEST_F(RegistryFans, TheFifteenSecondsBeginAtTheLastWalkNotAtTheLastCall) {
    addOther(usualFan());
    cachedRegistryFans();
    machine.clock->advance(10s);
    cachedRegistryFans();
    machine.clock->advance(5s);
    cachedRegistryFans();
    EXPECT_THAT(registry.walkedPlanes, SizeIs(2));
    machine.clock->advance(14s);
    cachedRegistryFans();
    EXPECT_THAT(registry.walkedPlanes, SizeIs(2));
}

TEST_F(RegistryFans, AnEmptyListIsCachedToo) {
    ASSERT_THAT(cachedRegistryFans(), IsEmpty());
    addOther(usualFan());
    machine.clock->advance(14s);
    EXPECT_THAT(cachedRegistryFans(), IsEmpty());
    EXPECT_THAT(registry.walkedPlanes, SizeIs(1));
    machine.clock->advance(1s);
    EXPECT_THAT(cachedRegistryFans(), SizeIs(1));
}

TEST_F(RegistryFans, AWalkThatCannotBeBegunGivesNothingAndIsNotCached) {
    addOther(usualFan());
    registry.canIterate = false;
    EXPECT_THAT(cachedRegistryFans(), IsEmpty());
    registry.canIterate = true;
    EXPECT_THAT(cachedRegistryFans(), SizeIs(1));
}

TEST_F(RegistryFans, AWalkThatCannotBeBegunLeavesTheCacheAsItWas) {
    addOther(usualFan());
    ASSERT_THAT(cachedRegistryFans(), SizeIs(1));
    machine.clock->advance(15s);
    registry.canIterate = false;
    ASSERT_THAT(cachedRegistryFans(), IsEmpty());
    machine.clock->advance(-1s); // to look at the cache while it is still valid
    EXPECT_THAT(cachedRegistryFans(), SizeIs(1));
    EXPECT_THAT(registry.walkedPlanes, SizeIs(2));
}

/// A registry whose first walk asks for the fans again before it gives its entries.
class NestedRegistry final : public IORegistry {
  public:
    std::vector<SMCKeyResult> innerFans;
    int walks = 0;

    std::unique_ptr<IORegistryIterator> iterateRecursively(std::string_view plane) override {
        FakeIORegistry& registry = ++walks == 1 ? outer_ : inner_;
        if (walks == 1) innerFans = cachedRegistryFans();
        return registry.iterateRecursively(plane);
    }

    NestedRegistry() {
        outer_.add("IOService", "outer", usualFan("FAN1"));
        inner_.add("IOService", "inner", usualFan("FAN2"));
    }

  private:
    FakeIORegistry outer_;
    FakeIORegistry inner_;
};

TEST_F(RegistryFans, TwoCallsMayWalkAtOnceAndTheLaterResultIsKept) {
    const auto nested = std::make_shared<NestedRegistry>();
    useRegistry(nested, machine.clock);
    EXPECT_THAT(textsOf(cachedRegistryFans(), "key"), ElementsAre("FAN1"));
    EXPECT_THAT(textsOf(nested->innerFans, "key"), ElementsAre("FAN2"));
    EXPECT_EQ(nested->walks, 2);
    EXPECT_THAT(textsOf(cachedRegistryFans(), "key"), ElementsAre("FAN1"));
    EXPECT_EQ(nested->walks, 2);
}

TEST_F(RegistryFans, AnotherRegistryStartsWithAnEmptyCache) {
    addOther(usualFan());
    ASSERT_THAT(cachedRegistryFans(), SizeIs(1));
    const auto empty = std::make_shared<FakeIORegistry>();
    useRegistry(empty, machine.clock);
    EXPECT_THAT(cachedRegistryFans(), IsEmpty());
    EXPECT_THAT(empty->walkedPlanes, SizeIs(1));
}

} // namespace

} // namespace kelvinbar
