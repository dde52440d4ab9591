#include "desktop/qt/QtPopover.h"

#include "desktop/qt/QtScreens.h"
#include "shell/StatusItem.h"
#include "tests/desktop/EventLoop.h"
#include "tests/fakes/RecordingLog.h"

#include <QAnimationDriver>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMargins>
#include <QScreen>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::qt_popover_test {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

class FakeButton final : public StatusItemButton {
  public:
    void setImageLeftOfTitle(const StatusImage& /*image*/) override {}

    void setTitle(const StatusTitle& /*title*/) override {}

    void setToolTip(const std::string& /*text*/) override {}

    void setAction(std::function<void()> /*action*/) override {}

    [[nodiscard]] std::optional<Rect> frameOnScreen() const override { return frame; }

    [[nodiscard]] std::optional<Rect> visibleFrameOfScreen() const override { return std::nullopt; }

    std::optional<Rect> frame;
};

/// A window that counts how often it is exposed.
class PlainWindow final : public QWindow {
  public:
    int exposures = 0;

  protected:
    void exposeEvent(QExposeEvent* /*event*/) override {
        if (isExposed()) ++exposures;
    }
};

/// Content with an empty window.
class PlainContent final : public QtPopoverContent {
  public:
    void setViewSize(Size /*size*/) override {}

    void setViewNeedsLayout() override {}

    [[nodiscard]] QWindow* window() const override { return window_.get(); }

    QWindow* ensureWindow() override {
        if (canMakeWindow && window_ == nullptr) window_ = std::make_unique<PlainWindow>();
        return window_.get();
    }

    [[nodiscard]] int exposures() const { return window_ == nullptr ? 0 : window_->exposures; }

    void setFrame(bool isRounded, const QMargins& shadowRoom) override {
        isRoundedNow = isRounded;
        room = shadowRoom;
    }

    bool canMakeWindow = true;
    bool isRoundedNow = false;
    QMargins room;

  private:
    std::unique_ptr<PlainWindow> window_;
};

/// An input that the test dismisses.
class FakeInput final : public PopoverInput {
  public:
    PopoverLook look() const override { return currentLook; }

    bool placesWindow() const override { return canPlace; }

    void prepare(QWindow& window) override {
        ++preparations;
        window.setFlags(Qt::FramelessWindowHint);
    }

    void placeWindow(QWindow& window, const QRect& frame, const QRect& placedArea) override {
        PopoverInput::placeWindow(window, frame, placedArea);
        area = placedArea;
    }

    void acquire(QWindow& window, std::function<void()> onDismissed) override {
        wasExposed = window.isExposed();
        ++acquisitions;
        dismiss = std::move(onDismissed);
    }

    void release(QWindow& window) override {
        wasVisibleAtRelease = window.isVisible();
        ++releases;
    }

    PopoverLook currentLook = PopoverLook::plain;
    bool canPlace = true;
    QRect area;
    int preparations = 0;
    int acquisitions = 0;
    int releases = 0;
    bool wasExposed = false;
    bool wasVisibleAtRelease = false;
    std::function<void()> dismiss;
};

class QtPopoverTest : public testing::Test {
  protected:
    QtPopoverTest() {
        auto content = std::make_unique<PlainContent>();
        content_ = content.get();
        popover_.setContent(std::move(content));
        popover_.setContentSize({200, 300});
        popover_.setTransient(true);
        popover_.setDidCloseHandler([this] { ++closings_; });
        button_.frame = Rect{390, 0, 20, 20};
    }

    QWindow& window() { return *content_->window(); }

    void show() {
        const int before = content_->exposures();
        popover_.show(button_, PopoverEdge::minY);
        ASSERT_TRUE(popover_.isShown());
        ASSERT_NE(content_->window(), nullptr);
        waitForExposureAfter(before);
    }

    void waitForExposureAfter(int count) {
        ASSERT_TRUE(waitFor([&] { return content_->exposures() > count; }));
    }

    void pressKey(Qt::Key key) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QCoreApplication::sendEvent(&window(), &event);
    }

    FakeInput input_;
    QtScreens screens_;
    fakes::RecordingLog recording_{"panel=info"};
    QtPopover popover_{input_, screens_, recording_.log};
    PlainContent* content_ = nullptr;
    FakeButton button_;
    int closings_ = 0;
};

