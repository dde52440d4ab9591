#include "store/LoadPass.h"

#include "sensors/Machine.h"
#include "tests/fakes/FakeMachine.h"
#include "tests/fakes/FakeSensorSource.h"
#include "tests/store/ControllerKeys.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::load_pass_test {

namespace {

using fakes::ControllerKey;
using fakes::discoveryCount;
using fakes::keysRead;
using fakes::setKeys;
using fakes::temperatureKey;
using fakes::textKey;
using fakes::wholeNumberKey;

using Keys = std::vector<std::string>;

constexpr std::string_view nothingReadable =
    "AppleSMC connected, but no compatible sensor key returned a real value";

/// A fixed list that differs from all other lists, to detect that it was read.
const KeySet fixedKeys{"TM0P", "TG0D"};

ControllerKey floatKey(std::string name, std::vector<std::uint8_t> littleEndian) {
    return {.name = std::move(name), .type = "flt ", .bytes = std::move(littleEndian)};
}

const std::vector<std::uint8_t> notANumberBytes{0x00, 0x00, 0xC0, 0x7F};
const std::vector<std::uint8_t> infinityBytes{0x00, 0x00, 0x80, 0x7F};

Keys keysOf(const std::vector<SMCReading>& readings) {
    Keys keys;
    for (const SMCReading& reading : readings) keys.push_back(reading.key);
    return keys;
}

std::string valueUnder(std::string_view key, const std::vector<SMCReading>& readings) {
    const auto found = std::ranges::find(readings, key, &SMCReading::key);
    return found == readings.end() ? "none" : found->value;
}

struct LoadPassReadings : testing::Test {
    fakes::FakeMachine machine;
    Cancellation cancellation;

    [[nodiscard]] fakes::FakeSMCDriver& driver() const { return *machine.driver; }

    void addFan(std::string_view property, Value speed) const {
        Dictionary properties;
        properties.set(property, std::move(speed));
        machine.registry->add("SMCSuperIO", "Sensors", std::move(properties));
    }

    [[nodiscard]] std::size_t registryWalks() const { return machine.registry->walkedPlanes.size(); }

    /// Runs a pass that discovers, with registry fans. `known` was found before.
    [[nodiscard]] SMCLoadResult discover(const KeySet& known) const { return read(true, known, true); }

    /// The same without registry fans.
    [[nodiscard]] SMCLoadResult discoverWithoutFans(const KeySet& known) const {
        return read(true, known, false);
    }

    /// Reads `keys` as known ones, without registry fans.
    [[nodiscard]] SMCLoadResult readKnown(const KeySet& keys) const { return read(false, keys, false); }

    /// Reads `keys` as known ones, with registry fans.
    [[nodiscard]] SMCLoadResult readKnownAndFans(const KeySet& keys) const { return read(false, keys, true); }

  private:
    [[nodiscard]] SMCLoadResult read(bool shouldDiscover, const KeySet& known, bool readSuperIOFans) const {
        return loadReadings(machine.machine(),
                            {.fixedCandidates = std::make_shared<const KeySet>(fixedKeys),
                             .shouldDiscover = shouldDiscover,
                             .cachedDynamicKeys = std::make_shared<const KeySet>(known),
                             .readSuperIOFans = readSuperIOFans},
                            cancellation);
    }
};

struct LoadPassWithoutController : LoadPassReadings {};

struct LoadPassDiscovery : LoadPassReadings {};

struct LoadPassCancellation : LoadPassReadings {
    void cancelOnFirst(SMCCommand command) {
        driver().intercept = [this, command](const SMCParamBlock& input, SMCParamBlock& /*output*/) {
            if (input.command == static_cast<std::uint8_t>(command)) cancellation.cancel();
            return std::optional<ReturnCode>();
        };
    }
};

struct LoadPassFans : LoadPassReadings {};

struct LoadPassSelfNamed : testing::Test {
    const std::shared_ptr<fakes::FakeSensorSource> source = std::make_shared<fakes::FakeSensorSource>();

    static RawReading processor() {
        return {.key = "k10temp-pci-00c3/temp1",
                .type = "hwmon",
                .value = "45.5",
                .numericValue = 45.5,
                .raw = "45500",
                .name = "Tctl",
                .category = "CPU",
                .unit = "°C"};
    }

