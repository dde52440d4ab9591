// Every call that a pass makes goes wrong once: calls on files, calls of the controller's driver, and calls
// of the registry. What does not depend on that call must be read as ever, and no file may stay open.
//
// KELVINBAR_ATTACK_PAIRS: also every call together with every n-th one after it.

#include "base/NumberText.h"
#include "base/Text.h"
#include "machines/linux/LinuxMachine.h"
#include "machines/linux/sources/SensorChips.h"
#include "store/LoadPass.h"
#include "tests/fakes/FakeClocks.h"
#include "tests/fakes/FakeMachine.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/machines/linux/RecordedTree.h"
#include "tests/reliability/faults/FaultySystemCalls.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::fault_test {

namespace {

namespace fs = std::filesystem;
using fakes::Fault;
using fakes::SystemCallFaults;

const fs::path trees = fs::path(KELVINBAR_FIXTURES) / "linux";

/// A reading without its name, which depends on the other readings.
struct Measured {
    std::string type;
    std::string value;
    std::string raw;

    friend bool operator==(const Measured&, const Measured&) = default;
};

using Readings = std::map<std::string, Measured>;

/// A discovery and a pass.
Readings readingsOf(const Machine& machine) {
    const auto none = std::make_shared<const KeySet>();
    const LoadPass pass{.fixedCandidates = none,
                        .shouldDiscover = true,
                        .cachedDynamicKeys = none,
                        .readSuperIOFans = true,
                        .carryKeysOver = true};
    Readings readings;
    for (const SMCReading& reading : loadReadings(machine, pass).readings) {
        readings.emplace(reading.key, Measured{reading.type, reading.value, reading.raw});
    }
    return readings;
}

std::int64_t openFiles() {
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
}

/// Where a chip's files are.
struct ChipFiles {
    std::string keyStart; ///< of its readings
    std::string entry;    ///< the name of its entry
    fs::path device;      ///< without links
};

bool isBelow(const fs::path& path, const fs::path& folder) {
    return std::ranges::mismatch(folder, path).in1 == folder.end();
}

/// Whether the chip's readings may depend on the file or folder.
bool dependsOn(const ChipFiles& chip, const fs::path& file) {
    const bool isInEntry = std::ranges::find(file, fs::path(chip.entry)) != file.end();
    const fs::path real = fs::weakly_canonical(file.parent_path()) / file.filename();
    // The search for a network interface looks into the folders above the device.
    return isInEntry || isBelow(real, chip.device) || isBelow(chip.device, real.parent_path());
}

class FaultyFiles : public testing::TestWithParam<std::string> {
  protected:
    FaultyFiles() {
        for (const SensorChip& chip : sensorChips(recorded_.root(), nullptr, log_.log)) {
            chips_.push_back({chip.sensorsName + "/", chip.entry.filename().string(),
                              fs::weakly_canonical(chip.entry / "device")});
        }
    }

    [[nodiscard]] Readings read() {
        return readingsOf(
            makeLinuxMachine(recorded_.root(), std::make_shared<fakes::FakeMonotonicClock>(), log_.log));
    }

    /// Whether a call that went wrong may have changed the reading. No chip is known for a file that all
    /// depend on.
    [[nodiscard]] bool mayDiffer(const std::string& key) const {
        return std::ranges::any_of(SystemCallFaults::paths(), [&](const std::string& path) {
            const auto isOfKey = [&](const ChipFiles& chip) { return key.starts_with(chip.keyStart); };
            const auto depends = [&](const ChipFiles& chip) { return dependsOn(chip, path); };
            const auto chip = std::ranges::find_if(chips_, isOfKey);
            return std::ranges::none_of(chips_, depends) || chip == chips_.end() || depends(*chip);
        });
    }

    void expectRightRemainder(const Readings& whole, const Readings& rest) const {
        for (const auto& [key, measured] : whole) {
            if (mayDiffer(key)) continue;
            const auto found = rest.find(key);
            EXPECT_TRUE(found != rest.end() && found->second == measured) << key << " is missing or differs";
        }
    }

