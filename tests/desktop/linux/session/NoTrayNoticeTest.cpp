#include "desktop/linux/session/NoTrayNotice.h"

#include "tests/desktop/EventLoop.h"
#include "tests/fakes/RecordingLog.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::no_tray_notice_test {

namespace {

using std::chrono::milliseconds;
using Texts = std::vector<std::string>;

class NoTrayNoticeTest : public testing::Test {
  protected:
    NoTrayNoticeTest() {
        situation_.command = "kelvinbar";
        situation_.hasTray = [this] {
            ++questions_;
            return hasTray_;
        };
        situation_.openPanel = [this] { ++openings_; };
    }

    void runUntilAsked() {
        const NoTrayNotice notice(situation_, milliseconds(1), recording_.log);
        EXPECT_TRUE(waitFor([&] { return questions_ > 0; }));
        runEventLoop(milliseconds(10));
        EXPECT_EQ(questions_, 1);
    }

    TraySituation situation_;
    std::optional<bool> hasTray_ = false;
    int questions_ = 0;
    int openings_ = 0;
    fakes::RecordingLog recording_;
};

TEST_F(NoTrayNoticeTest, SaysHowToOpenThePanel) {
    runUntilAsked();
    EXPECT_EQ(recording_.lines(), Texts{"kelvinbar: no tray shows the status item; to open the panel, run "
                                        "\"kelvinbar\" again"});
    EXPECT_EQ(openings_, 0);
}

TEST_F(NoTrayNoticeTest, SaysNothingWhereATrayRuns) {
    hasTray_ = true;
    situation_.isFirstStart = true;
    situation_.hasBus = false;
    runUntilAsked();
    EXPECT_TRUE(recording_.lines().empty());
    EXPECT_EQ(openings_, 0);
}

TEST_F(NoTrayNoticeTest, SaysNothingOfATrayThatComesInTime) {
    const NoTrayNotice notice(situation_, milliseconds(20), recording_.log);
    EXPECT_EQ(questions_, 0);
    hasTray_ = true;
    EXPECT_TRUE(waitFor([&] { return questions_ > 0; }));
    EXPECT_TRUE(recording_.lines().empty());
}

TEST_F(NoTrayNoticeTest, AsksOnceMoreWhileNobodyKnows) {
    hasTray_.reset();
    const NoTrayNotice notice(situation_, milliseconds(5), recording_.log);
    EXPECT_TRUE(waitFor([&] { return questions_ == 1; }));
    EXPECT_TRUE(recording_.lines().empty());
    EXPECT_TRUE(waitFor([&] { return questions_ == 2; }));
    EXPECT_EQ(recording_.lines().size(), 1U);
    runEventLoop(milliseconds(20));
    EXPECT_EQ(questions_, 2);
}

TEST_F(NoTrayNoticeTest, SaysNothingOfATrayThatIsKnownLate) {
    hasTray_.reset();
    const NoTrayNotice notice(situation_, milliseconds(5), recording_.log);
    EXPECT_TRUE(waitFor([&] { return questions_ == 1; }));
    hasTray_ = true;
    EXPECT_TRUE(waitFor([&] { return questions_ == 2; }));
    EXPECT_TRUE(recording_.lines().empty());
}

TEST_F(NoTrayNoticeTest, OpensThePanelAtTheFirstStart) {
    situation_.isFirstStart = true;
    runUntilAsked();
    EXPECT_EQ(openings_, 1);
    EXPECT_EQ(recording_.lines().size(), 1U);
}

TEST_F(NoTrayNoticeTest, WithoutABusOpensThePanelAndSaysHowToHaveOne) {
    situation_.hasBus = false;
    runUntilAsked();
    EXPECT_EQ(openings_, 1);
    EXPECT_EQ(
        recording_.lines(),
        Texts{"kelvinbar: no tray shows the status item, and without a session bus a second start cannot "
              "open the panel; run \"dbus-run-session kelvinbar\" instead"});
}

TEST_F(NoTrayNoticeTest, OpensNothingAtLogin) {
    situation_.isAtLogin = true;
    situation_.isFirstStart = true;
    situation_.hasBus = false;
    runUntilAsked();
    EXPECT_EQ(openings_, 0);
    EXPECT_EQ(recording_.lines().size(), 1U);
}

TEST_F(NoTrayNoticeTest, IsCancelledByItsEnd) {
    {
        const NoTrayNotice notice(situation_, milliseconds(1), recording_.log);
    }
    runEventLoop(milliseconds(20));
    EXPECT_EQ(questions_, 0);
}

TEST(NoTrayNotice, WaitsLongerAtLogin) { EXPECT_GT(NoTrayNotice::patienceAtLogin, NoTrayNotice::patience); }

} // namespace
} // namespace kelvinbar::no_tray_notice_test