QRect screenFrame() { return QGuiApplication::primaryScreen()->availableGeometry(); }

TEST_F(QtPopoverTest, IsBelowItsButtonAtTheTopOfTheScreen) {
    EXPECT_FALSE(content_->hasWindow());
    show();
    EXPECT_TRUE(content_->hasWindow());
    EXPECT_EQ(window().geometry(), QRect(300, 20, 200, 300));
    EXPECT_TRUE(window().isVisible());
    EXPECT_TRUE(waitFor([&] { return window().isExposed(); }));
}

TEST_F(QtPopoverTest, LogsWhereItOpensAndThatItCloses) {
    show();
    popover_.performClose();
    popover_.performClose();
    EXPECT_EQ(recording_.lines(),
              std::vector<std::string>({"kelvinbar: panel info: opened at 300, 20, size 200 x 300",
                                        "kelvinbar: panel info: closed"}));
}

TEST_F(QtPopoverTest, IsAboveItsButtonAtTheBottomOfTheScreen) {
    const int top = screenFrame().y() + screenFrame().height() - 20;
    button_.frame = Rect{390, static_cast<double>(top), 20, 20};
    show();
    EXPECT_EQ(window().geometry(), QRect(300, top - 300, 200, 300));
}

TEST_F(QtPopoverTest, IsInTheTopRightCornerForAButtonThatIsNowhere) {
    button_.frame = std::nullopt;
    show();
    const QRect screen = screenFrame();
    EXPECT_EQ(window().geometry(), QRect(screen.x() + screen.width() - 200, screen.y(), 200, 300));
}

TEST_F(QtPopoverTest, PreparesItsWindowBeforeEachShowing) {
    show();
    EXPECT_EQ(input_.preparations, 1);
    popover_.performClose();
    show();
    EXPECT_EQ(input_.preparations, 2);
}

TEST_F(QtPopoverTest, TakesTheInputOncePerOpeningWhenItIsOnTheScreen) {
    show();
    EXPECT_EQ(input_.acquisitions, 1);
    EXPECT_TRUE(input_.wasExposed);
    QExposeEvent again(QRegion(0, 0, 10, 10));
    QCoreApplication::sendEvent(&window(), &again);
    EXPECT_EQ(input_.acquisitions, 1);
    popover_.performClose();
    show();
    EXPECT_EQ(input_.acquisitions, 2);
}

TEST_F(QtPopoverTest, ReleasesTheInputBeforeItIsHidden) {
    show();
    popover_.performClose();
    EXPECT_EQ(input_.releases, 1);
    EXPECT_TRUE(input_.wasVisibleAtRelease);
}

TEST_F(QtPopoverTest, WithoutACompositorItIsAPlainRectangle) {
    show();
    EXPECT_FALSE(content_->isRoundedNow);
    EXPECT_EQ(content_->room, QMargins());
    EXPECT_EQ(input_.area, QRect(0, 0, 200, 300));
}

TEST_F(QtPopoverTest, HasRoundCornersWhereTheyCanBeTransparent) {
    input_.currentLook = PopoverLook::rounded;
    show();
    EXPECT_TRUE(content_->isRoundedNow);
    EXPECT_EQ(content_->room, QMargins());
}

TEST_F(QtPopoverTest, HasRoomForItsShadowWhereTheVisibleFrameLeavesIt) {
    input_.currentLook = PopoverLook::shadowed;
    show();
    EXPECT_TRUE(content_->isRoundedNow);
    EXPECT_EQ(content_->room, QMargins(24, 20, 24, 24));
    EXPECT_EQ(window().geometry(), QRect(276, 0, 248, 344));
    EXPECT_EQ(input_.area, QRect(24, 20, 200, 300));
}

TEST_F(QtPopoverTest, ItsShadowDoesNotLeaveTheVisibleFrame) {
    input_.currentLook = PopoverLook::shadowed;
    button_.frame = std::nullopt;
    show();
    EXPECT_EQ(content_->room, QMargins(24, 0, 0, 24));
    EXPECT_EQ(window().geometry().right(), screenFrame().right());
}

