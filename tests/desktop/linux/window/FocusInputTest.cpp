#include "desktop/linux/window/FocusInput.h"

#include "tests/desktop/EventLoop.h"

#include <QWindow>
#include <chrono>
#include <memory>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::focus_input_test {

namespace {

constexpr QPoint elsewhere(5, 5);
constexpr QPoint inside(150, 150);

/// Longer than a tray takes to report a click.
constexpr std::chrono::milliseconds longAfterTheClick{600};

class FocusInputTest : public testing::Test {
  protected:
    FocusInputTest() { window_.setGeometry(100, 100, 200, 300); }

    /// Shows the window, which then has the focus, and gives it the input.
    void open() {
        input_.prepare(window_);
        window_.show();
        window_.requestActivate();
        ASSERT_TRUE(waitFor([this] { return window_.isActive(); }));
        input_.placeWindow(window_, window_.geometry(), {0, 0, 200, 300});
        input_.acquire(window_, [this] {
            ++dismissals_;
            close();
        });
    }

    void close() {
        input_.release(window_);
        window_.hide();
    }

    void moveFocusAway() {
        other_.show();
        other_.requestActivate();
        ASSERT_TRUE(waitFor([this] { return !window_.isActive(); }));
    }

    void press(QPoint place) const { presses_->pressed(place); }

    void letGo() const { presses_->released(); }

    void click(QPoint place) const {
        press(place);
        if (isWatching()) letGo();
    }

    /// Whether presses are reported; they must not be while nobody needs to know.
    [[nodiscard]] bool isWatching() const { return !watch_.expired(); }

