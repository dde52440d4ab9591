// Machines as their kernels showed them, from the files of /sys to the snapshot.

#include "base/Text.h"
#include "machines/linux/BootTimeClock.h"
#include "machines/linux/LinuxMachine.h"
#include "machines/linux/LinuxSystemInformation.h"
#include "machines/linux/applesmc/KeySourceDriver.h"
#include "machines/linux/sources/HwmonRegistry.h"
#include "machines/linux/sources/LinuxKeys.h"
#include "machines/replay/SnapshotParser.h"
#include "smc/SMCKeyText.h"
#include "tests/FileContent.h"
#include "tests/machines/linux/RecordedTree.h"
#include "tests/machines/replay/Exporting.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar {

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

/// The lines after the head: one a reading.
std::vector<std::string> readingLines(const std::string& snapshot) {
    std::istringstream stream(snapshot);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        if (contains(line, "\t")) lines.push_back(line);
    }
    return lines;
}

Machine machineAt(const fs::path& root) {
    return makeLinuxMachine(root, std::make_shared<BootTimeClock>(), [](const std::string&) {});
}

class RecordedMachines : public testing::TestWithParam<std::string> {
  protected:
    fakes::RecordedTree recorded{trees / (GetParam() + ".tree")};
};

TEST_P(RecordedMachines, GiveTheExpectedSnapshot) {
    const std::string expected = contentOf(trees / "expected" / (GetParam() + ".txt"));
    EXPECT_EQ(exportedText(machineAt(recorded.root())),
              replacedAll(expected, "Generated: TIME", "Generated: 2026-03-01T14:05:09Z"));
}

/// Numbers of the class differ from boot to boot.
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

INSTANTIATE_TEST_SUITE_P(All, RecordedMachines, testing::ValuesIn(machineNames()),
                         [](const auto& machine) { return replacedAll(machine.param, "-", "_"); });

/// Apple's controller with the keys of a dump, behind the files of the driver.
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

/// A Mac whose controller may be read in full: its dump behind the driver's files, the rest from its tree.
Machine macWithController(const fs::path& root, std::string_view dump) {
    auto clock = std::make_shared<BootTimeClock>();
    auto inventory = std::make_shared<SensorInventory>(root, clock, [](const std::string&) {});
    auto keys = parseSnapshot(contentOf(dumps / std::string(dump).append(".txt"))).machine.keys;
    auto source = std::make_unique<LinuxKeys>(
        inventory, [keys = std::move(keys)] { return std::make_unique<DumpedRegisters>(keys); });
    return {.driver = std::make_shared<KeySourceDriver>(std::move(source)),
            .registry = std::make_shared<HwmonRegistry>(inventory),
            .system = std::make_shared<LinuxSystemInformation>(root),
            .clock = clock};
}

class IntelMacs : public testing::TestWithParam<IntelMac> {
  protected:
    [[nodiscard]] std::string snapshot() const {
        return exportedText(macWithController(recorded.root(), GetParam().dump));
    }

    fakes::RecordedTree recorded{trees / std::string(GetParam().tree).append(".tree")};
};

TEST_P(IntelMacs, GiveTheExpectedSnapshot) {
    const std::string expected =
        contentOf(trees / "expected" / std::string(GetParam().tree).append("-controller.txt"));
    EXPECT_EQ(snapshot(), replacedAll(expected, "Generated: TIME", "Generated: 2026-03-01T14:05:09Z"));
}

/// What the controller tells under the other system is told under this one, letter for letter.
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

} // namespace kelvinbar
