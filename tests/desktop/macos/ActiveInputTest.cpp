#include "desktop/macos/ActiveInput.h"

#include <QGuiApplication>
#include <QWindow>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::active_input_test {

namespace {

constexpr Point onItem{1240, 12};
constexpr Point elsewhere{300, 300};

class ActiveInputTest : public testing::Test {
  protected:
    void prepareAndAcquire() {
        input.prepare(window);
        window.show();
        input.acquire(window, [this] {
            ++dismissals;
            if (isOpen) toggle();
        });
    }

    /// What a click on the status item does.
    void toggle() {
        isOpen ? input.release(window) : prepareAndAcquire();
        isOpen = !isOpen;
    }

    /// Reports a press to whoever listens, as the system does.
    void reportPress(Point place) const {
        const auto handler = press;
        if (handler) handler(place);
    }

    /// Reports a state of the program, as the system does.
    static void reportState(Qt::ApplicationState state) { emit qGuiApp->applicationStateChanged(state); }

    int activations = 0;
    int hidings = 0;
    int dismissals = 0;
    bool isOpen = false; ///< by `toggle`, and until the window is dismissed
    std::vector<bool> highlights;
    QWindow* inActiveSpace = nullptr;
    bool wasVisibleBefore = false; ///< it had to follow the active space
    int shadows = 0;
    std::function<void(Point)> press; ///< in another program; empty if nobody listens
    ActiveInput input{{.activate = [this] { ++activations; },
                       .hide = [this] { ++hidings; },
                       .watchPresses =
                           [this](std::function<void(Point)> onPress) {
                               press = std::move(onPress);
                               return std::shared_ptr<void>(&press, [this](void*) { press = nullptr; });
                           },
                       .isOnItem = [](Point place) { return place == onItem; },
                       .setItemHighlighted = [this](bool isIt) { highlights.push_back(isIt); },
                       .followActiveSpace =
                           [this](QWindow& followed) {
                               inActiveSpace = &followed;
                               wasVisibleBefore = followed.isVisible();
                           },
                       .updateShadow = [this](QWindow&) { ++shadows; }}};
    QWindow window;
};

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
    reportPress(elsewhere);
    EXPECT_EQ(dismissals, 1);
}

TEST_F(ActiveInputTest, APressOnTheItemIsNotElsewhere) {
    prepareAndAcquire();
    reportPress(onItem);
    EXPECT_EQ(dismissals, 0);
}

TEST_F(ActiveInputTest, APressOnTheItemTogglesOnceIfItIsReportedBeforeTheClick) {
    for (const bool opens : {true, false, true, false}) {
        reportPress(onItem);
        toggle();
        EXPECT_EQ(isOpen, opens);
    }
    EXPECT_EQ(dismissals, 0);
}

TEST_F(ActiveInputTest, APressOnTheItemTogglesOnceIfItIsReportedAfterTheClick) {
    for (const bool opens : {true, false, true, false}) {
        toggle();
        reportPress(onItem);
        EXPECT_EQ(isOpen, opens);
    }
    EXPECT_EQ(dismissals, 0);
}

TEST_F(ActiveInputTest, APressElsewhereClosesAndTheNextClickOpens) {
    toggle();
    reportPress(elsewhere);
    EXPECT_FALSE(isOpen);
    toggle();
    EXPECT_TRUE(isOpen);
}

TEST_F(ActiveInputTest, TheItemIsHighlightedWhileTheWindowIsOpenOnceItsClickHasBeenHandled) {
    prepareAndAcquire();
    EXPECT_EQ(highlights, std::vector<bool>{});
    QCoreApplication::processEvents();
    EXPECT_EQ(highlights, std::vector{true});
    input.release(window);
    EXPECT_EQ(highlights, (std::vector{true, false}));
}

TEST_F(ActiveInputTest, AWindowThatIsClosedAtOnceLeavesNoHighlight) {
    prepareAndAcquire();
    input.release(window);
    QCoreApplication::processEvents();
    EXPECT_EQ(highlights, std::vector{false});
}

TEST_F(ActiveInputTest, TheWindowFollowsTheActiveSpaceBeforeItIsShown) {
    input.prepare(window);
    EXPECT_EQ(inActiveSpace, &window);
    EXPECT_FALSE(wasVisibleBefore);
}

TEST_F(ActiveInputTest, TheSystemsShadowSurroundsRoundedCornersOfEverySize) {
    EXPECT_EQ(input.look(), PopoverLook::rounded);
    input.placeWindow(window, QRect(100, 24, 462, 54), QRect(0, 0, 462, 54));
    input.placeWindow(window, QRect(100, 24, 462, 690), QRect(0, 0, 462, 690));
    EXPECT_EQ(window.geometry(), QRect(100, 24, 462, 690));
    EXPECT_EQ(shadows, 2);
    prepareAndAcquire();
    EXPECT_EQ(shadows, 3);
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
    pressHandler(elsewhere);
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

} // namespace
} // namespace kelvinbar::active_input_test
