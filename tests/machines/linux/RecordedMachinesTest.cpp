// Recorded machines, from the files of /sys to the snapshot. When names change on purpose, run with
// KELVINBAR_WRITE_EXPECTED=1: the tests then write the expected snapshots and fail. Read what was written,
// line by line, before you commit it.

#include "base/Text.h"
#include "machines/linux/BootTimeClock.h"
#include "machines/linux/LinuxMachine.h"
#include "machines/linux/LinuxSystemInformation.h"
#include "machines/linux/applesmc/AppleSMCDetection.h"
#include "machines/linux/applesmc/KeySourceDriver.h"
#include "machines/linux/sources/KernelSensorSource.h"
#include "machines/replay/SnapshotParser.h"
#include "sensors/SourceChain.h"
#include "smc/SMCBridge.h"
#include "smc/SMCKeyText.h"
#include "tests/FileContent.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/machines/linux/RecordedTree.h"
#include "tests/machines/replay/Exporting.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::recorded_machines_test {

namespace {

namespace fs = std::filesystem;

const fs::path trees = fs::path(KELVINBAR_FIXTURES) / "linux";
const fs::path dumps = fs::path(KELVINBAR_FIXTURES) / "smc";

std::vector<std::string> machineNames() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(trees)) {
        if (entry.path().extension() == ".tree") names.push_back(entry.path().stem().string());
    }
    std::ranges::sort(names);
    return names;
}

/// The lines after the header: one per reading.
std::vector<std::string> readingLines(const std::string& snapshot) {
    std::istringstream stream(snapshot);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        if (contains(line, "\t")) lines.push_back(line);
    }
    return lines;
}

/// Compares a snapshot with the expected one of that name, or writes it.
void expectSnapshot(const std::string& snapshot, const std::string& name) {
    constexpr std::string_view time = "Generated: 2026-03-01T14:05:09Z";
    constexpr std::string_view placeholder = "Generated: TIME";
    const fs::path file = trees / "expected" / (name + ".txt");
    if (std::getenv("KELVINBAR_WRITE_EXPECTED") != nullptr) { // NOLINT(concurrency-mt-unsafe): one thread
        std::ofstream(file, std::ios::binary) << replacedAll(snapshot, time, placeholder);
        FAIL() << "written anew: " << file;
    }
    EXPECT_EQ(snapshot, replacedAll(contentOf(file), placeholder, time));
}

class RecordedMachines : public testing::TestWithParam<std::string> {
  protected:
    Machine machineAt(const fs::path& root) {
        return makeLinuxMachine(root, std::make_shared<BootTimeClock>(), log.log);
    }

    fakes::RecordingLog log;
    fakes::RecordedTree recorded{trees / (GetParam() + ".tree")};
};

TEST_P(RecordedMachines, GiveTheExpectedSnapshot) {
    expectSnapshot(exportedText(machineAt(recorded.root())), GetParam());
}

/// The numbers of class entries differ from boot to boot.
TEST_P(RecordedMachines, GiveTheSameReadingsWhenTheirChipsAreNumberedAnew) {
    const auto before = readingLines(exportedText(machineAt(recorded.root())));
    std::vector<fs::path> chips;
    const fs::path chipClass = recorded.root() / "sys/class/hwmon";
    for (const auto& entry : fs::directory_iterator(chipClass)) {
        if (entry.is_symlink()) chips.push_back(entry.path());
    }
    std::ranges::sort(chips, std::greater());
    for (std::size_t number = 0; number < chips.size(); ++number) {
        fs::rename(chips[number], chipClass / ("hwmon" + std::to_string(100 + number)));
    }
    EXPECT_EQ(readingLines(exportedText(machineAt(recorded.root()))), before);
}

/// Runs on every system, since a report from Linux can be replayed elsewhere.
TEST_P(RecordedMachines, GiveTheSameSnapshotWhenTheirsIsReplayed) {
    const std::string text = exportedText(machineAt(recorded.root()));
    const ReplayResult replay = replayed(text);
    EXPECT_EQ(lineNumbers(replay.problems), std::vector<std::size_t>());
    ASSERT_EQ(replay.machine.has_value(), !readingLines(text).empty());
    if (replay.machine) {
        EXPECT_EQ(exportedText(*replay.machine), text);
    }
}