    /// Returns whether there were as many calls.
    bool readWith(const std::vector<std::int64_t>& calls, Fault fault, const Readings& whole) {
        Readings rest;
        {
            const SystemCallFaults faults(calls, fault);
            rest = read();
        }
        expectRightRemainder(whole, rest);
        if (HasFailure()) ADD_FAILURE() << "call " << calls.front() << ", fault " << static_cast<int>(fault);
        return SystemCallFaults::paths().size() == calls.size() && !HasFailure();
    }

    fakes::RecordingLog log_;
    fakes::RecordedTree recorded_{trees / (GetParam() + ".tree")};
    std::vector<ChipFiles> chips_;
};

TEST_P(FaultyFiles, LeaveTheReadingsOfOtherChips) {
    const Readings whole = read();
    ASSERT_FALSE(whole.empty());
    const std::int64_t before = openFiles();
    std::int64_t tried = 0;
    for (const Fault fault : fakes::allFaults) {
        for (std::int64_t call = 1; readWith({call}, fault, whole); ++call) ++tried;
    }
    EXPECT_GT(tried, 0);
    EXPECT_EQ(openFiles(), before);
    RecordProperty("faults_tried", std::to_string(tried));
}

TEST_P(FaultyFiles, LeaveTheReadingsOfOtherChipsInPairs) {
    const char* const pairs =
        std::getenv("KELVINBAR_ATTACK_PAIRS"); // NOLINT(concurrency-mt-unsafe): one thread
    if (pairs == nullptr) GTEST_SKIP() << "only at night";
    const std::int64_t step = wholeNumberIn<std::int64_t>(pairs).value_or(1);
    const Readings whole = read();
    std::int64_t tried = 0;
    for (const Fault fault : fakes::allFaults) {
        for (std::int64_t first = 1; readWith({first}, fault, whole); ++first) {
            for (std::int64_t second = first + 1; readWith({first, second}, fault, whole); second += step)
                ++tried;
        }
    }
    EXPECT_GT(tried, 0);
    RecordProperty("faults_tried", std::to_string(tried));
}

std::vector<std::string> machineNames() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(trees)) {
        if (entry.path().extension() == ".tree") names.push_back(entry.path().stem().string());
    }
    std::ranges::sort(names);
    return names;
}

INSTANTIATE_TEST_SUITE_P(All, FaultyFiles, testing::ValuesIn(machineNames()),
                         [](const auto& machine) { return replacedAll(machine.param, "-", "_"); });

using DriverFault = std::function<ReturnCode(SMCParamBlock& output)>;

const std::array<DriverFault, 4> driverFaults{
    [](SMCParamBlock&) { return ReturnCode{5}; },
    [](SMCParamBlock& output) {
        output.result = 0x84;
        return kernSuccess;
    },
    [](SMCParamBlock& output) {
        output = {};
        return kernSuccess;
    },
    [](SMCParamBlock& output) {
        output.dataSize = 0xFFFFFFFF;
        output.key = output.dataType = 0x80FF00FF;
        output.bytes.fill(0xFF);
        return kernSuccess;
    },
};

fakes::FakeMachine controller() {
    fakes::FakeMachine fake;
    fake.driver->addKeyCount(4).add("TC0P", "sp78", {0x28, 0x80}).add("F0Ac", "fpe2", {0x1C, 0x20});
    fake.driver->add("VC0C", "fp2e", {0x40, 0x00});
    return fake;
}

