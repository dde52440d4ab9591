// Every call that a pass makes goes wrong once: calls on files, calls of the controller's driver, and calls
// of the registry. What does not depend on that call must be read as ever, and no file may stay open.
//
// KELVINBAR_ATTACK_PAIRS: also every call together with later ones, in another way. Of files, every n-th one
// after it; of the driver and the registry, all.

#include "base/NumberText.h"
#include "base/Text.h"
#include "machines/linux/LinuxMachine.h"
#include "machines/linux/sources/SensorChips.h"
#include "store/LoadPass.h"
#include "tests/fakes/FakeClocks.h"
#include "tests/fakes/FakeMachine.h"
#include "tests/fakes/RecordingLog.h"
#include "tests/machines/linux/RecordedTree.h"
#include "tests/reliability/AttackedMachines.h"
#include "tests/reliability/Attempts.h"
#include "tests/reliability/SleepClock.h"
#include "tests/reliability/faults/FaultySystemCalls.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::fault_test {

namespace {

namespace fs = std::filesystem;
using fakes::Fault;
using fakes::SystemCallFaults;

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

/// No value unless pairs are to be tried.
std::optional<std::int64_t> stepOfPairs() {
    const char* const step =
        std::getenv("KELVINBAR_ATTACK_PAIRS"); // NOLINT(concurrency-mt-unsafe): one thread
    return step == nullptr ? std::nullopt : wholeNumberIn<std::int64_t>(step);
}

void recordTried(std::int64_t tried) {
    EXPECT_GT(tried, 0);
    testing::Test::RecordProperty("faults_tried", std::to_string(tried));
}

bool contains(const Readings& readings, const std::string& key, const Measured& measured) {
    const auto found = readings.find(key);
    return found != readings.end() && found->second == measured;
}

/// Where a chip's files are.
struct ChipFiles {
    std::string keyStart; ///< of its readings; empty for a controller, whose keys are four characters
    fs::path entry;
    fs::path device; ///< without links; may be empty

    [[nodiscard]] bool has(const std::string& key) const {
        return keyStart.empty() ? key.size() == 4 : key.starts_with(keyStart);
    }
};

bool isBelow(const fs::path& path, const fs::path& folder) {
    return std::ranges::mismatch(folder, path).in1 == folder.end();
}

/// Empty if there is no such device: many supplies and counters have none.
fs::path deviceOf(const SensorChip& chip) {
    std::error_code ignored;
    return fs::canonical(chip.entry / "device", ignored);
}

/// A file or folder of which a call went wrong.
struct TouchedFile {
    explicit TouchedFile(const fs::path& path)
        : named(path), real(fs::weakly_canonical(path.parent_path()) / path.filename()) {}

    fs::path named;
    fs::path real; ///< its folder without links
};

/// Whether the chip's readings may depend on the file or folder.
bool dependsOn(const ChipFiles& chip, const TouchedFile& file) {
    const fs::path name = chip.entry.filename();
    if (std::ranges::find(file.named, name) != file.named.end()) return true;
    // The name of a folder ends with a slash.
    const bool isItsClass =
        file.named == chip.entry.parent_path() || file.named == chip.entry.parent_path() / "";
    if (isItsClass || chip.device.empty()) return isItsClass;
    // The search for a network interface looks into the folders above the device.
    return isBelow(file.real, chip.device) || isBelow(chip.device, file.real.parent_path());
}

class FaultyFiles : public testing::TestWithParam<fs::path> {
  protected:
    FaultyFiles() {
        for (const SensorChip& chip : sensorChips(recorded_.root(), nullptr, log_.log)) {
            const bool isController = chip.name == "applesmc";
            chips_.push_back({isController ? "" : chip.sensorsName + "/", chip.entry, deviceOf(chip)});
        }
    }

    [[nodiscard]] Readings read() {
        return readingsOf(
            makeLinuxMachine(recorded_.root(), std::make_shared<fakes::SleepClock>(), log_.log));
    }

    using IsAboutKey = std::function<bool(const std::string& key)>;

    /// Which readings a call for the file may have changed.
    [[nodiscard]] IsAboutKey mayDifferBy(const TouchedFile& file) const {
        // Kinds of cores tell names only.
        if (isBelow(file.named, recorded_.root() / "sys/devices/system/cpu") && !chips_.empty())
            return [](const std::string&) { return false; };
        std::vector<ChipFiles> touched;
        std::ranges::copy_if(chips_, std::back_inserter(touched),
                             [&](const ChipFiles& chip) { return dependsOn(chip, file); });
        // All depend on what belongs to no chip.
        return [touched](const std::string& key) {
            return touched.empty() ||
                   std::ranges::any_of(touched, [&](const ChipFiles& chip) { return chip.has(key); });
        };
    }