INSTANTIATE_TEST_SUITE_P(All, RecordedMachines, testing::ValuesIn(machineNames()),
                         [](const auto& machine) { return replacedAll(machine.param, "-", "_"); });

/// An SMC with the keys of a dump, behind the driver's files.
class DumpedRegisters final : public AppleSMCRegisters {
  public:
    explicit DumpedRegisters(std::vector<RecordedKey> keys) : keys_(std::move(keys)) {}

    bool lock() override { return true; }

    void unlock() override {}

    std::optional<std::uint32_t> keyCount() override { return static_cast<std::uint32_t>(keys_.size()); }

    bool select(std::uint32_t index) override {
        selected_ = index;
        return index < keys_.size();
    }

    std::optional<std::uint32_t> selectedIndex() override { return selected_; }

    std::optional<std::string> keyName() override { return fourCharString(keys_[selected_].code); }

    std::optional<std::string> typeName() override { return fourCharString(keys_[selected_].dataType); }

    std::optional<std::uint32_t> dataLength() override {
        return static_cast<std::uint32_t>(keys_[selected_].bytes.size());
    }

    bool data(SMCBytes& bytes) override {
        std::ranges::copy(keys_[selected_].bytes, bytes.begin());
        return true;
    }

  private:
    std::vector<RecordedKey> keys_;
    std::uint32_t selected_ = 0;
};

struct IntelMac {
    std::string_view tree;
    std::string_view dump;
};

/// A Mac whose SMC can be read in full: its dump behind the driver's files, the rest from its tree.
Machine macWithController(const fs::path& root, std::string_view dump, Log& log) {
    const auto clock = std::make_shared<BootTimeClock>();
    auto recorded = parseSnapshot(contentOf(dumps / std::string(dump).append(".txt"))).machine.keys;
    auto keys = std::make_unique<DetectedAppleSMC>(
        [recorded = std::move(recorded)] { return std::make_unique<DumpedRegisters>(recorded); }, clock);
    auto driver = std::make_shared<KeySourceDriver>(std::move(keys));
    std::vector<std::shared_ptr<SensorSource>> sources{
        std::make_shared<SMCBridge>(std::move(driver), nullptr, clock),
        std::make_shared<KernelSensorSource>(root, clock, log)};
    return {.source = std::make_shared<SourceChain>(std::move(sources)),
            .system = std::make_shared<LinuxSystemInformation>(root),
            .clock = clock};
}

class IntelMacs : public testing::TestWithParam<IntelMac> {
  protected:
    [[nodiscard]] std::string snapshot() {
        return exportedText(macWithController(recorded.root(), GetParam().dump, log.log));
    }

    fakes::RecordingLog log;
    fakes::RecordedTree recorded{trees / std::string(GetParam().tree).append(".tree")};
};

TEST_P(IntelMacs, GiveTheExpectedSnapshot) {
    expectSnapshot(snapshot(), std::string(GetParam().tree).append("-controller"));
}

/// The readings of the SMC under macOS and under Linux are the same, letter for letter.
TEST_P(IntelMacs, GiveEveryReadingThatTheControllerGivesElsewhere) {
    const auto lines = readingLines(snapshot());
    const auto elsewhere =
        readingLines(contentOf(dumps / "expected" / std::string(GetParam().dump).append(".txt")));
    ASSERT_FALSE(elsewhere.empty());
    for (const std::string& line : elsewhere) {
        EXPECT_EQ(std::ranges::count(lines, line), 1) << line;
    }
}

INSTANTIATE_TEST_SUITE_P(All, IntelMacs,
                         testing::Values(IntelMac{"macbookpro16-1", "MacBookPro16_1"},
                                         IntelMac{"imac-applesmc", "iMac11_2"}),
                         [](const auto& mac) { return std::string(mac.param.dump); });

} // namespace
} // namespace kelvinbar::recorded_machines_test