TEST_F(QtPopoverTest, FindsItsPlaceAnewWhenTheScreensHaveChanged) {
    show();
    button_.frame = Rect{490, 0, 20, 20};
    popover_.updatePlace();
    EXPECT_EQ(window().geometry(), QRect(400, 20, 200, 300));
}

TEST_F(QtPopoverTest, AChangeOfTheScreensDoesNotOpenIt) {
    popover_.updatePlace();
    EXPECT_FALSE(content_->hasWindow());
    show();
    popover_.performClose();
    popover_.updatePlace();
    EXPECT_FALSE(window().isVisible());
}

TEST_F(QtPopoverTest, GrowsUpwardsAboveABarAtTheBottom) {
    const int top = screenFrame().y() + screenFrame().height() - 20;
    button_.frame = Rect{390, static_cast<double>(top), 20, 20};
    popover_.setContentSize({200, 54});
    show();
    content_->setWindowContentSize({200, 400});
    EXPECT_EQ(window().geometry(), QRect(300, top - 400, 200, 400));
}

TEST_F(QtPopoverTest, IsNotShownWithoutContent) {
    QtPopover empty(input_, screens_, recording_.log);
    empty.show(button_, PopoverEdge::minY);
    EXPECT_FALSE(empty.isShown());
    EXPECT_EQ(empty.content(), nullptr);
}

TEST_F(QtPopoverTest, IsNotShownWhenItsWindowCannotBeMade) {
    content_->canMakeWindow = false;
    popover_.show(button_, PopoverEdge::minY);
    EXPECT_FALSE(popover_.isShown());
    EXPECT_FALSE(content_->hasWindow());
    popover_.performClose();
    EXPECT_EQ(closings_, 0);
}

TEST_F(QtPopoverTest, LeavesKeysToItsContent) {
    show();
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Space, Qt::Key_F1}) pressKey(key);
    EXPECT_TRUE(popover_.isShown());
    EXPECT_EQ(closings_, 0);
}

TEST_F(QtPopoverTest, ClosesWhenTheUserDismissesIt) {
    show();
    input_.dismiss();
    EXPECT_FALSE(popover_.isShown());
    EXPECT_FALSE(window().isVisible());
    EXPECT_EQ(closings_, 1);
}

TEST_F(QtPopoverTest, ClosesWhenTheWindowManagerClosesItsWindow) {
    show();
    QWindow& before = window();
    EXPECT_TRUE(window().close()); // otherwise the program could not quit
    EXPECT_FALSE(popover_.isShown());
    EXPECT_NE(window().handle(), nullptr);
    EXPECT_EQ(input_.releases, 1);
    EXPECT_EQ(closings_, 1);
    show();
    EXPECT_EQ(&window(), &before);
    EXPECT_TRUE(popover_.isShown());
}

TEST_F(QtPopoverTest, StaysOpenWhenTheUserDismissesItAndItIsNotTransient) {
    popover_.setTransient(false);
    show();
    input_.dismiss();
    EXPECT_TRUE(popover_.isShown());
    EXPECT_EQ(closings_, 0);
}

TEST_F(QtPopoverTest, ClosesOnce) {
    show();
    popover_.performClose();
    EXPECT_FALSE(popover_.isShown());
    EXPECT_EQ(closings_, 1);
    popover_.performClose();
    input_.dismiss();
    EXPECT_EQ(closings_, 1);
}

TEST_F(QtPopoverTest, DoesNothingWhenClosedBeforeItIsShown) {
    popover_.performClose();
    EXPECT_EQ(closings_, 0);
    EXPECT_FALSE(popover_.isShown());
}

TEST_F(QtPopoverTest, MayBeShownAgain) {
    show();
    popover_.performClose();
    button_.frame = Rect{490, 0, 20, 20};
    show();
    EXPECT_EQ(window().geometry(), QRect(400, 20, 200, 300));
    EXPECT_TRUE(window().isVisible());
    input_.dismiss();
    EXPECT_EQ(closings_, 2);
}