    void expectRightRemainder(const Readings& whole, const Readings& rest) const {
        std::vector<IsAboutKey> mayDiffer;
        for (const std::string& path : SystemCallFaults::paths()) {
            mayDiffer.push_back(mayDifferBy(TouchedFile(path)));
        }
        for (const auto& [key, measured] : whole) {
            const auto isAboutKey = [&own = key](const IsAboutKey& isAbout) { return isAbout(own); };
            if (std::ranges::any_of(mayDiffer, isAboutKey)) continue;
            EXPECT_TRUE(contains(rest, key, measured)) << key << " is missing or differs";
        }
    }

    /// A device that sleeps must not be woken because something else about it could not be read.
    static void expectNoneWoken(const Readings& whole, const Readings& rest) {
        const auto isPowerState = [](const std::string& path) { return path.ends_with("/runtime_status"); };
        if (std::ranges::any_of(SystemCallFaults::paths(), isPowerState)) return;
        for (const auto& [key, measured] : whole) {
            const auto found = rest.find(key);
            if (measured.value != "asleep" || found == rest.end()) continue;
            EXPECT_EQ(found->second.value, "asleep") << key;
        }
    }

    static std::string described(const std::vector<fakes::FaultyCall>& calls) {
        std::string text;
        for (const fakes::FaultyCall& call : calls) {
            text += "call " + std::to_string(call.number) + ", fault " +
                    std::to_string(static_cast<int>(call.fault)) + "; ";
        }
        return text;
    }

    /// Returns whether there were as many calls.
    bool readWith(const std::vector<fakes::FaultyCall>& calls, const Readings& whole) {
        Readings rest;
        {
            const SystemCallFaults faults(calls);
            rest = read();
        }
        SCOPED_TRACE(described(calls));
        expectRightRemainder(whole, rest);
        expectNoneWoken(whole, rest);
        return SystemCallFaults::paths().size() == calls.size();
    }

    /// A pair's second fault is of each kind in turn. Returns how many pairs there are with this first one.
    std::int64_t readWithPairs(const fakes::FaultyCall& first, std::int64_t step, const Readings& whole) {
        std::int64_t tried = 0;
        for (std::int64_t second = first.number + 1;; second += step) {
            const Fault fault =
                fakes::allFaults.at(static_cast<std::size_t>(tried) % fakes::allFaults.size());
            if (!readWith({first, {second, fault}}, whole)) return tried;
            ++tried;
        }
    }

    fakes::RecordingLog log_;
    fakes::RecordedTree recorded_{GetParam()};
    std::vector<ChipFiles> chips_;
};

TEST_P(FaultyFiles, LeaveTheReadingsOfOtherChips) {
    const Readings whole = read();
    ASSERT_EQ(whole.empty(), fakes::isWithoutReadings(GetParam()));
    std::int64_t tried = 0;
    for (const Fault fault : fakes::allFaults) {
        const std::string what = "fault " + std::to_string(static_cast<int>(fault)) + " at call";
        tried += fakes::attemptEach(what, [&](std::int64_t call) -> std::int64_t {
            return readWith({{call, fault}}, whole) ? 1 : 0;
        });
    }
    recordTried(tried);
}

TEST_P(FaultyFiles, LeaveTheReadingsOfOtherChipsInPairs) {
    const auto step = stepOfPairs();
    if (!step) GTEST_SKIP() << "only at night";
    const Readings whole = read();
    std::int64_t tried = 0;
    for (const Fault fault : fakes::allFaults) {
        const std::string what = "pairs with fault " + std::to_string(static_cast<int>(fault)) + " at call";
        tried += fakes::attemptEach(
            what, [&](std::int64_t call) { return readWithPairs({call, fault}, *step, whole); });
    }
    recordTried(tried);
}

INSTANTIATE_TEST_SUITE_P(All, FaultyFiles, testing::ValuesIn(fakes::attackedMachines()),
                         fakes::nameOfMachine);

/// What is wrong with a call of the controller's driver or of the registry.
struct NumberedCall {
    std::int64_t number = 0; ///< counted from 1
    std::size_t fault = 0;   ///< of the kinds that there are
};

/// Calls that go wrong, as `attack` is told; it returns whether there were as many. Tries each call and each
/// kind of fault, at night also in pairs with every later call and every kind. Returns how many there were.
std::int64_t attackCalls(std::size_t kinds,
                         const std::function<bool(const std::vector<NumberedCall>&)>& attack) {
    const auto withLater = [&](const NumberedCall& first) {
        std::int64_t tried = 0;
        for (std::size_t kind = 0; kind < kinds && stepOfPairs(); ++kind) {
            for (std::int64_t second = first.number + 1; attack({first, {second, kind}}); ++second) ++tried;
        }
        return tried;
    };
    std::int64_t tried = 0;
    for (std::size_t kind = 0; kind < kinds; ++kind) {
        const std::string what = "fault " + std::to_string(kind) + " at call";
        tried += fakes::attemptEach(what, [&](std::int64_t number) -> std::int64_t {
            const NumberedCall call{number, kind};
            return attack({call}) ? 1 + withLater(call) : 0;
        });
    }
    return tried;
}

/// Counts calls. Returns the kind of fault of the next one.
class CallCounter {
  public:
    explicit CallCounter(std::vector<NumberedCall> faulty) : faulty_(std::move(faulty)) {}