    static RawReading battery() {
        return {.key = "BAT0-acpi-0/in0",
                .type = "hwmon",
                .value = "12500",
                .numericValue = 12500,
                .raw = "12500000",
                .name = "Battery Voltage",
                .category = "Battery",
                .unit = "V"};
    }

    static RawReading controllerResult(std::string key) {
        RawReading result;
        result.key = std::move(key);
        result.numericValue = 40;
        result.raw = "2800";
        return result;
    }

    [[nodiscard]] SMCLoadResult discover() const {
        return loadReadings({.source = source,
                             .system = std::make_shared<fakes::FakeSystemInformation>(),
                             .clock = std::make_shared<fakes::FakeMonotonicClock>()},
                            {.fixedCandidates = std::make_shared<const KeySet>(),
                             .shouldDiscover = true,
                             .cachedDynamicKeys = std::make_shared<const KeySet>(),
                             .readSuperIOFans = true});
    }
};

// Without a controller

TEST_F(LoadPassWithoutController, NativeReadingsStandInInTheirOwnOrder) {
    driver().hasService = false;
    machine.system->processors = 8;
    const SMCLoadResult result = discover({"TC0P"});
    EXPECT_TRUE(result.smcAvailable);
    EXPECT_EQ(keysOf(result.readings), (Keys{"NARC", "NCOR", "NTHR", "NLPM"}));
    EXPECT_EQ(result.discoveredKeys, std::nullopt);
    EXPECT_EQ(result.statusMessage, "AppleSMC unavailable; showing native macOS telemetry");
}

TEST_F(LoadPassWithoutController, NeitherKeysNorRegistryFansAreRead) {
    driver().hasService = false;
    addFan("FAN1", std::int64_t{1450});
    EXPECT_EQ(keysOf(readKnownAndFans({"TC0P"}).readings), (Keys{"NARC", "NTHR", "NLPM"}));
    EXPECT_EQ(driver().calls.size(), 0U);
    EXPECT_EQ(registryWalks(), 0U);
}

TEST_F(LoadPassWithoutController, AControllerThatCannotBeOpenedIsUnavailable) {
    driver().openCode = 0xE00002C1;
    EXPECT_EQ(readKnown({"TC0P"}).statusMessage, "AppleSMC unavailable; showing native macOS telemetry");
    EXPECT_EQ(driver().calls.size(), 0U);
}

TEST_F(LoadPassWithoutController, TheMessageOfTheControllerShowsWhenThereIsNothingAtAll) {
    driver().hasService = false;
    machine.system = nullptr;
    const SMCLoadResult result = discover({"TC0P"});
    EXPECT_FALSE(result.smcAvailable);
    EXPECT_EQ(keysOf(result.readings), Keys{});
    EXPECT_EQ(result.discoveredKeys, std::nullopt);
    EXPECT_EQ(result.statusMessage, "AppleSMC service not available. This app is intended for "
                                    "Hackintosh/macOS systems with SMC emulation.");
}

TEST_F(LoadPassWithoutController, ACancelledPassStillShowsNativeReadings) {
    driver().hasService = false;
    cancellation.cancel();
    const SMCLoadResult result = discover({});
    EXPECT_EQ(result.statusMessage, "AppleSMC unavailable; showing native macOS telemetry");
    EXPECT_EQ(keysOf(result.readings), (Keys{"NARC", "NTHR", "NLPM"}));
}

// Which keys are read

TEST_F(LoadPassDiscovery, KeysThatTheCatalogueCannotNameAreNeverRead) {
    setKeys(driver(), {temperatureKey("ZZZZ", 1), temperatureKey("TC0P", 40), temperatureKey("TCaC", 2)});
    const SMCLoadResult result = discoverWithoutFans({});
    EXPECT_EQ(result.discoveredKeys, KeySet{"TC0P"});
    EXPECT_EQ(keysRead(driver()), Keys{"TC0P"});
    EXPECT_EQ(keysOf(result.readings), Keys{"TC0P"});
}

TEST_F(LoadPassDiscovery, WhatIsFoundReplacesWhatWasKnown) {
    setKeys(driver(), {temperatureKey("TC0P", 40)});
    const SMCLoadResult result = discoverWithoutFans({"TC1C", "TC2C"});
    EXPECT_EQ(result.discoveredKeys, KeySet{"TC0P"});
    EXPECT_EQ(keysRead(driver()), Keys{"TC0P"});
}

TEST_F(LoadPassDiscovery, TheFixedListIsReadWhenNoNamedKeyIsFound) {
    setKeys(driver(), {temperatureKey("ZZZZ", 1)});
    const SMCLoadResult result = discoverWithoutFans({"TC1C"});
    EXPECT_EQ(result.discoveredKeys, KeySet{});
    EXPECT_EQ(keysRead(driver()), (Keys{"TG0D", "TM0P"}));
}

TEST_F(LoadPassDiscovery, TheFixedListIsReadWhenTheControllerListsNothing) {
    driver().keys = {temperatureKey("TG0D", 50)};
    const SMCLoadResult result = discoverWithoutFans({});
    EXPECT_EQ(result.discoveredKeys, KeySet{});
    EXPECT_EQ(valueUnder("TG0D", result.readings), "50");
}

TEST_F(LoadPassDiscovery, WithoutDiscoveryTheKnownKeysAreRead) {
    setKeys(driver(), {temperatureKey("TC0P", 40), temperatureKey("TC1C", 41), temperatureKey("TG0D", 50)});
    const SMCLoadResult result = readKnown({"TC0P", "TC2C"});
    EXPECT_EQ(result.discoveredKeys, std::nullopt);
    EXPECT_EQ(discoveryCount(driver()), 0U);
    EXPECT_EQ(keysRead(driver()), (Keys{"TC0P", "TC2C"}));
    EXPECT_EQ(keysOf(result.readings), Keys{"TC0P"});
}

TEST_F(LoadPassDiscovery, WithoutKnownKeysTheFixedListIsRead) {
    const SMCLoadResult result = readKnown({});
    EXPECT_EQ(result.discoveredKeys, std::nullopt);
    EXPECT_EQ(discoveryCount(driver()), 0U);
    EXPECT_EQ(keysRead(driver()), (Keys{"TG0D", "TM0P"}));
}

TEST_F(LoadPassDiscovery, KeysAreReadInAscendingCodeUnitOrder) {
    setKeys(driver(), {temperatureKey("TC0p", 1), wholeNumberKey("V9AA", 1), temperatureKey("TC0P", 1),
                       wholeNumberKey("V12R", 12), wholeNumberKey("B0AV", 12), wholeNumberKey("FNum", 2)});
    static_cast<void>(discoverWithoutFans({}));
    EXPECT_EQ(keysRead(driver()), (Keys{"B0AV", "FNum", "TC0P", "TC0p", "V12R", "V9AA"}));
}

TEST_F(LoadPassDiscovery, AKnownKeyThatIsNotFourCharactersLongIsIgnored) {
    setKeys(driver(), {temperatureKey("TC0P", 40)});
    const SMCLoadResult result = readKnown({"TC0", "TC0P", "TC0PX", ""});
    EXPECT_EQ(keysRead(driver()), Keys{"TC0P"});
    EXPECT_EQ(keysOf(result.readings), Keys{"TC0P"});
}

// Cancellation

TEST_F(LoadPassCancellation, BeforeDiscoveryNothingIsReadAndTheKnownKeysStay) {
    setKeys(driver(), {temperatureKey("TC0P", 40)});
    addFan("FAN1", std::int64_t{1450});
    cancellation.cancel();
    const SMCLoadResult result = discover({"TC1C"});
    EXPECT_TRUE(result.smcAvailable);
    EXPECT_EQ(keysOf(result.readings), Keys{});
    EXPECT_EQ(result.discoveredKeys, KeySet{"TC1C"});
    EXPECT_EQ(result.statusMessage, "Refresh cancelled");
    EXPECT_EQ(driver().openCount, 1);
    EXPECT_EQ(driver().calls.size(), 0U);
    EXPECT_EQ(registryWalks(), 0U);
}

TEST_F(LoadPassCancellation, WithoutDiscoveryNoKeysAreHandedOver) {
    setKeys(driver(), {temperatureKey("TC0P", 40)});
    cancellation.cancel();
    const SMCLoadResult result = readKnownAndFans({"TC0P"});
    EXPECT_TRUE(result.smcAvailable);
    EXPECT_EQ(keysOf(result.readings), Keys{});
    EXPECT_EQ(result.discoveredKeys, std::nullopt);
    EXPECT_EQ(result.statusMessage, "Refresh cancelled");
    EXPECT_EQ(driver().calls.size(), 0U);
}

TEST_F(LoadPassCancellation, DuringDiscoveryTheWalkEndsAndNoKeyIsRead) {
    setKeys(driver(), {temperatureKey("TC0P", 40), temperatureKey("TC1C", 41)});
    addFan("FAN1", std::int64_t{1450});
    cancelOnFirst(SMCCommand::keyByIndex);
    const SMCLoadResult result = discover({"TG0D"});
    EXPECT_TRUE(result.smcAvailable);
    EXPECT_EQ(keysOf(result.readings), Keys{});
    EXPECT_EQ(result.discoveredKeys, (KeySet{"TC0P", "TC1C"}));
    EXPECT_EQ(result.statusMessage, "Refresh cancelled");
    EXPECT_EQ(keysRead(driver()), Keys{});
    // Two calls for the number of keys, one for each of the three listed keys.
    EXPECT_EQ(driver().calls.size(), 5U);
    EXPECT_EQ(registryWalks(), 0U);
}

TEST_F(LoadPassCancellation, WhileKeysAreReadThePassGoesOnToItsEnd) {
    setKeys(driver(), {temperatureKey("TC0P", 40), temperatureKey("TC1C", 41)});
    addFan("FAN1", std::int64_t{1450});
    cancelOnFirst(SMCCommand::readBytes);
    const SMCLoadResult result = readKnownAndFans({"TC0P", "TC1C"});
    EXPECT_TRUE(cancellation.isCancelled());
    EXPECT_EQ(keysOf(result.readings), (Keys{"TC0P", "TC1C", "FAN1"}));
    EXPECT_EQ(result.statusMessage, "Loaded 3 HWMonitorSMC2-compatible keys");
}

// Registry fans

TEST_F(LoadPassFans, TheRegistryIsReadOnlyOnRequest) {
    setKeys(driver(), {temperatureKey("TC0P", 40)});
    addFan("FAN1", std::int64_t{1450});
    EXPECT_EQ(keysOf(readKnown({"TC0P"}).readings), Keys{"TC0P"});
    EXPECT_EQ(registryWalks(), 0U);
    EXPECT_EQ(keysOf(readKnownAndFans({"TC0P"}).readings), (Keys{"TC0P", "FAN1"}));
    EXPECT_EQ(registryWalks(), 1U);
}

TEST_F(LoadPassFans, ARegistryFanBecomesAReadingWithItsOwnName) {
    setKeys(driver(), {});
    addFan("CPU Fan Speed", std::int64_t{1450});
    EXPECT_EQ(readKnownAndFans({"TC0P"}).readings, (std::vector<SMCReading>{{.key = "FAN0",
                                                                             .name = "CPU Fan Speed",
                                                                             .category = SMCCategory::fans,
                                                                             .type = "ioreg",
                                                                             .value = "1450",
                                                                             .numericValue = 1450,
                                                                             .unit = "RPM",
                                                                             .raw = "5AA",
                                                                             .status = "OK"}}));
}

TEST_F(LoadPassFans, ASpeedOfTheRegistryIsNormalised) {
    setKeys(driver(), {});
    addFan("FAN1", 1234.5);
    const SMCLoadResult result = readKnownAndFans({"TC0P"});
    EXPECT_EQ(valueUnder("FAN1", result.readings), "1235");
    ASSERT_EQ(result.readings.size(), 1U);
    EXPECT_EQ(result.readings.front().numericValue, 1234.5);
}

TEST_F(LoadPassFans, AFiniteNumberOfTheControllerTakesPrecedenceOverTheRegistry) {
    setKeys(driver(), {wholeNumberKey("FAN0", 900)});
    addFan("CPU Fan Speed", std::int64_t{1450});
    EXPECT_EQ(readKnownAndFans({"FAN0"}).readings, (std::vector<SMCReading>{{.key = "FAN0",
                                                                             .name = "FAN0",
                                                                             .category = SMCCategory::fans,
                                                                             .type = "ui16",
                                                                             .value = "900",
                                                                             .numericValue = 900,
                                                                             .unit = "RPM",
                                                                             .raw = "0384",
                                                                             .status = "OK"}}));
}

TEST_F(LoadPassFans, AStoppedFanOfTheControllerTakesPrecedenceOverTheRegistry) {
    setKeys(driver(), {wholeNumberKey("F0Ac", 0)});
    addFan("F0Ac", std::int64_t{1450});
    EXPECT_EQ(valueUnder("F0Ac", readKnownAndFans({"F0Ac"}).readings), "0");
}

TEST_F(LoadPassFans, AReplyWithoutARealNumberIsReplacedByTheRegistry) {
    const SMCReading fromRegistry{.key = "F0Ac",
                                  .name = "Fan 0",
                                  .category = SMCCategory::fans,
                                  .type = "ioreg",
                                  .value = "1450",
                                  .numericValue = 1450,
                                  .unit = "RPM",
                                  .raw = "5AA",
                                  .status = "OK"};
    addFan("F0Ac", std::int64_t{1450});
    for (const ControllerKey& key :
         {floatKey("F0Ac", notANumberBytes), floatKey("F0Ac", infinityBytes), textKey("F0Ac", "900")}) {
        SCOPED_TRACE(key.type);
        setKeys(driver(), {key});
        EXPECT_EQ(readKnownAndFans({"F0Ac"}).readings, std::vector<SMCReading>{fromRegistry});
        EXPECT_NE(keysOf(readKnown({"F0Ac"}).readings), Keys{});
    }
}

TEST_F(LoadPassFans, TheFirstOfTwoRegistryFansWithOneKeyStays) {
    setKeys(driver(), {});
    addFan("F0Ac", std::int64_t{1450});
    addFan("F0Ac", std::int64_t{2000});
    const SMCLoadResult result = readKnownAndFans({"TC0P"});
    EXPECT_EQ(keysOf(result.readings), Keys{"F0Ac"});
    EXPECT_EQ(valueUnder("F0Ac", result.readings), "1450");
}

TEST_F(LoadPassFans, FansThatTheCatalogueCannotNameAreDropped) {
    setKeys(driver(), {});
    for (const char letter : {'A', 'B', 'C', 'D', 'E', 'F', 'G', 'H', 'I', 'J'}) {
        addFan(std::string("Fan of zone ") + letter, std::int64_t{1000});
    }
    const SMCLoadResult result = readKnownAndFans({"TC0P"});
    EXPECT_EQ(keysOf(result.readings),
              (Keys{"FAN0", "FAN1", "FAN2", "FAN3", "FAN4", "FAN5", "FAN6", "FAN7"}));
    EXPECT_EQ(result.statusMessage, "Loaded 8 HWMonitorSMC2-compatible keys");
}

TEST_F(LoadPassFans, FansAloneMakeAPass) {
    setKeys(driver(), {temperatureKey("ZZZZ", 1)});
    addFan("FAN1", std::int64_t{1450});
    const SMCLoadResult result = discover({});
    EXPECT_EQ(keysOf(result.readings), Keys{"FAN1"});
    EXPECT_EQ(result.discoveredKeys, KeySet{});
}

// Building readings

TEST_F(LoadPassReadings, AReadingTakesNameCategoryAndUnitFromTheCatalogue) {
    setKeys(driver(), {{.name = "TC0P", .type = "sp78", .bytes = {0x28, 0x80}}});
    EXPECT_EQ(readKnown({"TC0P"}).readings, (std::vector<SMCReading>{{.key = "TC0P",
                                                                      .name = "CPU Proximity",
                                                                      .category = SMCCategory::cpu,
                                                                      .type = "sp78",
                                                                      .value = "40.50",
                                                                      .numericValue = 40.5,
                                                                      .unit = "°C",
                                                                      .raw = "2880",
                                                                      .status = "OK"}}));
}

TEST_F(LoadPassReadings, AValueIsNormalisedForTheUnitOfTheCatalogue) {
    setKeys(driver(), {wholeNumberKey("B0AV", 12500), {.name = "VC0C", .type = "fp88", .bytes = {1, 0x80}}});
    const SMCLoadResult result = readKnown({"B0AV", "VC0C"});
    ASSERT_EQ(keysOf(result.readings), (Keys{"B0AV", "VC0C"}));
    EXPECT_EQ(result.readings[0].value, "12.50");
    EXPECT_EQ(result.readings[0].numericValue, 12.5);
    EXPECT_EQ(result.readings[0].raw, "30D4");
    EXPECT_EQ(result.readings[1].value, "1.5");
}

TEST_F(LoadPassReadings, AReadingWithoutANumberShowsTheTextOfTheController) {
    setKeys(driver(), {textKey("REV ", "2.4f1")});
    EXPECT_EQ(readKnown({"REV "}).readings, (std::vector<SMCReading>{{.key = "REV ",
                                                                      .name = "SMC Revision",
                                                                      .category = SMCCategory::overview,
                                                                      .type = "ch8*",
                                                                      .value = "2.4f1",
                                                                      .numericValue = std::nullopt,
                                                                      .unit = "",
                                                                      .raw = "322E346631",
                                                                      .status = "OK"}}));
}

TEST_F(LoadPassReadings, KeysThatTheCatalogueCannotNameBecomeNoReadings) {
    setKeys(driver(), {temperatureKey("ZZZZ", 1), temperatureKey("TC0P", 40)});
    EXPECT_EQ(keysOf(readKnown({"TC0P", "ZZZZ"}).readings), Keys{"TC0P"});
}

TEST_F(LoadPassReadings, ReadingsWithoutADisplayableValueAreDropped) {
    setKeys(driver(), {textKey("REV ", "unsupported"), textKey("RBr ", "N/A"), textKey("RVBF", "information"),
                       temperatureKey("TC0P", 0)});
    const SMCLoadResult result = readKnown({"REV ", "RBr ", "RVBF", "TC0P"});
    EXPECT_EQ(keysOf(result.readings), Keys{"TC0P"});
    EXPECT_EQ(result.statusMessage, "Loaded 1 HWMonitorSMC2-compatible keys");
}

TEST_F(LoadPassReadings, UnreadableKeysAreSkipped) {
    setKeys(driver(), {temperatureKey("TC0P", 40),
                       {.name = "TC1C", .type = "sp78", .bytes = {1, 0}, .infoResult = 0x84},
                       {.name = "TC2C", .type = "sp78", .bytes = {1, 0}, .readResult = 0x84},
                       {.name = "TC3C", .type = "sp78", .bytes = {1, 0}, .announcedSize = 33}});
    EXPECT_EQ(keysOf(discoverWithoutFans({}).readings), Keys{"TC0P"});
}

// Sources that name their own readings

TEST_F(LoadPassSelfNamed, ReadingsHaveTheirOwnNameCategoryAndUnit) {
    source->readings = {processor()};
    EXPECT_EQ(discover().readings, (std::vector<SMCReading>{{.key = "k10temp-pci-00c3/temp1",
                                                             .name = "Tctl",
                                                             .category = SMCCategory::cpu,
                                                             .type = "hwmon",
                                                             .value = "45.50",
                                                             .numericValue = 45.5,
                                                             .unit = "°C",
                                                             .raw = "45500",
                                                             .status = "OK"}}));
}

TEST_F(LoadPassSelfNamed, TheirKeysNeedNoDefinitionToBeRead) {
    source->readings = {processor(), battery(), controllerResult("ZZZZ")};
    const SMCLoadResult result = discover();
    EXPECT_EQ(result.discoveredKeys, (KeySet{"BAT0-acpi-0/in0", "k10temp-pci-00c3/temp1"}));
    EXPECT_EQ(source->requests, std::vector<Keys>{(Keys{"BAT0-acpi-0/in0", "k10temp-pci-00c3/temp1"})});
}

TEST_F(LoadPassSelfNamed, ValuesAreNotScaled) {
    source->readings = {battery()};
    EXPECT_EQ(valueUnder("BAT0-acpi-0/in0", discover().readings), "12500");
}

TEST_F(LoadPassSelfNamed, ResultsWithoutANameACategoryOrAUnitAreDropped) {
    for (const auto field : {&RawReading::name, &RawReading::category, &RawReading::unit}) {
        RawReading incomplete = processor();
        incomplete.*field = std::nullopt;
        source->readings = {battery(), incomplete};
        const SMCLoadResult result = discover();
        EXPECT_EQ(keysOf(result.readings), Keys{"BAT0-acpi-0/in0"});
        EXPECT_EQ(result.statusMessage, "Loaded 1 HWMonitorSMC2-compatible keys");
    }
}

TEST_F(LoadPassSelfNamed, StandBesideAControllersKeysOfTheSameCategory) {
    source->readings = {controllerResult("TC0P"), processor()};
    const SMCLoadResult result = discover();
    EXPECT_EQ(keysOf(result.readings), (Keys{"k10temp-pci-00c3/temp1", "TC0P"}));
    EXPECT_EQ(result.statusMessage, "Loaded 2 HWMonitorSMC2-compatible keys");
}

// Order and status

TEST_F(LoadPassReadings, ReadingsAreSortedByTheTitleOfTheirCategory) {
    const Keys sorted{"B0AV", "TC0P", "IC0C", "FNum", "TG0D", "TM0P", "REV ", "PC0C", "TN0P", "TA0P", "VC0C"};
    std::vector<ControllerKey> keys;
    for (const std::string& key : sorted) keys.push_back(wholeNumberKey(key, 12));
    std::ranges::sort(keys, {}, &ControllerKey::name);
    setKeys(driver(), keys);
    EXPECT_EQ(keysOf(discoverWithoutFans({}).readings), sorted);
}

TEST_F(LoadPassReadings, NumbersInKeysCompareByValue) {
    setKeys(driver(), {wholeNumberKey("V12R", 12), wholeNumberKey("V9AB", 12), wholeNumberKey("V5VP", 12)});
    EXPECT_EQ(keysOf(readKnown({"V12R", "V5VP", "V9AB"}).readings), (Keys{"V5VP", "V9AB", "V12R"}));
}

TEST_F(LoadPassReadings, KeysThatCompareEqualStandInCodeUnitOrder) {
    setKeys(driver(), {temperatureKey("TC0p", 41), temperatureKey("TC0P", 40), temperatureKey("TCGc", 43),
                       temperatureKey("TCGC", 42), temperatureKey("TC0C", 39)});
    EXPECT_EQ(keysOf(discoverWithoutFans({}).readings), (Keys{"TC0C", "TC0P", "TC0p", "TCGC", "TCGc"}));
}

TEST_F(LoadPassReadings, ARegistryFanThatComparesEqualIsInCodeUnitOrder) {
    setKeys(driver(), {wholeNumberKey("Fan0", 900)});
    addFan("CPU Fan Speed", std::int64_t{1450});
    EXPECT_EQ(keysOf(readKnownAndFans({"Fan0"}).readings), (Keys{"FAN0", "Fan0"}));
}

TEST_F(LoadPassReadings, TheStatusCountsTheReadings) {
    setKeys(driver(), {temperatureKey("TC0P", 40), temperatureKey("TC1C", 41), textKey("REV ", "n/a")});
    const SMCLoadResult result = readKnown({"REV ", "TC0P", "TC1C"});
    EXPECT_TRUE(result.smcAvailable);
    EXPECT_EQ(result.statusMessage, "Loaded 2 HWMonitorSMC2-compatible keys");
}

TEST_F(LoadPassReadings, WithoutReadableKeysTheStatusSaysSoAndTheControllerStaysAvailable) {
    setKeys(driver(), {});
    const SMCLoadResult result = discover({});
    EXPECT_TRUE(result.smcAvailable);
    EXPECT_EQ(keysOf(result.readings), Keys{});
    EXPECT_EQ(result.discoveredKeys, KeySet{});
    EXPECT_EQ(result.statusMessage, nothingReadable);
}

TEST_F(LoadPassReadings, AControllerThatFailsEveryCallIsConnectedWithoutReadings) {
    setKeys(driver(), {temperatureKey("TC0P", 40)});
    driver().intercept = [](const SMCParamBlock& /*input*/, SMCParamBlock& /*output*/) {
        return std::optional<ReturnCode>(0xE00002BC);
    };
    const SMCLoadResult result = discoverWithoutFans({});
    EXPECT_TRUE(result.smcAvailable);
    EXPECT_EQ(result.statusMessage, nothingReadable);
}

} // namespace
} // namespace kelvinbar::load_pass_test