TEST_F(QtPopoverTest, MayBeShownAgainByItsCloseHandler) {
    show();
    const int before = content_->exposures();
    popover_.setDidCloseHandler([this] {
        if (++closings_ == 1) popover_.show(button_, PopoverEdge::minY);
    });
    input_.dismiss();
    EXPECT_TRUE(popover_.isShown());
    EXPECT_TRUE(window().isVisible());
    waitForExposureAfter(before);
    input_.dismiss();
    EXPECT_FALSE(popover_.isShown());
    EXPECT_EQ(closings_, 2);
}

TEST_F(QtPopoverTest, ClosesWithoutAHandler) {
    popover_.setDidCloseHandler(nullptr);
    show();
    input_.dismiss();
    EXPECT_FALSE(popover_.isShown());
}

TEST_F(QtPopoverTest, AnAnimationEndsAtItsSizeAndCompletesOnce) {
    popover_.setContentSize({200, 54});
    show();
    int completions = 0;
    content_->animateWindowContentSize({200, 300}, milliseconds(20), [&] { ++completions; });
    EXPECT_EQ(completions, 0);
    ASSERT_TRUE(waitFor([&] { return completions > 0; }));
    EXPECT_EQ(window().geometry(), QRect(300, 20, 200, 300));
    runEventLoop(milliseconds(50));
    EXPECT_EQ(completions, 1);
}

TEST_F(QtPopoverTest, AnAnimationStaysBetweenItsSizes) {
    popover_.setContentSize({200, 54});
    show();
    bool isBetween = true;
    bool isGrowing = true;
    int last = 54;
    QObject::connect(&window(), &QWindow::heightChanged, [&](int height) {
        isBetween = isBetween && height >= 54 && height <= 300;
        isGrowing = isGrowing && height >= last;
        last = height;
    });
    bool isFinished = false;
    content_->animateWindowContentSize({200, 300}, milliseconds(60), [&] { isFinished = true; });
    ASSERT_TRUE(waitFor([&] { return isFinished; }));
    EXPECT_TRUE(isBetween);
    EXPECT_TRUE(isGrowing);
    EXPECT_EQ(window().height(), 300);
}

/// Makes animations go on by hand, as long as it lives.
class AnimationTime final : public QAnimationDriver {
  public:
    AnimationTime() { install(); }

    AnimationTime(const AnimationTime&) = delete;
    AnimationTime& operator=(const AnimationTime&) = delete;

    ~AnimationTime() override { uninstall(); }

    [[nodiscard]] qint64 elapsed() const override { return elapsed_.count(); }

    void advanceTo(milliseconds elapsed) {
        elapsed_ = elapsed;
        advanceAnimation();
    }

  private:
    milliseconds elapsed_{0};
};

TEST_F(QtPopoverTest, AnAnimationStartsFastAndSlowsDown) {
    popover_.setContentSize({200, 100});
    show();
    AnimationTime time;
    content_->animateWindowContentSize({200, 300}, milliseconds(160), [] {});
    runEventLoop(milliseconds(20)); // in which Qt starts it
    const auto heightAt = [&](int elapsed) {
        time.advanceTo(milliseconds(elapsed));
        return window().height();
    };
    EXPECT_EQ(heightAt(40), 188); // 7/16 of the way in a quarter of the time
    EXPECT_EQ(heightAt(80), 250);
    EXPECT_EQ(heightAt(120), 288);
    EXPECT_EQ(heightAt(160), 300);
}

TEST_F(QtPopoverTest, ANewAnimationReplacesTheOldOne) {
    popover_.setContentSize({200, 54});
    show();
    int olds = 0;
    int news = 0;
    content_->animateWindowContentSize({200, 400}, seconds(5), [&] { ++olds; });
    runEventLoop(milliseconds(20));
    content_->animateWindowContentSize({200, 100}, milliseconds(20), [&] { ++news; });
    ASSERT_TRUE(waitFor([&] { return news > 0; }));
    EXPECT_EQ(window().size(), QSize(200, 100));
    runEventLoop(milliseconds(50));
    EXPECT_EQ(window().size(), QSize(200, 100));
    EXPECT_EQ(news, 1);
    EXPECT_EQ(olds, 0);
}