    std::optional<std::size_t> next() {
        ++calls_;
        const auto found = std::ranges::find(faulty_, calls_, &NumberedCall::number);
        return found == faulty_.end() ? std::nullopt : std::optional(found->fault);
    }

    /// Whether there were as many calls.
    [[nodiscard]] bool haveAllHappened() const {
        return std::ranges::all_of(faulty_, [&](const NumberedCall& call) { return call.number <= calls_; });
    }

  private:
    const std::vector<NumberedCall> faulty_;
    std::int64_t calls_ = 0;
};

using DriverFault = std::function<ReturnCode(SMCParamBlock& output)>;

const std::array<DriverFault, 6> driverFaults{
    [](SMCParamBlock&) { return ReturnCode{5}; },
    [](SMCParamBlock& output) {
        output.result = 0x84;
        return kernSuccess;
    },
    [](SMCParamBlock& output) { // nothing but zeros
        output = {};
        return kernSuccess;
    },
    [](SMCParamBlock& output) { // half of the value
        output.dataSize /= 2;
        std::fill(output.bytes.begin() + 1, output.bytes.end(), std::uint8_t{0});
        return kernSuccess;
    },
    [](SMCParamBlock& output) { // half of the block
        const auto bytes = std::as_writable_bytes(std::span(&output, 1));
        std::ranges::fill(bytes.subspan(bytes.size() / 2), std::byte{0});
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

/// Expects what does not depend on the keys. Returns whether there were as many calls.
bool readWithFaultyDriver(const std::vector<NumberedCall>& calls, const Readings& whole) {
    const fakes::FakeMachine fake = controller();
    CallCounter counter(calls);
    std::vector<std::string> touched;
    fake.driver->intercept = [&](const SMCParamBlock& input,
                                 SMCParamBlock& output) -> std::optional<ReturnCode> {
        const auto fault = counter.next();
        if (!fault) return std::nullopt;
        const bool isListing = input.command == static_cast<std::uint8_t>(SMCCommand::keyByIndex);
        touched.push_back(fourCharString(isListing ? output.key : input.key));
        return driverFaults.at(*fault)(output);
    };
    const Readings rest = readingsOf(fake.machine());
    for (const auto& [key, measured] : whole) {
        const auto mayHaveChanged = [&own = key](const std::string& each) {
            return each == "#KEY" || each == own;
        };
        if (std::ranges::any_of(touched, mayHaveChanged)) continue;
        EXPECT_TRUE(contains(rest, key, measured)) << key << " is missing or differs";
    }
    EXPECT_EQ(fake.driver->openCount, 1);
    return counter.haveAllHappened();
}

TEST(FaultyDriver, LeavesTheReadingsOfOtherKeys) {
    const Readings whole = readingsOf(controller().machine());
    ASSERT_EQ(whole.size(), 3U);
    recordTried(attackCalls(driverFaults.size(), [&](const std::vector<NumberedCall>& calls) {
        return readWithFaultyDriver(calls, whole);
    }));
}

/// What is wrong with a call of the registry.
enum class RegistryFault : std::uint8_t {
    fails,   ///< no answer
    isShort, ///< half of a text; the first of the properties
    lies,    ///< another text; properties of other types
};

constexpr std::size_t registryFaults = 3;

std::string wrong(const std::string& text, RegistryFault fault) {
    if (fault == RegistryFault::fails) return {};
    return fault == RegistryFault::isShort ? text.substr(0, text.size() / 2) : "\xFF" + text + "\xFF";
}

Dictionary wrong(const Dictionary& properties, RegistryFault fault) {
    Dictionary changed;
    for (const auto& [name, value] : properties) {
        if (fault == RegistryFault::lies) {
            changed.append(name, std::string("\xFF"));
        } else {
            changed.append(name, value);
            break;
        }
    }
    return changed;
}

/// Counts the calls of a registry and its entries, of which some go wrong.
class FaultyRegistry final : public IORegistry {
  public:
    FaultyRegistry(CallCounter& calls, fakes::FakeIORegistry& registry)
        : calls_(calls), registry_(registry) {}

    std::unique_ptr<IORegistryIterator> iterateRecursively(std::string_view plane) override {
        if (fault() == RegistryFault::fails) return nullptr;
        return std::make_unique<Iterator>(*this, registry_.iterateRecursively(plane));
    }

  private:
    /// Of the next call.
    std::optional<RegistryFault> fault() {
        const auto kind = calls_.next();
        return kind ? std::optional(static_cast<RegistryFault>(*kind)) : std::nullopt;
    }

    class Entry final : public IORegistryEntry {
      public:
        Entry(FaultyRegistry& registry, const IORegistryEntry& entry) : registry_(registry), entry_(entry) {}

        [[nodiscard]] std::string className() const override { return answer(entry_.className()); }

        [[nodiscard]] std::string name() const override { return answer(entry_.name()); }

        [[nodiscard]] std::optional<std::string> textProperty(std::string_view name) const override {
            return optionalAnswer(entry_.textProperty(name));
        }

        [[nodiscard]] std::optional<Dictionary> properties(const PropertyFilter& isWanted) const override {
            return optionalAnswer(entry_.properties(isWanted));
        }

      private:
        [[nodiscard]] std::string answer(const std::string& text) const {
            const auto fault = registry_.fault();
            return fault ? wrong(text, *fault) : text;
        }

        template <typename Value>
        [[nodiscard]] std::optional<Value> optionalAnswer(const std::optional<Value>& value) const {
            const auto fault = registry_.fault();
            if (!fault) return value;
            return *fault == RegistryFault::fails ? std::nullopt
                                                  : std::optional(wrong(value.value_or(Value()), *fault));
        }

        FaultyRegistry& registry_;
        const IORegistryEntry& entry_;
    };

    class Iterator final : public IORegistryIterator {
      public:
        Iterator(FaultyRegistry& registry, std::unique_ptr<IORegistryIterator> entries)
            : registry_(registry), entries_(std::move(entries)) {}

        /// A registry that lies names the entry before again.
        const IORegistryEntry* next() override {
            const auto fault = registry_.fault();
            if (fault == RegistryFault::lies && current_) return &*current_;
            const IORegistryEntry* const entry = fault ? nullptr : entries_->next();
            if (entry == nullptr) return nullptr;
            return &current_.emplace(registry_, *entry);
        }

      private:
        FaultyRegistry& registry_;
        std::unique_ptr<IORegistryIterator> entries_;
        std::optional<Entry> current_;
    };

    CallCounter& calls_;
    fakes::FakeIORegistry& registry_;
};

Readings readWithFaultyRegistry(CallCounter& counter) {
    const fakes::FakeMachine fake = controller();
    fake.registry->add("SMCSuperIO", "chip", Dictionary{{"CPU Fan", std::int64_t{900}}});
    fake.registry->add("IOService", "board", Dictionary{{"FAN7", std::int64_t{1450}}});
    const auto registry = std::make_shared<FaultyRegistry>(counter, *fake.registry);
    return readingsOf({.source = std::make_shared<SMCBridge>(fake.driver, registry, fake.clock),
                       .system = fake.system,
                       .clock = fake.clock});
}

/// Whether there is such a reading, under this key or, for a fan, under another: fans are counted.
bool containsValue(const Readings& readings, const Measured& measured) {
    return std::ranges::any_of(readings, [&](const auto& reading) { return reading.second == measured; });
}

/// Its keys do not depend on the registry, whose fans have their own values or none.
TEST(FaultyRegistry, LeavesTheKeysOfTheControllerAndInventsNoFan) {
    CallCounter noFaults({});
    const Readings whole = readWithFaultyRegistry(noFaults);
    const Readings keys = readingsOf(controller().machine());
    ASSERT_EQ(whole.size(), 5U);
    ASSERT_EQ(keys.size(), 3U);
    recordTried(attackCalls(registryFaults, [&](const std::vector<NumberedCall>& calls) {
        CallCounter counter(calls);
        const Readings rest = readWithFaultyRegistry(counter);
        for (const auto& [key, measured] : keys) EXPECT_TRUE(contains(rest, key, measured)) << key;
        for (const auto& [key, measured] : rest)
            EXPECT_TRUE(containsValue(whole, measured)) << key << ' ' << measured.value;
        return counter.haveAllHappened();
    }));
}

} // namespace
} // namespace kelvinbar::fault_test
