// Machines without an SMC: system facts survive a replay.

#include "tests/fakes/FakeMachine.h"
#include "tests/machines/replay/Exporting.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::native_round_trip_test {

namespace {

using fakes::FakeMachine;

constexpr std::string_view architectureLine =
    "\nNARC\tnative\tArchitecture\tApple Silicon\tRAW=Apple Silicon";

/// The export of `machine` without an SMC, after checking that its replay exports the same.
std::string stableExport(FakeMachine& machine) {
    machine.driver->hasService = false;
    return exportThatReplays(machine.machine());
}

TEST(NativeRoundTrip, KeepsEveryFact) {
    FakeMachine machine;
    machine.system->entries["machdep.cpu.brand_string"] = std::string("Example CPU 9 (R) @ 3.20GHz\0", 28);
    machine.system->processors = 8;
    machine.system->memory = std::uint64_t{1} << 34U;
    machine.system->thermal = 2;
    machine.system->lowPower = true;
    EXPECT_EQ(stableExport(machine),
              std::string(exportedHead)
                  .append("6\n")
                  .append(architectureLine)
                  .append("\nNCOR\tnative\tActive CPU Cores\t8\tRAW=8.0")
                  .append("\nNCPU\tnative\tCPU Model\tExample CPU 9 (R) @ 3.20GHz")
                  .append("\tRAW=Example CPU 9 (R) @ 3.20GHz")
                  .append("\nNLPM\tnative\tLow Power Mode\tEnabled\tRAW=Enabled")
                  .append("\nNRAM\tnative\tPhysical Memory\t16.0 GB\tRAW=17179869184")
                  .append("\nNTHR\tnative\tmacOS Thermal State\tSerious\tRAW=Serious"));
}

TEST(NativeRoundTrip, KeepsWhatIsMissing) {
    FakeMachine machine;
    EXPECT_EQ(stableExport(machine),
              std::string(exportedHead)
                  .append("3\n")
                  .append(architectureLine)
                  .append("\nNLPM\tnative\tLow Power Mode\tDisabled\tRAW=Disabled")
                  .append("\nNTHR\tnative\tmacOS Thermal State\tNominal\tRAW=Nominal"));
}

TEST(NativeRoundTrip, KeepsEveryThermalState) {
    const std::vector<std::pair<int, std::string>> states{{-1, "Unknown"}, {0, "Nominal"},  {1, "Fair"},
                                                          {2, "Serious"},  {3, "Critical"}, {4, "Unknown"}};
    for (const auto& [state, text] : states) {
        SCOPED_TRACE(state);
        FakeMachine machine;
        machine.system->thermal = state;
        std::string ending = "\tmacOS Thermal State\t";
        ending.append(text).append("\tRAW=").append(text);
        EXPECT_THAT(stableExport(machine), testing::EndsWith(ending));
    }
}

TEST(NativeRoundTrip, KeepsEveryNumberOfCores) {
    for (const int cores : {1, 2, 10, 128, 2147483647}) {
        SCOPED_TRACE(cores);
        FakeMachine machine;
        machine.system->processors = cores;
        std::string line = "\nNCOR\tnative\tActive CPU Cores\t";
        line.append(std::to_string(cores)).append("\tRAW=").append(std::to_string(cores)).append(".0\n");
        EXPECT_THAT(stableExport(machine), testing::HasSubstr(line));
    }
}

TEST(NativeRoundTrip, KeepsMemoryToTheByte) {
    for (const std::uint64_t bytes : {std::uint64_t{1}, std::uint64_t{8589934592}, std::uint64_t{8589934591},
                                      std::uint64_t{1649267441664}, ~std::uint64_t{0}}) {
        SCOPED_TRACE(bytes);
        FakeMachine machine;
        machine.system->memory = bytes;
        EXPECT_NE(stableExport(machine).find(" GB\tRAW=" + std::to_string(bytes) + "\n"), std::string::npos);
    }
}

TEST(NativeRoundTrip, KeepsTheModelThatStandsInForAMissingProcessorName) {
    FakeMachine machine;
    machine.system->entries["hw.model"] = std::string("Model1,1\0", 9);
    EXPECT_NE(stableExport(machine).find("\nNCPU\tnative\tCPU Model\tModel1,1\tRAW=Model1,1\n"),
              std::string::npos);
}

TEST(NativeRoundTrip, KeepsOddProcessorNames) {
    for (const std::string_view model :
         {"Prozessor™ “Größe 7”", "RAW=12", "a\tb", "  two  blanks  ", "0", "GB", "3,5", "native"}) {
        SCOPED_TRACE(model);
        FakeMachine machine;
        machine.system->entries["machdep.cpu.brand_string"] = std::string(model) + '\0';
        EXPECT_NE(stableExport(machine).find("\nNCPU\tnative\tCPU Model\t"), std::string::npos);
    }
}

} // namespace
} // namespace kelvinbar::native_round_trip_test