    QWindow window_;
    QWindow other_;
    std::unique_ptr<FocusInput::PressHandlers> presses_;
    std::weak_ptr<void> watch_;
    std::vector<FocusRight> rights_;
    FocusInput input_{{.look = [] { return PopoverLook::plain; },
                       .placesWindow = [] { return true; },
                       .prepare = [](QWindow&) {},
                       .activate = [this](QWindow&, const FocusRight& right) { rights_.push_back(right); },
                       .placeWindow = [](QWindow&, const QRect&, const QRect&) {},
                       .watchPresses =
                           [this](FocusInput::PressHandlers handlers) {
                               presses_ = std::make_unique<FocusInput::PressHandlers>(std::move(handlers));
                               auto watch = std::make_shared<int>();
                               watch_ = watch;
                               return std::shared_ptr<void>(watch);
                           }}};
    int dismissals_ = 0;
};

TEST_F(FocusInputTest, TheWindowIsAnOrdinaryOneWithoutFrameAboveOthers) {
    input_.prepare(window_);
    EXPECT_EQ(window_.type(), Qt::Dialog);
    EXPECT_TRUE(window_.flags().testFlag(Qt::FramelessWindowHint));
    EXPECT_TRUE(window_.flags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_FALSE(window_.flags().testFlag(Qt::BypassWindowManagerHint));
}

TEST_F(FocusInputTest, AsksForTheFocusByTheRightThatWasGrantedOnce) {
    input_.grantFocus({.activationToken = "token", .timestamp = 17});
    open();
    close();
    open();
    ASSERT_EQ(rights_.size(), 2U);
    EXPECT_EQ(rights_[0].activationToken, "token");
    EXPECT_EQ(rights_[0].timestamp, 17U);
    EXPECT_TRUE(rights_[1].activationToken.isEmpty());
    EXPECT_EQ(rights_[1].timestamp, 0U);
}

TEST_F(FocusInputTest, AnOpenWindowWithoutTheFocusAsksForItByARightOfItsOwn) {
    input_.prepare(window_);
    input_.acquire(window_, [] {});
    input_.grantFocus({.activationToken = "token", .timestamp = 17});
    ASSERT_EQ(rights_.size(), 2U);
    EXPECT_EQ(rights_[1].activationToken, "token");
    input_.release(window_);
    open();
    ASSERT_EQ(rights_.size(), 3U);
    EXPECT_TRUE(rights_[2].activationToken.isEmpty());
}

TEST_F(FocusInputTest, AnOpenWindowWithTheFocusKeepsNoRightForLater) {
    open();
    input_.grantFocus({.activationToken = "token", .timestamp = 17});
    EXPECT_EQ(rights_.size(), 1U);
    close();
    open();
    EXPECT_TRUE(rights_[1].activationToken.isEmpty());
}

TEST_F(FocusInputTest, IsDismissedWhenTheWindowLosesTheFocus) {
    open();
    moveFocusAway();
    EXPECT_EQ(dismissals_, 1);
}

TEST_F(FocusInputTest, IsNotDismissedBeforeTheWindowHasTheFocus) {
    input_.prepare(window_);
    window_.show();
    ASSERT_TRUE(waitFor([this] { return window_.isActive(); }));
    moveFocusAway();
    input_.acquire(window_, [this] { ++dismissals_; });
    runEventLoop(std::chrono::milliseconds(50));
    EXPECT_EQ(dismissals_, 0);
    window_.requestActivate();
    ASSERT_TRUE(waitFor([this] { return window_.isActive(); }));
    EXPECT_EQ(dismissals_, 0);
    moveFocusAway();
    EXPECT_EQ(dismissals_, 1);
}

TEST_F(FocusInputTest, IsDismissedByAPressElsewhere) {
    open();
    press(elsewhere);
    EXPECT_EQ(dismissals_, 1);
}

TEST_F(FocusInputTest, IsNotDismissedByAPressInside) {
    open();
    for (const QPoint place : {inside, QPoint(100, 100), QPoint(299, 399)}) click(place);
    EXPECT_EQ(dismissals_, 0);
}

TEST_F(FocusInputTest, IsDismissedByAPressOnItsShadow) {
    open();
    input_.placeWindow(window_, window_.geometry(), {20, 0, 160, 280});
    click({120, 150});
    EXPECT_EQ(dismissals_, 0);
    press({119, 150});
    EXPECT_EQ(dismissals_, 1);
}

TEST_F(FocusInputTest, IsDismissedOnce) {
    open();
    press(elsewhere);
    press(elsewhere);
    moveFocusAway();
    EXPECT_EQ(dismissals_, 1);
}

TEST_F(FocusInputTest, IsDismissedWhenTheUserLeaves) {
    input_.userLeaves();
    EXPECT_EQ(dismissals_, 0);
    open();
    input_.userLeaves();
    EXPECT_EQ(dismissals_, 1);
    EXPECT_FALSE(input_.takesDismissingPress());
    EXPECT_FALSE(isWatching());
}

TEST_F(FocusInputTest, APressThatIsNotOnTheItemTakesNoClick) {
    open();
    presses_->leaves();
    EXPECT_EQ(dismissals_, 1);
    EXPECT_FALSE(input_.takesDismissingPress());
    EXPECT_FALSE(isWatching());
}

TEST_F(FocusInputTest, TakesTheClickThatTheTrayReportsAtThePress) {
    open();
    press(elsewhere);
    EXPECT_TRUE(input_.takesDismissingPress());
    EXPECT_FALSE(input_.takesDismissingPress());
    EXPECT_FALSE(isWatching());
}

TEST_F(FocusInputTest, TakesTheClickThatTheTrayReportsAtTheRelease) {
    open();
    press(elsewhere);
    runEventLoop(longAfterTheClick); // a person may hold the button for long
    letGo();
    EXPECT_TRUE(input_.takesDismissingPress());
}

TEST_F(FocusInputTest, TakesTheClickWhosePressHasMovedTheFocus) {
    open();
    moveFocusAway();
    press(elsewhere);
    runEventLoop(longAfterTheClick);
    letGo();
    EXPECT_TRUE(input_.takesDismissingPress());
}

TEST_F(FocusInputTest, TakesTheClickThatIsOnlySeenByTheLostFocus) {
    open();
    moveFocusAway();
    EXPECT_TRUE(input_.takesDismissingPress());
}

TEST_F(FocusInputTest, DoesNotTakeTheNextClick) {
    open();
    click(elsewhere);
    press(elsewhere + QPoint(300, 0));
    EXPECT_FALSE(input_.takesDismissingPress());
}

TEST_F(FocusInputTest, TakesTheDoubleClickWhoseFirstPressHasDismissedIt) {
    open();
    click(elsewhere);
    press(elsewhere + QPoint(1, 0));
    EXPECT_TRUE(input_.takesDismissingPress());
}

TEST_F(FocusInputTest, DoesNotTakeAClickLongAfterTheRelease) {
    open();
    click(elsewhere);
    EXPECT_TRUE(isWatching());
    runEventLoop(longAfterTheClick);
    EXPECT_FALSE(input_.takesDismissingPress());
    EXPECT_FALSE(isWatching());
}

TEST_F(FocusInputTest, DoesNotTakeAClickAfterItWasClosedOtherwise) {
    open();
    close();
    EXPECT_FALSE(input_.takesDismissingPress());
    EXPECT_FALSE(isWatching());
}

TEST_F(FocusInputTest, DoesNotTakeAClickWhileItIsOpen) {
    open();
    EXPECT_FALSE(input_.takesDismissingPress());
    EXPECT_TRUE(isWatching());
}

TEST_F(FocusInputTest, WatchesPressesOnlyWhileItIsOpen) {
    EXPECT_FALSE(isWatching());
    open();
    EXPECT_TRUE(isWatching());
    close();
    EXPECT_FALSE(isWatching());
}

TEST_F(FocusInputTest, ItsDismissalMayOpenItAgain) {
    open();
    input_.release(window_);
    input_.acquire(window_, [this] {
        ++dismissals_;
        input_.release(window_);
        input_.acquire(window_, [this] { ++dismissals_; });
    });
    press(elsewhere);
    EXPECT_EQ(dismissals_, 1);
    press(elsewhere);
    EXPECT_EQ(dismissals_, 2);
}

} // namespace
} // namespace kelvinbar::focus_input_test