TEST_F(QtPopoverTest, ACompletionMayStartTheNextAnimation) {
    popover_.setContentSize({200, 54});
    show();
    bool isFinished = false;
    content_->animateWindowContentSize({200, 300}, milliseconds(10), [&] {
        content_->animateWindowContentSize({200, 150}, milliseconds(10), [&] { isFinished = true; });
    });
    ASSERT_TRUE(waitFor([&] { return isFinished; }));
    EXPECT_EQ(window().size(), QSize(200, 150));
}

TEST_F(QtPopoverTest, AWindowThatCannotKeepItsPlaceIsShownAtItsFullSize) {
    input_.canPlace = false;
    popover_.setContentSize({200, 54});
    popover_.show(button_, PopoverEdge::minY);
    EXPECT_FALSE(window().isVisible());
    bool isFinished = false;
    content_->animateWindowContentSize({200, 300}, seconds(5), [&] { isFinished = true; });
    EXPECT_TRUE(isFinished);
    EXPECT_EQ(window().size(), QSize(200, 300));
    EXPECT_TRUE(waitFor([this] { return window().isVisible(); }));
}

TEST_F(QtPopoverTest, AWindowThatIsClosedBeforeItIsShownStaysClosed) {
    input_.canPlace = false;
    popover_.show(button_, PopoverEdge::minY);
    popover_.performClose();
    runEventLoop(milliseconds(20));
    EXPECT_FALSE(window().isVisible());
    EXPECT_EQ(closings_, 1);
}

/// A popover that can be destroyed, over content of its own.
class QtPopoverEndTest : public QtPopoverTest {
  protected:
    QtPopoverEndTest() {
        auto content = std::make_unique<PlainContent>();
        content_ = content.get();
        mortal_->setContent(std::move(content));
        mortal_->setContentSize({200, 300});
        mortal_->setTransient(true);
    }

    void showMortal() {
        mortal_->show(button_, PopoverEdge::minY);
        ASSERT_TRUE(waitFor([&] { return content_->exposures() > 0; }));
    }

    /// A handler that uses what it has captured after it has destroyed the popover.
    std::function<void()> destruction() {
        return [this, witness = witness_] {
            mortal_ = nullptr;
            ++*witness;
        };
    }

    std::unique_ptr<QtPopover> mortal_ = std::make_unique<QtPopover>(input_, screens_, recording_.log);
    std::shared_ptr<int> witness_ = std::make_shared<int>(0);
};

TEST_F(QtPopoverEndTest, MayComeInItsCloseHandler) {
    showMortal();
    mortal_->setDidCloseHandler(destruction());
    mortal_->performClose();
    EXPECT_EQ(*witness_, 1);
    EXPECT_EQ(witness_.use_count(), 1);
}

TEST_F(QtPopoverEndTest, MayComeInItsCloseHandlerAfterAClickOutside) {
    showMortal();
    mortal_->setDidCloseHandler(destruction());
    input_.dismiss();
    EXPECT_EQ(*witness_, 1);
}

TEST_F(QtPopoverEndTest, MayComeAtTheEndOfAnAnimation) {
    showMortal();
    content_->animateWindowContentSize({200, 100}, milliseconds(10), destruction());
    ASSERT_TRUE(waitFor([&] { return *witness_ == 1; }));
    runEventLoop(milliseconds(20));
    EXPECT_EQ(witness_.use_count(), 1);
}

TEST_F(QtPopoverEndTest, MayComeDuringAnAnimation) {
    showMortal();
    content_->animateWindowContentSize({200, 100}, seconds(5), [this] { ++*witness_; });
    runEventLoop(milliseconds(20));
    mortal_ = nullptr;
    runEventLoop(milliseconds(20));
    EXPECT_EQ(*witness_, 0);
}

TEST_F(QtPopoverEndTest, WhileItIsOpenClosesItWithoutCallingTheHandler) {
    mortal_->setDidCloseHandler([this] { ++closings_; });
    showMortal();
    ASSERT_EQ(input_.acquisitions, 1);
    mortal_ = nullptr;
    EXPECT_EQ(input_.releases, 1);
    EXPECT_EQ(closings_, 0);
}

} // namespace
} // namespace kelvinbar::qt_popover_test
