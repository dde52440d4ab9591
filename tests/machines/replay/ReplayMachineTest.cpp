#include "machines/replay/ReplayMachine.h"

#include "sensors/SystemInformation.h"
#include "smc/SMCBridge.h"
#include "smc/SMCDriver.h"
#include "tests/machines/replay/Exporting.h"

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar {

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
          "TC0P\tsp78\t\t\tRAW=2", "FAN0\tioreg\tPump\t900 RPM\tRAW=384",
          "FAN0\tioreg\tCPU Fan\t99999 RPM\tRAW=1", "N???\tnative\tx\ty\tRAW=z",
          "TC0P\tsp78\t\t\tRAW=2880\nKelvinbar snapshot\n"}) {
        SCOPED_TRACE(text);
        EXPECT_FALSE(replayed(text).machine);
    }
}

TEST(ReplayMachine, StillReportsLinesWithoutAUsableOne) {
    const ReplayResult replay = replayed("junk\nFAN0\tioreg\tPump\t900 RPM\tRAW=384\n");
    EXPECT_FALSE(replay.machine);
    EXPECT_EQ(lineNumbers(replay.problems), (std::vector<std::size_t>{1, 2}));
}

TEST(ReplayMachine, HasAControllerWithKeys) {
    const ReplayResult replay = replayed(keyLine);
    ASSERT_TRUE(replay.machine);
    EXPECT_TRUE(replay.machine->driver->findService("AppleSMC"));
}

/// Registry fans are looked for only beside a controller.
TEST(ReplayMachine, HasAControllerWithFansAlone) {
    const ReplayResult replay = replayed(fanLine);
    ASSERT_TRUE(replay.machine);
    EXPECT_TRUE(replay.machine->driver->findService("AppleSMC"));
    EXPECT_EQ(exportedText(*replay.machine),
              std::string(exportedHead).append("1\n\nFAN0\tioreg\tCPU Fan\t900 RPM\tRAW=384"));
}

TEST(ReplayMachine, HasNoControllerWithFactsAlone) {
    const ReplayResult replay = replayed(factLine);
    ASSERT_TRUE(replay.machine);
    EXPECT_FALSE(replay.machine->driver->findService("AppleSMC"));
}

TEST(ReplayMachine, HasNoControllerWithFactsAndAnUnusableFan) {
    const ReplayResult replay =
        replayed(std::string(factLine).append("FAN0\tioreg\tPump\t900 RPM\tRAW=384\nTC0P\tsp78\t\t\tRAW=\n"));
    ASSERT_TRUE(replay.machine);
    EXPECT_FALSE(replay.machine->driver->findService("AppleSMC"));
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
    useMachine(*replay.machine);
    EXPECT_EQ(SMCBridge::discoverKeys(), (std::vector<std::string>{"zzzz", "TC0P", "$Adr"}));
    useMachine({});
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
                  .append("3\n")
                  .append("\nNARC\tnative\tArchitecture\tApple Silicon\tRAW=Apple Silicon")
                  .append("\nNLPM\tnative\tLow Power Mode\tDisabled\tRAW=Disabled")
                  .append("\nNTHR\tnative\tmacOS Thermal State\tUnknown\tRAW=Unknown"));
}

} // namespace

} // namespace kelvinbar
