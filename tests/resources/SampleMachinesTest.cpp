#include "resources/SampleMachines.h"

#include "base/NumberText.h"
#include "base/Text.h"
#include "sensors/RawReading.h"
#include "tests/machines/replay/Exporting.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::sample_machines_test {

namespace {

struct Line {
    std::string key;
    std::string type;
    std::string name;
    std::string value;
    std::string raw;
};

std::vector<std::string> parts(std::string_view text, char separator) {
    std::vector<std::string> found(1);
    for (const char character : text) {
        if (character == separator) {
            found.emplace_back();
        } else {
            found.back().push_back(character);
        }
    }
    return found;
}

/// The readings of a sample, whose fields hold no tabs.
std::vector<Line> linesOf(const SampleMachine& sample) {
    std::vector<Line> lines;
    const std::vector<std::string> texts = parts(sample.text, '\n');
    for (const std::string& text : texts) {
        if (!contains(text, "\t")) continue;
        const std::vector<std::string> fields = parts(text, '\t');
        EXPECT_EQ(fields.size(), 5U) << text;
        if (fields.size() == 5)
            lines.push_back({fields[0], fields[1], fields[2], fields[3], fields[4].substr(4)});
    }
    return lines;
}

const SampleMachine& sampleNamed(std::string_view name) {
    return *std::ranges::find(sampleMachines(), name, &SampleMachine::name);
}

struct Range {
    std::string_view unit;
    double lowest;
    double highest;
};

/// What such a machine can show while somebody works at it.
constexpr std::array<Range, 7> plausible{{{" °C", 15, 100},
                                          {" RPM", 300, 7000},
                                          {" V", 0.3, 25},
                                          {" A", -10, 100},
                                          {" W", 0, 400},
                                          {" mAh", 1, 10000},
                                          {" MHz", 100, 6000}}};

const Range* rangeFor(std::string_view value) {
    const auto* const found =
        std::ranges::find_if(plausible, [&](const Range& range) { return value.ends_with(range.unit); });
    return found == plausible.end() ? nullptr : found;
}

class Samples : public testing::TestWithParam<std::string_view> {
  protected:
    [[nodiscard]] static const SampleMachine& sample() { return sampleNamed(GetParam()); }
};

TEST(SampleMachines, AreFour) {
    std::vector<std::string_view> names;
    for (const SampleMachine& sample : sampleMachines()) names.push_back(sample.name);
    EXPECT_EQ(names, (std::vector<std::string_view>{"intel-notebook", "apple-silicon-desktop", "amd-pc",
                                                    "linux-pc"}));
}

TEST_P(Samples, IsReadWithoutAProblem) {
    const ReplayResult replay = replayed(sample().text);
    EXPECT_TRUE(replay.machine);
    EXPECT_EQ(lineNumbers(replay.problems), std::vector<std::size_t>());
}

/// So every line of it is a reading, and its header counts them.
TEST_P(Samples, IsItsOwnSnapshot) { EXPECT_EQ(exportedReplay(sample().text), sample().text); }

TEST_P(Samples, HasEnoughReadingsToShowTheProgram) { EXPECT_GE(linesOf(sample()).size(), 50U); }

TEST_P(Samples, HasNoKeyTwice) {
    std::set<std::string> keys;
    for (const Line& line : linesOf(sample())) EXPECT_TRUE(keys.insert(line.key).second) << line.key;
}

TEST_P(Samples, ShowsNoUndecodedBytes) {
    for (const Line& line : linesOf(sample())) {
        EXPECT_FALSE(line.name.empty()) << line.key;
        EXPECT_NE(line.name, line.key);
        EXPECT_FALSE(line.value.empty()) << line.key;
        // The raw text of the kernel's sensors is a number, and that of a fan is its value.
        const bool mayBeginAlike = line.value.size() == 1 || isSelfNamedKey(line.key);
        EXPECT_TRUE(mayBeginAlike || !line.value.starts_with(line.raw)) << line.key << " " << line.value;
    }
}

TEST_P(Samples, ShowsNoImplausibleValue) {
    for (const Line& line : linesOf(sample())) {
        const Range* const range = rangeFor(line.value);
        if (range == nullptr) continue;
        const double number = leadingNumber(line.value);
        EXPECT_GE(number, range->lowest) << line.key << " " << line.value;
        EXPECT_LE(number, range->highest) << line.key << " " << line.value;
    }
}

TEST_P(Samples, ShowsUnitsOnEveryTemperatureFanVoltageAndCurrent) {
    for (const Line& line : linesOf(sample())) {
        const bool isAsleep = line.raw == "suspended";
        const bool isMeasurement =
            isSelfNamedKey(line.key) ? !isAsleep : contains("TVI", line.key.substr(0, 1));
        EXPECT_TRUE(!isMeasurement || rangeFor(line.value) != nullptr) << line.key << " " << line.value;
    }
}

TEST_P(Samples, HasFansThatTurnWithinTheirLimits) {
    std::map<std::string, double> speeds;
    for (const Line& line : linesOf(sample())) {
        if (line.value.ends_with(" RPM")) speeds[line.key] = leadingNumber(line.value);
    }
    EXPECT_FALSE(speeds.empty());
    for (const auto& [key, speed] : speeds) {
        if (!key.ends_with("Ac")) continue;
        const std::string fan = key.substr(0, 2);
        EXPECT_GE(speed, speeds.at(fan + "Mn")) << key;
        EXPECT_LE(speed, speeds.at(fan + "Mx")) << key;
    }
}

INSTANTIATE_TEST_SUITE_P(SampleMachines, Samples,
                         testing::Values("intel-notebook", "apple-silicon-desktop", "amd-pc", "linux-pc"),
                         [](const auto& test) { return replacedAll(test.param, "-", "_"); });

TEST(SampleMachines, HaveABatteryInTheNotebookOnly) {
    const auto hasBattery = [](std::string_view name) {
        return std::ranges::any_of(linesOf(sampleNamed(name)),
                                   [](const Line& line) { return line.name == "Battery Count"; });
    };
    EXPECT_TRUE(hasBattery("intel-notebook"));
    EXPECT_FALSE(hasBattery("apple-silicon-desktop"));
    EXPECT_FALSE(hasBattery("amd-pc"));
    EXPECT_FALSE(hasBattery("linux-pc"));
}

TEST(SampleMachines, HaveRegistryFansInThePcWithTheEmulatorOnly) {
    const auto registryFans = [](std::string_view name) {
        return std::ranges::count(linesOf(sampleNamed(name)), "ioreg", &Line::type);
    };
    EXPECT_EQ(registryFans("intel-notebook"), 0);
    EXPECT_EQ(registryFans("apple-silicon-desktop"), 0);
    EXPECT_EQ(registryFans("linux-pc"), 0);
    EXPECT_GE(registryFans("amd-pc"), 3);
}

} // namespace
} // namespace kelvinbar::sample_machines_test
