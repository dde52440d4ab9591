#include "desktop/linux/session/AlertSound.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::alert_sound_test {

namespace {

class AlertSoundTest : public testing::Test {
  protected:
    AlertWay way(const std::string& name, bool isThere) {
        return [this, name, isThere] {
            tried_.push_back(name);
            return isThere;
        };
    }

    std::vector<std::string> tried_;
};

TEST_F(AlertSoundTest, IsPlayedInTheFirstWayThatIsThere) {
    playAlert({way("theme", false), way("X server", true), way("terminal", true)});
    EXPECT_EQ(tried_, (std::vector<std::string>{"theme", "X server"}));
}

TEST_F(AlertSoundTest, IsPlayedOnce) {
    playAlert({way("theme", true), way("X server", true)});
    EXPECT_EQ(tried_, std::vector<std::string>{"theme"});
}

TEST_F(AlertSoundTest, IsSilentWhereNoWayIsThere) {
    playAlert({way("theme", false), way("terminal", false)});
    EXPECT_EQ(tried_, (std::vector<std::string>{"theme", "terminal"}));
    playAlert({});
}

TEST_F(AlertSoundTest, OfThisDesktopEndsWithTheTerminal) {
    ASSERT_EQ(alertWays().size(), 3U);
    for (const AlertWay& candidate : alertWays()) EXPECT_TRUE(candidate);
}

TEST(AlertFinding, TellsWhatIsMissedWithoutTheLibrary) {
    EXPECT_EQ(alertFinding(true).state, FindingState::good);
    EXPECT_TRUE(alertFinding(true).advice.empty());
    EXPECT_EQ(alertFinding(false).state, FindingState::note);
    EXPECT_NE(alertFinding(false).advice, "");
}

} // namespace
} // namespace kelvinbar::alert_sound_test
