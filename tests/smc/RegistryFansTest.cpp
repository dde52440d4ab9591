#include "smc/RegistryFans.h"

#include "tests/fakes/FakeClocks.h"
#include "tests/fakes/FakeIORegistry.h"

#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::registry_fans_test {

namespace {

using fakes::FakeEntry;
using fakes::FakeIORegistry;
using fakes::FakeMonotonicClock;
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

std::vector<std::string> keysOf(const std::vector<RawReading>& fans) {
    std::vector<std::string> keys;
    keys.reserve(fans.size());
    for (const RawReading& fan : fans) keys.push_back(fan.key);
    return keys;
}

std::vector<std::string> namesOf(const std::vector<RawReading>& fans) {
    std::vector<std::string> names;
    names.reserve(fans.size());
    for (const RawReading& fan : fans) names.push_back(fan.name.value_or("?"));
    return names;
}

class RegistryFansTest : public testing::Test {
  protected:
    const std::shared_ptr<FakeIORegistry> ownedRegistry = std::make_shared<FakeIORegistry>();
    const std::shared_ptr<FakeMonotonicClock> clock = std::make_shared<FakeMonotonicClock>();
    FakeIORegistry& registry = *ownedRegistry;
    RegistryFans registryFans{ownedRegistry, clock};

    void addDriver(std::optional<Dictionary> properties) {
        registry.add("SMCSuperIO", "SMCSuperIO", std::move(properties));
    }

    void addOther(std::optional<Dictionary> properties) {
        registry.add("IOPlatformDevice", "PWRB", std::move(properties));
    }

    /// The fans of a new iteration, without the cache.
    std::vector<RawReading> walked() {
        clock->advance(15s);
        return registryFans.read();
    }

    /// The fans of a sensor driver with one fan property, which has this value.
    std::vector<RawReading> walkedWithValue(Value value) {
        registry.entries.clear();
        addDriver(property("CPU Fan", std::move(value)));
        return walked();
    }

    /// The speed found in a fan property with this value.
    std::optional<double> speedOf(Value value) {
        const auto fans = walkedWithValue(std::move(value));
        return fans.empty() ? std::nullopt : fans.front().numericValue;
    }

