#include "desktop/macos/ActiveInput.h"

#include <QGuiApplication>
#include <QWindow>
#include <functional>
#include <memory>
#include <utility>

#include <gtest/gtest.h>

namespace kelvinbar {

namespace {

class ActiveInputTest : public testing::Test {
  protected:
    void prepareAndTake() {
        input.prepare(window);
        window.show();
        input.take(window, [this] { ++elsewhere; });
    }

    /// What the system tells.
    static void tellState(Qt::ApplicationState state) { emit qGuiApp->applicationStateChanged(state); }

    int activations = 0;
    int hidings = 0;
    int elsewhere = 0;
    std::function<void()> press; ///< in another program; empty while nobody watches
    ActiveInput input{{.activate = [this] { ++activations; },
                       .hide = [this] { ++hidings; },
                       .watchPresses =
                           [this](std::function<void()> onPress) {
                               press = std::move(onPress);
                               return std::shared_ptr<void>(&press, [this](void*) { press = nullptr; });
                           }}};
    QWindow window;
};

} // namespace

TEST_F(ActiveInputTest, TheProgramComesToTheFrontBeforeItsWindowIsShown) {
    input.prepare(window);
    EXPECT_EQ(activations, 1);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(ActiveInputTest, TheWindowIsAPanelThatIsSeenBeforeTheProgramIsInFront) {
    input.prepare(window);
    EXPECT_EQ(window.type(), Qt::Tool);
    EXPECT_TRUE(window.flags().testFlag(Qt::FramelessWindowHint));
    EXPECT_TRUE(window.flags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_TRUE(window.property("_q_macAlwaysShowToolWindow").toBool());
}

TEST_F(ActiveInputTest, AnotherProgramInFrontIsElsewhere) {
    prepareAndTake();
    tellState(Qt::ApplicationActive);
    EXPECT_EQ(elsewhere, 0);
    tellState(Qt::ApplicationInactive);
    EXPECT_EQ(elsewhere, 1);
}

TEST_F(ActiveInputTest, APressInAnotherProgramIsElsewhereThoughThisOneStaysActive) {
    prepareAndTake();
    tellState(Qt::ApplicationActive);
    ASSERT_TRUE(press);
    press();
    EXPECT_EQ(elsewhere, 1);
}

TEST_F(ActiveInputTest, PressesAreWatchedOnlyWhileTheWindowHasTheInput) {
    input.prepare(window);
    EXPECT_FALSE(press);
    prepareAndTake();
    EXPECT_TRUE(press);
    input.giveBack(window);
    EXPECT_FALSE(press);
}

TEST_F(ActiveInputTest, TakingTwiceTellsOnce) {
    prepareAndTake();
    tellState(Qt::ApplicationActive);
    input.take(window, [this] { ++elsewhere; });
    tellState(Qt::ApplicationInactive);
    EXPECT_EQ(elsewhere, 1);
}

TEST_F(ActiveInputTest, NothingIsToldOfAClosedWindow) {
    prepareAndTake();
    tellState(Qt::ApplicationActive);
    input.giveBack(window);
    tellState(Qt::ApplicationInactive);
    EXPECT_EQ(elsewhere, 0);
}

TEST_F(ActiveInputTest, TheInputMayBeGivenBackWhenAPressIsTold) {
    input.prepare(window);
    input.take(window, [this] {
        ++elsewhere;
        input.giveBack(window);
    });
    const auto told = press;
    told();
    tellState(Qt::ApplicationActive);
    tellState(Qt::ApplicationInactive);
    EXPECT_EQ(elsewhere, 1);
    EXPECT_FALSE(press);
}

TEST_F(ActiveInputTest, AProgramInFrontGivesTheFrontBackWithItsWindowClosed) {
    prepareAndTake();
    tellState(Qt::ApplicationActive);
    input.giveBack(window);
    EXPECT_EQ(hidings, 1);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(ActiveInputTest, AProgramThatIsNotInFrontLeavesItToWhoIs) {
    prepareAndTake();
    tellState(Qt::ApplicationActive);
    tellState(Qt::ApplicationInactive);
    input.giveBack(window);
    EXPECT_EQ(hidings, 0);
}

TEST_F(ActiveInputTest, ReopenedAtOnceItIsNotClosedByItsOwnHiding) {
    prepareAndTake();
    tellState(Qt::ApplicationActive);
    input.giveBack(window);
    prepareAndTake(); // before the hiding has taken effect
    tellState(Qt::ApplicationInactive);
    EXPECT_EQ(elsewhere, 0);
    tellState(Qt::ApplicationActive);
    tellState(Qt::ApplicationInactive);
    EXPECT_EQ(elsewhere, 1);
}

} // namespace kelvinbar