TEST(FaultyDriver, LeavesTheReadingsOfOtherKeys) {
    const Readings whole = readingsOf(controller().machine());
    ASSERT_EQ(whole.size(), 3U);
    for (const DriverFault& fault : driverFaults) {
        std::string touched;
        for (int number = 1; number == 1 || !touched.empty(); ++number) {
            const fakes::FakeMachine fake = controller();
            touched.clear();
            fake.driver->intercept = [&,
                                      call = 0](const SMCParamBlock& input,
                                                SMCParamBlock& output) mutable -> std::optional<ReturnCode> {
                if (++call != number) return std::nullopt;
                const bool isListing = input.command == static_cast<std::uint8_t>(SMCCommand::keyByIndex);
                touched = isListing ? fourCharString(output.key) : fourCharString(input.key);
                return fault(output);
            };
            const Readings rest = readingsOf(fake.machine());
            for (const auto& [key, measured] : whole) {
                if (touched == "#KEY" || touched == key) continue;
                const auto found = rest.find(key);
                EXPECT_TRUE(found != rest.end() && found->second == measured) << key << " at call " << number;
            }
            ASSERT_EQ(fake.driver->openCount, 1);
        }
    }
}

/// Counts the calls of a registry and its entries; the one of a number fails.
class FaultyRegistry final : public IORegistry {
  public:
    FaultyRegistry(int failing, fakes::FakeIORegistry& registry) : failing_(failing), registry_(registry) {}

    [[nodiscard]] bool hasFailed() const { return call_ >= failing_; }

    std::unique_ptr<IORegistryIterator> iterateRecursively(std::string_view plane) override {
        if (fails()) return nullptr;
        return std::make_unique<Iterator>(*this, registry_.iterateRecursively(plane));
    }

  private:
    bool fails() { return ++call_ == failing_; }

    class Entry final : public IORegistryEntry {
      public:
        Entry(FaultyRegistry& registry, const IORegistryEntry& entry) : registry_(registry), entry_(entry) {}

        [[nodiscard]] std::string className() const override {
            return registry_.fails() ? "" : entry_.className();
        }

        [[nodiscard]] std::string name() const override { return registry_.fails() ? "" : entry_.name(); }

        [[nodiscard]] std::optional<std::string> textProperty(std::string_view name) const override {
            return registry_.fails() ? std::nullopt : entry_.textProperty(name);
        }

        [[nodiscard]] std::optional<Dictionary> properties(const PropertyFilter& isWanted) const override {
            return registry_.fails() ? std::nullopt : entry_.properties(isWanted);
        }

      private:
        FaultyRegistry& registry_;
        const IORegistryEntry& entry_;
    };

    class Iterator final : public IORegistryIterator {
      public:
        Iterator(FaultyRegistry& registry, std::unique_ptr<IORegistryIterator> entries)
            : registry_(registry), entries_(std::move(entries)) {}

        const IORegistryEntry* next() override {
            const IORegistryEntry* const entry = registry_.fails() ? nullptr : entries_->next();
            if (entry == nullptr) return nullptr;
            return &current_.emplace(registry_, *entry);
        }

      private:
        FaultyRegistry& registry_;
        std::unique_ptr<IORegistryIterator> entries_;
        std::optional<Entry> current_;
    };

    const int failing_;
    fakes::FakeIORegistry& registry_;
    int call_ = 0;
};

TEST(FaultyRegistry, LeavesTheKeysOfTheControllerAndInventsNoFan) {
    bool hasFailed = true;
    for (int failing = 1; hasFailed; ++failing) {
        const fakes::FakeMachine fake = controller();
        fake.registry->add("SMCSuperIO", "chip", Dictionary{{"CPU Fan", std::int64_t{900}}});
        fake.registry->add("IOService", "board", Dictionary{{"FAN7", std::int64_t{1450}}});
        const auto registry = std::make_shared<FaultyRegistry>(failing, *fake.registry);
        const Machine machine{.source = std::make_shared<SMCBridge>(fake.driver, registry, fake.clock),
                              .system = fake.system,
                              .clock = fake.clock};
        const Readings readings = readingsOf(machine);
        hasFailed = registry->hasFailed();
        EXPECT_EQ(readings.contains("TC0P") + readings.contains("F0Ac") + readings.contains("VC0C"), 3);
        EXPECT_LE(readings.size(), 5U);
        if (!hasFailed) {
            EXPECT_EQ(readings.size(), 5U);
        }
    }
}

} // namespace
} // namespace kelvinbar::fault_test