    /// The reading of the property `name` of a sensor driver, after `index` other fans.
    RawReading fanAt(std::size_t index, std::string_view name) {
        Dictionary properties;
        for (std::size_t other = 0; other < index; ++other) {
            properties.set("other fan " + std::to_string(other), usualSpeed);
        }
        properties.set(name, usualSpeed);
        registry.entries.clear();
        addDriver(std::move(properties));
        const auto fans = walked();
        EXPECT_EQ(fans.size(), index + 1);
        return fans.size() == index + 1 ? fans.back() : RawReading();
    }
};

/// The reading of a fan without a name.
RawReading usualReading() {
    RawReading fan;
    fan.key = "FAN1";
    fan.type = "ioreg";
    fan.value = "1450";
    fan.numericValue = 1450;
    fan.raw = "5AA";
    fan.name = "Fan 0";
    fan.category = "Fans";
    fan.unit = "RPM";
    return fan;
}

// Hints

TEST_F(RegistryFansTest, AFanHintIsFoundAnywhereInAnyCase) {
    for (const std::string_view text : {"fan", "FAN1", "CPU Fan Speed", "Infant", "tach", "TACHOMETER", "rpm",
                                        "MaxRPM0", "F0Ac", "f1ac", "F2AC", "xF3AcX"}) {
        SCOPED_TRACE(text);
        EXPECT_TRUE(stringContainsFanHint(text));
    }
}

TEST_F(RegistryFansTest, OtherTextsHoldNoFanHint) {
    for (const std::string_view text :
         {"", "F", "fa", "f an", "F4Ac", "F0Mn", "F0A", "speed", "tac", "rp m", "temperature"}) {
        SCOPED_TRACE(text);
        EXPECT_FALSE(stringContainsFanHint(text));
    }
}

// Recognising fans

TEST_F(RegistryFansTest, AFanPropertyOutsideSensorDriversIsAccepted) {
    addOther(usualFan());
    EXPECT_THAT(registryFans.read(), ElementsAre(usualReading()));
}

TEST_F(RegistryFansTest, TheRegistryIsWalkedInTheServicePlane) {
    registryFans.read();
    EXPECT_THAT(registry.walkedPlanes, ElementsAre("IOService"));
}

TEST_F(RegistryFansTest, APropertyThatDoesNotBeginWithFanIsSkippedOutsideSensorDrivers) {
    for (const std::string_view name :
         {"CPU Fan Speed", "F0Ac", "fAN1", "FaN1", "faN1", "FAn1", " FAN1", "tach", "rpm0"}) {
        SCOPED_TRACE(name);
        registry.entries.clear();
        addOther(usualFan(name));
        EXPECT_THAT(walked(), IsEmpty());
    }
}

TEST_F(RegistryFansTest, APropertyThatBeginsWithFanInAUsualSpellingIsAcceptedOutsideSensorDrivers) {
    for (const std::string_view name : {"FAN1", "Fan1", "fan1", "FAN", "fanatic", "Fan Speed", "FANTach"}) {
        SCOPED_TRACE(name);
        registry.entries.clear();
        addOther(usualFan(name));
        EXPECT_THAT(walked(), SizeIs(1));
    }
}

TEST_F(RegistryFansTest, APropertyOfASensorDriverNeedsOnlyAHint) {
    addDriver(usualFan("CPU Fan Speed"));
    const auto fans = registryFans.read();
    EXPECT_THAT(keysOf(fans), ElementsAre("FAN0"));
    EXPECT_THAT(namesOf(fans), ElementsAre("CPU Fan Speed"));
}

TEST_F(RegistryFansTest, EachHintLetsAPropertyOfASensorDriverThrough) {
    for (const std::string_view name : {"A FAN", "Tachometer 1", "rpm0", "F0Ac", "F1Ac", "f2ac", "F3AC"}) {
        SCOPED_TRACE(name);
        registry.entries.clear();
        addDriver(usualFan(name));
        EXPECT_THAT(walked(), SizeIs(1));
    }
}

TEST_F(RegistryFansTest, APropertyOfASensorDriverWithoutAHintIsSkipped) {
    for (const std::string_view name : {"Temperature", "F4Ac", "F0Mn", "Speed", ""}) {
        SCOPED_TRACE(name);
        registry.entries.clear();
        addDriver(usualFan(name));
        EXPECT_THAT(walked(), IsEmpty());
    }
}

// Recognising sensor drivers

/// An entry, and the text that makes it a sensor driver or not.
struct Described {
    std::string_view description;
    std::string className;
    std::string name;
    Dictionary properties;
};

TEST_F(RegistryFansTest, EachDriverWordInTheClassNameMakesASensorDriver) {
    for (const std::string className : {"SMCSuperIO", "superio", "XFakeSMCX", "HWSensors", "LPCSensors",
                                        "ACPISensors", "VirtualSMC", "org_driver_SuperIODevice", "fakesmc"}) {
        SCOPED_TRACE(className);
        registry.entries.clear();
        registry.add(className, "x", usualFan("CPU Fan"));
        EXPECT_THAT(walked(), SizeIs(1));
    }
}

TEST_F(RegistryFansTest, ADriverWordCountsInNameCompatibleAndModelToo) {
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

TEST_F(RegistryFansTest, ADriverWordCountsNowhereElse) {
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

TEST_F(RegistryFansTest, ThePartsOfTheDescriptionAreJoinedByOneSpace) {
    // The parts are joined by spaces, which no word contains. Joined directly, they would form a word.
    Dictionary properties = usualFan("CPU Fan");
    properties.set("compatible", "virtual");
    properties.set("model", "smc");
    registry.add("super", "io", properties);
    EXPECT_THAT(walked(), IsEmpty());
}

TEST_F(RegistryFansTest, NamesAreCutAfter127Bytes) {
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

TEST_F(RegistryFansTest, PropertiesAreNotCut) {
    Dictionary properties = usualFan("CPU Fan");
    properties.set("compatible", std::string(500, 'x') + "VirtualSMC");
    registry.add("IOService", "x", properties);
    EXPECT_THAT(registryFans.read(), SizeIs(1));
}

TEST_F(RegistryFansTest, NamesThatDifferOnlyBeyondTheirCutAreTheSameName) {
    const std::string common(127, 'x');
    registry.add(common + "a", "n", usualFan());
    registry.add(common + "b", "n", usualFan());
    EXPECT_THAT(registryFans.read(), SizeIs(1));
}

TEST_F(RegistryFansTest, AStringPropertyIsReturnedOnlyIfItIsAText) {
    const FakeEntry entry("IOService", "x",
                          Dictionary{{"model", "Board"}, {"number", std::int64_t{1}}, {"data", Data{65}}});
    EXPECT_EQ(registryStringValue(entry, "model"), "Board");
    EXPECT_EQ(registryStringValue(entry, "number"), "");
    EXPECT_EQ(registryStringValue(entry, "data"), "");
    EXPECT_EQ(registryStringValue(entry, "compatible"), "");
}

// Speeds

TEST_F(RegistryFansTest, ANumberIsItsOwnSpeedFrom0To30000) {
    for (const double speed : {0.0, 0.4, 1.0, 79.5, 1450.25, 29999.9, 30000.0}) {
        SCOPED_TRACE(speed);
        EXPECT_EQ(speedOf(speed), speed);
    }
    for (const std::int64_t speed : {std::int64_t{0}, std::int64_t{1}, std::int64_t{30000}}) {
        SCOPED_TRACE(speed);
        EXPECT_EQ(speedOf(speed), static_cast<double>(speed));
    }
}

TEST_F(RegistryFansTest, ANumberBelowZeroAboveThirtyThousandOrNotFiniteIsDropped) {
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

TEST_F(RegistryFansTest, DataIsReadInTheByteOrderThatMakesALikelySpeed) {
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
        EXPECT_EQ(speedOf(data.bytes), data.speed);
    }
}

TEST_F(RegistryFansTest, TextIsKeptOnlyWhenItsNumberIsAboveZero) {
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
        EXPECT_EQ(speedOf(value.text), value.speed);
    }
}

TEST_F(RegistryFansTest, OtherKindsOfValuesAreSkipped) {
    EXPECT_THAT(walkedWithValue(true), IsEmpty());
    EXPECT_THAT(walkedWithValue(TextList{"1450"}), IsEmpty());
}

// Results

TEST_F(RegistryFansTest, AFanOfASensorDriverIsNamedByItsProperty) {
    addDriver(property("CPU Fan", Data{0x05, 0xDC}));
    RawReading expected = usualReading();
    expected.key = "FAN0";
    expected.value = "1500";
    expected.numericValue = 1500;
    expected.raw = "05DC";
    expected.name = "CPU Fan";
    EXPECT_THAT(registryFans.read(), ElementsAre(expected));
}

TEST_F(RegistryFansTest, APrintablePropertyNameOfFourCharactersThatBeginsWithACapitalFIsTheKey) {
    for (const std::string_view name : {"FAN1", "Fan1", "F0Ac", "FAN ", "Frpm"}) {
        SCOPED_TRACE(name);
        const RawReading fan = fanAt(3, name);
        EXPECT_EQ(fan.key, name);
        EXPECT_EQ(fan.name, "Fan 3");
    }
}

TEST_F(RegistryFansTest, EveryOtherPropertyNameIsTheNameAndTheKeyCountsFans) {
    for (const std::string_view name :
         {"fan1", "FAN", "FAN10", "RPM1", "Fan\t", "Fan\x7F", "Fan\u00C4", "CPU Fan"}) {
        SCOPED_TRACE(name);
        const RawReading fan = fanAt(3, name);
        EXPECT_EQ(fan.key, "FAN3");
        EXPECT_EQ(fan.name, name);
    }
}

TEST_F(RegistryFansTest, TheNinthFanHasTheKeyFAN8AndTheTenthFAN9) {
    EXPECT_EQ(fanAt(8, "CPU Fan").key, "FAN8");
    EXPECT_EQ(fanAt(9, "CPU Fan").key, "FAN9");
}

TEST_F(RegistryFansTest, TheTenthAndLaterFansShareTheKeyFAN9ButNotTheName) {
    for (const std::size_t index : {9U, 10U, 15U, 18U}) {
        SCOPED_TRACE(index);
        EXPECT_EQ(fanAt(index, "CPU Fan").key, "FAN9");
        EXPECT_EQ(fanAt(index, "F0Ac").name, "Fan " + std::to_string(index));
    }
}

TEST_F(RegistryFansTest, TheSpeedsTextHasTwoDecimalsUnlessItIsNearAWholeNumber) {
    for (const auto& [speed, text] : {std::pair{1450.0, "1450"},
                                      {1450.004, "1450"},
                                      {1449.996, "1450"},
                                      {1450.25, "1450.25"},
                                      {1450.5, "1450.50"},
                                      {0.0, "0"},
                                      {30000.0, "30000"}}) {
        SCOPED_TRACE(speed);
        const auto fans = walkedWithValue(speed);
        ASSERT_THAT(fans, SizeIs(1));
        EXPECT_EQ(fans.front().value, text);
    }
}

TEST_F(RegistryFansTest, TheRawTextIsHexForBytesAndNumbersAndTheTextItselfOtherwise) {
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

TEST_F(RegistryFansTest, TheRawTextOfANumberIsThatOfItsUnsigned64BitValueWhateverTheNumber) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double twoTo63 = 9223372036854775808.0;
    constexpr double twoTo64 = 2 * twoTo63;
    for (const auto& [number, text] : {std::pair{0.0, "0"},
                                       {-0.0, "0"},
                                       {0.9, "0"},
                                       {-0.9, "0"},
                                       {-1.0, "FFFFFFFFFFFFFFFF"},
                                       {-1.9, "FFFFFFFFFFFFFFFF"},
                                       {-1450.0, "FFFFFFFFFFFFFA56"},
                                       {4294967296.0, "100000000"},
                                       {twoTo63, "8000000000000000"},
                                       {std::nextafter(twoTo63, 0), "7FFFFFFFFFFFFC00"},
                                       {std::nextafter(twoTo64, 0), "FFFFFFFFFFFFF800"},
                                       {twoTo64, "FFFFFFFFFFFFFFFF"},
                                       {1e300, "FFFFFFFFFFFFFFFF"},
                                       {infinity, "FFFFFFFFFFFFFFFF"},
                                       {-twoTo63, "8000000000000000"},
                                       {-twoTo64, "8000000000000000"},
                                       {-1e300, "8000000000000000"},
                                       {-infinity, "8000000000000000"},
                                       {std::numeric_limits<double>::denorm_min(), "0"},
                                       {std::numeric_limits<double>::quiet_NaN(), "0"},
                                       {-std::numeric_limits<double>::quiet_NaN(), "0"}}) {
        SCOPED_TRACE(number);
        EXPECT_EQ(fanRawText(number), text);
    }
    EXPECT_EQ(fanRawText(std::numeric_limits<std::int64_t>::min()), "8000000000000000");
    EXPECT_EQ(fanRawText(std::numeric_limits<std::int64_t>::max()), "7FFFFFFFFFFFFFFF");
}

TEST_F(RegistryFansTest, TheRawTextOfAValueThatIsNoSpeedIsEmpty) {
    EXPECT_EQ(fanRawText(true), "");
    EXPECT_EQ(fanRawText(TextList{"1450"}), "");
    EXPECT_EQ(fanRawText(Data{}), "");
}

TEST_F(RegistryFansTest, FansAreNumberedInTheOrderFoundAcrossEntries) {
    Dictionary several;
    several.set("CPU Fan", usualSpeed);
    several.set("Temperature", usualSpeed);
    several.set("F1Ac", std::int64_t{-1});
    several.set("F0Ac", usualSpeed);
    addDriver(several);
    addOther(usualFan("fan of the case"));
    const auto fans = registryFans.read();
    EXPECT_THAT(keysOf(fans), ElementsAre("FAN0", "F0Ac", "FAN2"));
    EXPECT_THAT(namesOf(fans), ElementsAre("CPU Fan", "Fan 1", "fan of the case"));
}

TEST_F(RegistryFansTest, AnEntryWithoutReadablePropertiesIsSkipped) {
    addDriver(std::nullopt);
    addOther(usualFan());
    EXPECT_THAT(namesOf(registryFans.read()), ElementsAre("Fan 0"));
}

// Repeats

TEST_F(RegistryFansTest, ARepeatWithTheSameRoundedSpeedIsSkipped) {
    addDriver(property("CPU Fan", 1450.2));
    addDriver(property("CPU Fan", 1449.8));
    addDriver(property("CPU Fan", 1450.5)); // ties go to the even number
    addDriver(property("CPU Fan", Data{0x05, 0xAA}));
    const auto fans = registryFans.read();
    ASSERT_THAT(fans, SizeIs(1));
    EXPECT_EQ(fans.front().numericValue, 1450.2);
}

TEST_F(RegistryFansTest, AnotherClassNameOrPropertyOrSpeedMakesAnotherFan) {
    registry.add("VirtualSMC", "a", property("CPU Fan", 1450.0));
    registry.add("FakeSMC", "a", property("CPU Fan", 1450.0));
    registry.add("VirtualSMC", "b", property("CPU Fan", 1450.0));
    registry.add("VirtualSMC", "a", property("GPU Fan", 1450.0));
    registry.add("VirtualSMC", "a", property("CPU Fan", 1451.0));
    registry.add("VirtualSMC", "a", property("CPU Fan", 1450.0));
    EXPECT_THAT(registryFans.read(), SizeIs(5));
}

TEST_F(RegistryFansTest, TheSameLettersSplitDifferentlyIntoClassNameAndNameAreDifferentFans) {
    registry.add("VirtualSMCa", "b", property("CPU Fan", 1450.0));
    registry.add("VirtualSMC", "ab", property("CPU Fan", 1450.0));
    EXPECT_THAT(registryFans.read(), SizeIs(2));
}

TEST_F(RegistryFansTest, TheSameLettersSplitDifferentlyIntoNameAndPropertyAreDifferentFans) {
    registry.add("VirtualSMC", "a", property("bFan", 1450.0));
    registry.add("VirtualSMC", "ab", property("Fan", 1450.0));
    EXPECT_THAT(namesOf(registryFans.read()), ElementsAre("bFan", "Fan"));
}

TEST_F(RegistryFansTest, TheSameDigitsSplitDifferentlyIntoPropertyAndSpeedAreDifferentFans) {
    addDriver(property("Fan 1", 450.0));
    addDriver(property("Fan ", 1450.0));
    EXPECT_THAT(registryFans.read(), SizeIs(2));
}

TEST_F(RegistryFansTest, RepeatsOfAnEarlierWalkAreNotSkipped) {
    addOther(usualFan());
    ASSERT_THAT(walked(), SizeIs(1));
    EXPECT_THAT(walked(), SizeIs(1));
    EXPECT_THAT(registry.walkedPlanes, SizeIs(2));
}

// Limits

TEST_F(RegistryFansTest, TheEntryNumbered4096IsTheLastThatIsVisited) {
    for (int count = 0; count < 4095; ++count)
        addOther(count % 2 == 0 ? std::nullopt : std::optional(Dictionary{}));
    registry.add("IOService", "last", usualFan("FAN1"));
    registry.add("IOService", "beyond", usualFan("FAN2"));
    EXPECT_THAT(keysOf(registryFans.read()), ElementsAre("FAN1"));
}

TEST_F(RegistryFansTest, NoEntryIsVisitedAfterTheSixteenthFan) {
    for (int index = 0; index < 20; ++index) {
        registry.add("IOService", "fan" + std::to_string(index), usualFan("fan " + std::to_string(index)));
    }
    const auto fans = registryFans.read();
    ASSERT_THAT(fans, SizeIs(16));
    EXPECT_EQ(fans.back().name, "fan 15");
    EXPECT_EQ(fans.back().key, "FAN9");
}

TEST_F(RegistryFansTest, TheLastEntryVisitedMayCarryTheFansPastSixteen) {
    for (int index = 0; index < 15; ++index) {
        registry.add("IOService", "fan" + std::to_string(index), usualFan("fan " + std::to_string(index)));
    }
    Dictionary several;
    for (int index = 15; index < 20; ++index) several.set("fan " + std::to_string(index), usualSpeed);
    addOther(several);
    registry.add("IOService", "beyond", usualFan("FAN2"));
    const auto fans = registryFans.read();
    ASSERT_THAT(fans, SizeIs(20));
    EXPECT_EQ(fans.back().name, "fan 19");
}

TEST_F(RegistryFansTest, OneEntryMayHaveMoreThanSixteenFans) {
    Dictionary many;
    for (int index = 0; index < 30; ++index) many.set("fan " + std::to_string(index), usualSpeed);
    addOther(many);
    addOther(usualFan("FAN2"));
    EXPECT_THAT(registryFans.read(), SizeIs(30));
}

// Cache

TEST_F(RegistryFansTest, ASecondCallWithin15SecondsReturnsTheSameFansWithoutWalking) {
    addOther(usualFan());
    const auto first = registryFans.read();
    registry.entries.clear();
    for (const auto step : {0ms, 1ms, 14'998ms}) {
        SCOPED_TRACE(step.count());
        clock->advance(step);
        EXPECT_EQ(registryFans.read(), first);
    }
    EXPECT_THAT(registry.walkedPlanes, SizeIs(1));
}

TEST_F(RegistryFansTest, After15SecondsTheRegistryIsWalkedAgain) {
    addOther(usualFan());
    ASSERT_THAT(registryFans.read(), SizeIs(1));
    registry.entries.clear();
    clock->advance(15s);
    EXPECT_THAT(registryFans.read(), IsEmpty());
    EXPECT_THAT(registry.walkedPlanes, SizeIs(2));
}

TEST_F(RegistryFansTest, TheFifteenSecondsBeginAtTheLastWalkNotAtTheLastCall) {
    addOther(usualFan());
    registryFans.read();
    clock->advance(10s);
    registryFans.read();
    clock->advance(5s);
    registryFans.read();
    EXPECT_THAT(registry.walkedPlanes, SizeIs(2));
    clock->advance(14s);
    registryFans.read();
    EXPECT_THAT(registry.walkedPlanes, SizeIs(2));
}

TEST_F(RegistryFansTest, AnEmptyListIsCachedToo) {
    ASSERT_THAT(registryFans.read(), IsEmpty());
    addOther(usualFan());
    clock->advance(14s);
    EXPECT_THAT(registryFans.read(), IsEmpty());
    EXPECT_THAT(registry.walkedPlanes, SizeIs(1));
    clock->advance(1s);
    EXPECT_THAT(registryFans.read(), SizeIs(1));
}

TEST_F(RegistryFansTest, AWalkThatCannotBeginFindsNothingAndIsNotCached) {
    addOther(usualFan());
    registry.canIterate = false;
    EXPECT_THAT(registryFans.read(), IsEmpty());
    registry.canIterate = true;
    EXPECT_THAT(registryFans.read(), SizeIs(1));
}

TEST_F(RegistryFansTest, AWalkThatCannotBeginLeavesTheCacheAsItWas) {
    addOther(usualFan());
    ASSERT_THAT(registryFans.read(), SizeIs(1));
    clock->advance(15s);
    registry.canIterate = false;
    ASSERT_THAT(registryFans.read(), IsEmpty());
    clock->advance(-1s); // back to a time at which the cache is valid
    EXPECT_THAT(registryFans.read(), SizeIs(1));
    EXPECT_THAT(registry.walkedPlanes, SizeIs(2));
}

TEST_F(RegistryFansTest, ThereAreNoFansWithoutARegistry) {
    EXPECT_THAT(RegistryFans(nullptr, clock).read(), IsEmpty());
}

/// A registry whose iteration takes ten seconds.
class SlowRegistry final : public IORegistry {
  public:
    explicit SlowRegistry(std::shared_ptr<FakeMonotonicClock> clock) : clock_(std::move(clock)) {
        registry_.add("IOService", "board", usualFan());
    }

    int walks = 0;

    std::unique_ptr<IORegistryIterator> iterateRecursively(std::string_view plane) override {
        ++walks;
        clock_->advance(10s);
        return registry_.iterateRecursively(plane);
    }

  private:
    FakeIORegistry registry_;
    std::shared_ptr<FakeMonotonicClock> clock_;
};

TEST_F(RegistryFansTest, TheFifteenSecondsBeginAtTheEndOfTheWalk) {
    const auto slow = std::make_shared<SlowRegistry>(clock);
    RegistryFans slowFans(slow, clock);
    ASSERT_THAT(slowFans.read(), SizeIs(1));
    clock->advance(14'999ms);
    EXPECT_THAT(slowFans.read(), SizeIs(1));
    EXPECT_EQ(slow->walks, 1);
    clock->advance(1ms);
    EXPECT_THAT(slowFans.read(), SizeIs(1));
    EXPECT_EQ(slow->walks, 2);
}

/// A registry that reads the fans again during the first iteration.
class NestedRegistry final : public IORegistry {
  public:
    RegistryFans* fans = nullptr;
    std::vector<RawReading> innerFans;
    int walks = 0;

    NestedRegistry() {
        outer_.add("IOService", "outer", usualFan("FAN1"));
        inner_.add("IOService", "inner", usualFan("FAN2"));
    }

    std::unique_ptr<IORegistryIterator> iterateRecursively(std::string_view plane) override {
        FakeIORegistry& registry = ++walks == 1 ? outer_ : inner_;
        if (walks == 1) innerFans = fans->read();
        return registry.iterateRecursively(plane);
    }

  private:
    FakeIORegistry outer_;
    FakeIORegistry inner_;
};

TEST_F(RegistryFansTest, TwoCallsMayWalkAtOnceAndTheLaterResultIsKept) {
    const auto nested = std::make_shared<NestedRegistry>();
    RegistryFans nestedFans(nested, clock);
    nested->fans = &nestedFans;
    EXPECT_THAT(keysOf(nestedFans.read()), ElementsAre("FAN1"));
    EXPECT_THAT(keysOf(nested->innerFans), ElementsAre("FAN2"));
    EXPECT_EQ(nested->walks, 2);
    EXPECT_THAT(keysOf(nestedFans.read()), ElementsAre("FAN1"));
    EXPECT_EQ(nested->walks, 2);
}

} // namespace
} // namespace kelvinbar::registry_fans_test
