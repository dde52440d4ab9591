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
    void prepareAndAcquire() {
        input.prepare(window);
        window.show();
        input.acquire(window, [this] { ++dismissals; });
    }

    /// Reports a state of the program, as the system does.
    static void reportState(Qt::ApplicationState state) { emit qGuiApp->applicationStateChanged(state); }

    int activations = 0;
    int hidings = 0;
    int dismissals = 0;
    std::function<void()> press; ///< in another program; empty if nobody listens
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

TEST_F(ActiveInputTest, TheProgramIsActivatedBeforeItsWindowIsShown) {
    input.prepare(window);
    EXPECT_EQ(activations, 1);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(ActiveInputTest, TheWindowIsVisibleBeforeTheProgramIsActive) {
    input.prepare(window);
    EXPECT_EQ(window.type(), Qt::Tool);
    EXPECT_TRUE(window.flags().testFlag(Qt::FramelessWindowHint));
    EXPECT_TRUE(window.flags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_TRUE(window.property("_q_macAlwaysShowToolWindow").toBool());
}

TEST_F(ActiveInputTest, ActivatingAnotherProgramDismissesTheWindow) {
    prepareAndAcquire();
    reportState(Qt::ApplicationActive);
    EXPECT_EQ(dismissals, 0);
    reportState(Qt::ApplicationInactive);
    EXPECT_EQ(dismissals, 1);
}

TEST_F(ActiveInputTest, APressInAnotherProgramDismissesTheWindowThoughThisOneStaysActive) {
    prepareAndAcquire();
    reportState(Qt::ApplicationActive);
    ASSERT_TRUE(press);
    press();
    EXPECT_EQ(dismissals, 1);
}

TEST_F(ActiveInputTest, PressesAreWatchedOnlyWhileTheWindowHasTheInput) {
    input.prepare(window);
    EXPECT_FALSE(press);
    prepareAndAcquire();
    EXPECT_TRUE(press);
    input.release(window);
    EXPECT_FALSE(press);
}

TEST_F(ActiveInputTest, AcquiringTwiceDismissesOnce) {
    prepareAndAcquire();
    reportState(Qt::ApplicationActive);
    input.acquire(window, [this] { ++dismissals; });
    reportState(Qt::ApplicationInactive);
    EXPECT_EQ(dismissals, 1);
}

TEST_F(ActiveInputTest, AClosedWindowIsNotDismissed) {
    prepareAndAcquire();
    reportState(Qt::ApplicationActive);
    input.release(window);
    reportState(Qt::ApplicationInactive);
    EXPECT_EQ(dismissals, 0);
}

TEST_F(ActiveInputTest, TheInputMayBeReleasedWhileAPressIsReported) {
    input.prepare(window);
    input.acquire(window, [this] {
        ++dismissals;
        input.release(window);
    });
    const auto pressHandler = press;
    pressHandler();
    reportState(Qt::ApplicationActive);
    reportState(Qt::ApplicationInactive);
    EXPECT_EQ(dismissals, 1);
    EXPECT_FALSE(press);
}

TEST_F(ActiveInputTest, AnActiveProgramHidesItselfWithItsWindow) {
    prepareAndAcquire();
    reportState(Qt::ApplicationActive);
    input.release(window);
    EXPECT_EQ(hidings, 1);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(ActiveInputTest, AnInactiveProgramDoesNotHideItself) {
    prepareAndAcquire();
    reportState(Qt::ApplicationActive);
    reportState(Qt::ApplicationInactive);
    input.release(window);
    EXPECT_EQ(hidings, 0);
}

TEST_F(ActiveInputTest, AWindowReopenedAtOnceIsNotDismissedByItsOwnHiding) {
    prepareAndAcquire();
    reportState(Qt::ApplicationActive);
    input.release(window);
    prepareAndAcquire(); // the hiding has not taken effect yet
    reportState(Qt::ApplicationInactive);
    EXPECT_EQ(dismissals, 0);
    reportState(Qt::ApplicationActive);
    reportState(Qt::ApplicationInactive);
    EXPECT_EQ(dismissals, 1);
}

} // namespace kelvinbar
