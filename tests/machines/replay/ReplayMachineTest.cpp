#include "machines/replay/ReplayMachine.h"

#include "sensors/SystemInformation.h"
#include "tests/fakes/RawReadingText.h"
#include "tests/machines/replay/Exporting.h"

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::replay_machine_test {

namespace {

constexpr std::string_view keyLine = "TC0P\tsp78\t\t\tRAW=2880\n";
constexpr std::string_view fanLine = "FAN0\tioreg\tCPU Fan\t900 RPM\tRAW=384\n";
constexpr std::string_view factLine = "NLPM\tnative\tLow Power Mode\tEnabled\tRAW=Enabled\n";

TEST(ReplayMachine, IsThereAsSoonAsOneLineCanBeUsed) {
    for (const std::string_view line : {keyLine, fanLine, factLine}) {
        SCOPED_TRACE(line);
        const ReplayResult replay = replayed("Kelvinbar snapshot\njunk\n" + std::string(line));
        EXPECT_TRUE(replay.machine);
        EXPECT_EQ(lineNumbers(replay.problems), (std::vector<std::size_t>{2}));
    }
}

TEST(ReplayMachine, IsMissingWithoutAUsableLine) {
    for (const std::string_view text :
         {"", "\n\n", "junk", "Kelvinbar snapshot\nGenerated: 2026-03-01T14:05:09Z\nActive keys: 0\n",
          "TC0P\tsp78\t\t\tRAW=2", "FAN0\tioreg\t\t900 RPM\tRAW=384", "zzzz\tioreg\tPump\t900 RPM\tRAW=384",
          "FAN0\tioreg\tCPU Fan\t99999 RPM\tRAW=1", "N???\tnative\tx\ty\tRAW=z",
          "TC0P\tsp78\t\t\tRAW=2880\nKelvinbar snapshot\n"}) {
        SCOPED_TRACE(text);
        EXPECT_FALSE(replayed(text).machine);
    }
}

TEST(ReplayMachine, StillReportsLinesWithoutAUsableOne) {
    const ReplayResult replay = replayed("junk\nFAN0\tioreg\t\t900 RPM\tRAW=384\n");
    EXPECT_FALSE(replay.machine);
    EXPECT_EQ(lineNumbers(replay.problems), (std::vector<std::size_t>{1, 2}));
}

TEST(ReplayMachine, HasAReadableSourceWithKeysOrFans) {
    for (const std::string_view line : {keyLine, fanLine}) {
        SCOPED_TRACE(line);
        const ReplayResult replay = replayed(line);
        ASSERT_TRUE(replay.machine);
        EXPECT_EQ(replay.machine->source->status(),
                  (SourceStatus{.isAvailable = true, .message = "Snapshot replayed"}));
    }
}

TEST(ReplayMachine, ShowsFansWithoutAnyKey) {
    EXPECT_EQ(exportedReplay(fanLine),
              std::string(exportedHead).append("1\n\nFAN0\tioreg\tCPU Fan\t900 RPM\tRAW=384"));
}

TEST(ReplayMachine, HasNoReadableSourceWithFactsAlone) {
    const std::string unusable = "FAN0\tioreg\tCPU Fan\t99999 RPM\tRAW=1\nTC0P\tsp78\t\t\tRAW=\n";
    for (const std::string& text : {std::string(factLine), std::string(factLine) + unusable}) {
        SCOPED_TRACE(text);
        const ReplayResult replay = replayed(text);
        ASSERT_TRUE(replay.machine);
        EXPECT_EQ(replay.machine->source->status(),
                  (SourceStatus{.isAvailable = false, .message = "The snapshot holds system facts alone"}));
    }
}

TEST(ReplayMachine, ShowsKeysRatherThanFactsWhenItHasBoth) {
    EXPECT_EQ(exportedReplay(std::string(factLine) + std::string(keyLine)),
              std::string(exportedHead).append("1\n\nTC0P\tsp78\tCPU Proximity\t40.50 °C\tRAW=2880"));
}

TEST(ReplayMachine, KeepsTheClockThatItIsGiven) {
    const auto clock = std::make_shared<fakes::FakeMonotonicClock>();
    const ReplayResult replay = makeReplayMachine(keyLine, clock);
    ASSERT_TRUE(replay.machine);
    EXPECT_EQ(replay.machine->clock, clock);
}

TEST(ReplayMachine, OutlivesTheTextItWasMadeFrom) {
    auto text = std::make_unique<std::string>(std::string(keyLine) + std::string(fanLine));
    const ReplayResult replay = replayed(*text);
    *text = std::string(text->size(), '#');
    text.reset();
    ASSERT_TRUE(replay.machine);
    EXPECT_EQ(exportedText(*replay.machine), std::string(exportedHead)
                                                 .append("2\n\nFAN0\tioreg\tCPU Fan\t900 RPM\tRAW=384"
                                                         "\nTC0P\tsp78\tCPU Proximity\t40.50 °C\tRAW=2880"));
}

TEST(ReplayMachine, ListsKeysThatTheCatalogueDoesNotKnow) {
    const ReplayResult replay =
        replayed("zzzz\thex_\t\t\tRAW=AB\n" + std::string(keyLine).append("$Adr\tui32\t\t\tRAW=00000300"));
    ASSERT_TRUE(replay.machine);
    EXPECT_EQ(replay.machine->source->discoverKeys({}), (std::vector<std::string>{"zzzz", "TC0P", "$Adr"}));
}

TEST(ReplayMachine, ExportsNothingOfKeysThatTheCatalogueDoesNotKnow) {
    EXPECT_EQ(exportedReplay("zzzz\thex_\t\t\tRAW=AB\n"), std::string(exportedHead).append("0\n"));
}

TEST(ReplayMachine, CanBeReadAgainAndAgain) {
    const ReplayResult replay = replayed(std::string(keyLine) + std::string(fanLine));
    ASSERT_TRUE(replay.machine);
    const std::string first = exportedText(*replay.machine);
    EXPECT_EQ(exportedText(*replay.machine), first);
    EXPECT_EQ(exportedText(*replay.machine), first);
}

// The source

TEST(ReplaySource, ReadsTheKeysThatItIsAskedForInTheirOrderAndEachOnce) {
    const ReplayResult replay = replayed(std::string(keyLine) + "TC1C\tsp78\t\t\tRAW=3200\n");
    ASSERT_TRUE(replay.machine);
    SensorSource& source = *replay.machine->source;
    const std::vector<std::string> wanted{"TC1C", "????", "TC0P", "TC1C", "", "tc0p"};
    std::vector<std::string> read;
    for (const RawReading& reading : source.readCandidateKeys(wanted)) read.push_back(reading.key);
    EXPECT_EQ(read, (std::vector<std::string>{"TC1C", "TC0P"}));
    EXPECT_TRUE(source.readCandidateKeys({}).empty());
}

TEST(ReplaySource, DecodesAKeyAsAControllersBridgeDoes) {
    const ReplayResult replay = replayed(keyLine);
    ASSERT_TRUE(replay.machine);
    const std::vector<std::string> wanted{"TC0P"};
    const RawReading expected{.key = "TC0P",
                              .type = "sp78",
                              .value = "40.50",
                              .numericValue = 40.5,
                              .raw = "2880",
                              .size = 2,
                              .name = {},
                              .category = {},
                              .unit = {}};
    EXPECT_EQ(replay.machine->source->readCandidateKeys(wanted), std::vector<RawReading>{expected});
}

TEST(ReplaySource, HandsFansOnAsTheyWereRecorded) {
    const ReplayResult replay = replayed("FAN7\tioreg\tPump at the back\t901.5 RPM\tRAW=what it read\n"
                                         "F0Ac\tioreg\tFan 0\t 900RPM\tRAW=\n");
    ASSERT_TRUE(replay.machine);
    EXPECT_EQ(lineNumbers(replay.problems), std::vector<std::size_t>());
    const RawReading pump{.key = "FAN7",
                          .type = "ioreg",
                          .value = "901.5",
                          .numericValue = 901.5,
                          .raw = "what it read",
                          .name = "Pump at the back",
                          .category = "Fans",
                          .unit = "RPM"};
    const RawReading fan{.key = "F0Ac",
                         .type = "ioreg",
                         .value = "900",
                         .numericValue = 900,
                         .raw = "",
                         .name = "Fan 0",
                         .category = "Fans",
                         .unit = "RPM"};
    EXPECT_EQ(replay.machine->source->readSMCSuperIOFans(), (std::vector<RawReading>{pump, fan}));
}

TEST(ReplaySource, StaysReadableAfterItWasClosed) {
    const ReplayResult replay = replayed(keyLine);
    ASSERT_TRUE(replay.machine);
    replay.machine->source->close();
    EXPECT_TRUE(replay.machine->source->status().isAvailable);
    EXPECT_EQ(replay.machine->source->discoverKeys({}), std::vector<std::string>{"TC0P"});
}

TEST(ReplaySystemInformation, KnowsNothingThatTheTextDoesNotTell) {
    const ReplayResult replay = replayed("NARC\tnative\tArchitecture\tApple Silicon\tRAW=Apple Silicon");
    ASSERT_TRUE(replay.machine);
    const SystemInformation& system = *replay.machine->system;
    EXPECT_EQ(system.systemBytes("machdep.cpu.brand_string"), std::nullopt);
    EXPECT_EQ(system.systemBytes("hw.model"), std::nullopt);
    EXPECT_EQ(system.activeProcessorCount(), 0);
    EXPECT_EQ(system.physicalMemory(), 0U);
    EXPECT_FALSE(system.isLowPowerModeEnabled());
    EXPECT_EQ(exportedText(*replay.machine),
              std::string(exportedHead)
                  .append("2\n")
                  .append("\nNARC\tnative\tArchitecture\tApple Silicon\tRAW=Apple Silicon")
                  .append("\nNLPM\tnative\tLow Power Mode\tDisabled\tRAW=Disabled"));
}

TEST(ReplaySystemInformation, KeepsTheFactsOfALinuxMachine) {
    const std::string text = std::string(exportedHead)
                                 .append("3\n")
                                 .append("\nNARC\tnative\tArchitecture\tx86_64\tRAW=x86_64")
                                 .append("\nNLPM\tnative\tLow Power Mode\tDisabled\tRAW=Disabled")
                                 .append("\nNTHR\tnative\tThermal State\tFair\tRAW=Fair");
    EXPECT_EQ(exportedReplay(text), text);
}

} // namespace
} // namespace kelvinbar::replay_machine_test
