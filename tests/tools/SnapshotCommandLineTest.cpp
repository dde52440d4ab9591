#include "tools/SnapshotCommandLine.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::snapshot_command_line_test {

namespace {

using std::chrono::seconds;

/// What the options ask to identify; no value if they do not, or are wrong.
std::optional<IdentificationPlan> planOf(std::vector<std::string> words) {
    words.insert(words.begin(), "kelvinbar-snapshot");
    std::vector<char*> arguments;
    arguments.reserve(words.size());
    for (std::string& word : words) arguments.push_back(word.data());
    SnapshotCommandLine commandLine;
    if (commandLine.parse(static_cast<int>(arguments.size()), arguments.data())) return std::nullopt;
    return commandLine.options().identification;
}

TEST(SnapshotCommandLine, IdentifiesForItsUsualTimeUnlessAnotherIsGiven) {
    ASSERT_TRUE(planOf({"--identify"}));
    EXPECT_EQ(planOf({"--identify"})->time, seconds(20));
    EXPECT_EQ(planOf({"--identify", "--by-hand"})->time, seconds(60));
    EXPECT_TRUE(planOf({"--identify", "--by-hand"})->isByHand);
    EXPECT_EQ(planOf({"--identify", "7", "--by-hand"})->time, seconds(7));
    EXPECT_EQ(planOf({"--identify", "7"})->time, seconds(7));
}

TEST(SnapshotCommandLine, IdentifiesOnlyIfItIsAskedTo) { EXPECT_FALSE(planOf({"--summary"})); }

} // namespace
} // namespace kelvinbar::snapshot_command_line_test
