#include "tools/SnapshotTaker.h"

#include "store/SnapshotExport.h"
#include "tests/fakes/FakeMachine.h"
#include "tests/fakes/FakeSensorSource.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::snapshot_taker_test {

namespace {

using fakes::FakeMachine;

/// `text` without its time line, which is checked.
std::string withoutTime(const std::string& text) {
    const std::size_t start = text.find('\n') + 1;
    const std::size_t end = text.find('\n', start);
    const std::regex time(R"(Generated: 20\d\d-\d\d-\d\dT\d\d:\d\d:\d\dZ)");
    EXPECT_TRUE(std::regex_match(text.substr(start, end - start), time)) << text;
    return text.substr(0, start) + text.substr(end + 1);
}

/// Header and lines without the time.
std::string taken(const Snapshot& snapshot) {
    return withoutTime(snapshotText(snapshot.readings, snapshot.time));
}

TEST(TakeSnapshot, GivesTheReadingsOfTheMachine) {
    const FakeMachine fake;
    fake.driver->addKeyCount(3).add("TC0P", "sp78", {0x28, 0x80}).add("zzzz", "ui8 ", {1});
    fake.registry->add("SMCSuperIO", "chip", Dictionary{{"CPU Fan", std::int64_t{900}}});
    EXPECT_EQ(taken(SnapshotTaker().take(fake.machine())), "Kelvinbar snapshot\nActive keys: 2\n"
                                                           "\nFAN0\tioreg\tCPU Fan\t900 RPM\tRAW=384"
                                                           "\nTC0P\tsp78\tCPU Proximity\t40.50 °C\tRAW=2880");
}

TEST(TakeSnapshot, GivesWhatTheSystemKnowsWithoutAController) {
    const FakeMachine fake;
    fake.driver->hasService = false;
    fake.system->thermal = 2;
    EXPECT_EQ(taken(SnapshotTaker().take(fake.machine())),
              "Kelvinbar snapshot\nActive keys: 3\n"
              "\nNARC\tnative\tArchitecture\tApple Silicon\tRAW=Apple Silicon"
              "\nNLPM\tnative\tLow Power Mode\tDisabled\tRAW=Disabled"
              "\nNTHR\tnative\tmacOS Thermal State\tSerious\tRAW=Serious");
}

TEST(TakeSnapshot, GivesTheHeaderAloneOfAMachineWithoutReadings) {
    const FakeMachine fake;
    EXPECT_EQ(taken(SnapshotTaker().take(fake.machine())), "Kelvinbar snapshot\nActive keys: 0\n");
}

TEST(TakeSnapshot, TellsHowReadingWent) {
    const FakeMachine fake;
    fake.driver->addKeyCount(2).add("TC0P", "sp78", {0x28, 0x80});
    EXPECT_TRUE(SnapshotTaker().take(fake.machine()).status.starts_with("Loaded 1 "));
}

TEST(TakeSnapshot, TellsThatTheSourceCouldBeRead) {
    const FakeMachine fake;
    EXPECT_TRUE(SnapshotTaker().take(fake.machine()).isLoaded); // without a reading
    fake.driver->addKeyCount(2).add("TC0P", "sp78", {0x28, 0x80});
    EXPECT_TRUE(SnapshotTaker().take(fake.machine()).isLoaded);
}

TEST(TakeSnapshot, TellsThatTheSourceCouldNotBeRead) {
    const FakeMachine fake;
    fake.driver->hasService = false;
    Machine machine = fake.machine();
    EXPECT_FALSE(SnapshotTaker().take(machine).isLoaded); // the system's own facts
    machine.system = nullptr;
    EXPECT_FALSE(SnapshotTaker().take(machine).isLoaded);
}

TEST(TakeSnapshot, ClosesTheConnectionThatItOpened) {
    const FakeMachine fake;
    fake.driver->addKeyCount(2).add("TC0P", "sp78", {0x28, 0x80});
    SnapshotTaker taker;
    taker.take(fake.machine());
    EXPECT_TRUE(taker.finish());
    EXPECT_EQ(fake.driver->openCount, 1);
    EXPECT_EQ(fake.driver->closed, std::vector<SMCDriver::Connection>{fake.driver->openConnection});
}

TEST(TakeSnapshot, LeavesAMachineThatCanBeReadOn) {
    const FakeMachine fake;
    fake.driver->addKeyCount(2).add("TC0P", "sp78", {0x28, 0x80});
    SnapshotTaker().take(fake.machine());
    EXPECT_EQ(fake.bridge->discoverKeys(), (std::vector<std::string>{"#KEY", "TC0P"}));
}

TEST(TakeSnapshot, ReadsTheMachineAnewEveryTime) {
    const FakeMachine fake;
    fake.driver->addKeyCount(2).add("TC0P", "sp78", {0x28, 0x80});
    const std::string first = taken(SnapshotTaker().take(fake.machine()));
    fake.driver->keys.back().bytes = {0x29, 0x00};
    fake.registry->add("SMCSuperIO", "chip", Dictionary{{"CPU Fan", std::int64_t{900}}});
    fake.clock->advance(std::chrono::minutes(1)); // fans of the registry are kept for a while
    EXPECT_NE(taken(SnapshotTaker().take(fake.machine())), first);
    EXPECT_EQ(taken(SnapshotTaker().take(fake.machine())), "Kelvinbar snapshot\nActive keys: 2\n"
                                                           "\nFAN0\tioreg\tCPU Fan\t900 RPM\tRAW=384"
                                                           "\nTC0P\tsp78\tCPU Proximity\t41 °C\tRAW=2900");
}

std::shared_ptr<const KeySet> keySet(KeySet keys) { return std::make_shared<const KeySet>(std::move(keys)); }

std::string readKeys(const Snapshot& snapshot) {
    std::string keys;
    for (const SMCReading& reading : snapshot.readings)
        keys.append(keys.empty() ? "" : " ").append(reading.key);
    return keys;
}

TEST(WatchedSnapshots, ReadOnlyTheKeysThatAreAskedFor) {
    const FakeMachine fake;
    fake.driver->addKeyCount(3).add("TC0P", "sp78", {0x28, 0x80}).add("TC0D", "sp78", {0x30, 0});
    SnapshotTaker taker;
    EXPECT_EQ(readKeys(taker.begin(fake.machine())), "TC0D TC0P");
    EXPECT_EQ(readKeys(taker.next(keySet({"TC0P"}))), "TC0P");
    EXPECT_EQ(readKeys(taker.next(keySet({"gone"}))), "");
    EXPECT_EQ(readKeys(taker.next(nullptr)), "TC0D TC0P");
}

TEST(WatchedSnapshots, KeepTheConnectionUntilTheEnd) {
    const FakeMachine fake;
    fake.driver->addKeyCount(2).add("TC0P", "sp78", {0x28, 0x80});
    SnapshotTaker taker;
    taker.begin(fake.machine());
    taker.next(keySet({"TC0P"}));
    EXPECT_EQ(fake.driver->openCount, 1);
    EXPECT_TRUE(fake.driver->closed.empty());
    taker.end();
    EXPECT_TRUE(taker.finish());
    EXPECT_EQ(fake.driver->closed.size(), 1U);
}

TEST(WatchedSnapshots, LookForNewDevicesNowAndThen) {
    const FakeMachine fake;
    fake.driver->addKeyCount(2).add("TC0P", "sp78", {0x28, 0x80});
    SnapshotTaker taker;
    taker.begin(fake.machine());
    fake.driver->add("TC0D", "sp78", {0x30, 0});
    fake.driver->keys.front().bytes = {0, 0, 0, 3};
    EXPECT_EQ(readKeys(taker.next(keySet({"TC0P"}))), "TC0P");
    fake.clock->advance(std::chrono::minutes(6));
    EXPECT_EQ(readKeys(taker.next(keySet({"TC0P"}))), "TC0D TC0P");
    EXPECT_EQ(readKeys(taker.next(keySet({"TC0P"}))), "TC0P");
}

TEST(WatchedSnapshots, KnowThePinsOfTheUserAlsoWithoutAReading) {
    const FakeMachine fake;
    fake.driver->addKeyCount(2).add("TC0P", "sp78", {0x28, 0x80});
    SnapshotTaker taker;
    const Dictionary preferences{{"KelvinbarMenuBarKeys", TextList{"gone", "TC0P"}}};
    EXPECT_EQ(taker.begin(fake.machine(), preferences).pinned, (std::vector<std::string>{"TC0P", "gone"}));
    taker.end();
    EXPECT_TRUE(taker.begin(fake.machine()).pinned.empty());
}

TEST(WatchedSnapshots, FollowKeysOfTheFirstVersionOnlyWithPreferences) {
    const FakeMachine fake;
    const auto source = std::make_shared<fakes::FakeSensorSource>();
    Machine machine = fake.machine();
    machine.source = source;
    SnapshotTaker taker;
    taker.begin(machine, {{"KelvinbarMenuBarKeys", TextList{"TZ00"}}});
    taker.end();
    EXPECT_EQ(source->formerKeysCount, 1);
    taker.take(machine);
    EXPECT_EQ(source->formerKeysCount, 1);
}

} // namespace
} // namespace kelvinbar::snapshot_taker_test
