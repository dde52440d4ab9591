#include "desktop/qt/QtPopover.h"

#include "desktop/linux/GrabbedInput.h"
#include "shell/StatusItem.h"
#include "tests/desktop/EventLoop.h"
#include "tests/fakes/RecordingLog.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScreen>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar {

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

    bool canMakeWindow = true;

  private:
    std::unique_ptr<PlainWindow> window_;
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

    void sendButton(QEvent::Type type, QPointF position) {
        QMouseEvent event(type, position, position + window().position(), Qt::LeftButton,
                          type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&window(), &event);
    }

    void click(QPointF position) {
        sendButton(QEvent::MouseButtonPress, position);
        sendButton(QEvent::MouseButtonRelease, position);
    }

    void pressKey(Qt::Key key) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QCoreApplication::sendEvent(&window(), &event);
    }

    GrabbedInput input_;
    fakes::RecordingLog recording_{"panel=info"};
    QtPopover popover_{input_, recording_.log};
    PlainContent* content_ = nullptr;
    FakeButton button_;
    int closings_ = 0;
};

QRect screenFrame() { return QGuiApplication::primaryScreen()->availableGeometry(); }

} // namespace

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

TEST_F(QtPopoverTest, HasNoFrame) {
    show();
    EXPECT_TRUE(window().flags().testFlag(Qt::FramelessWindowHint));
    EXPECT_TRUE(window().flags().testFlag(Qt::WindowStaysOnTopHint));
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
    QtPopover empty(input_, recording_.log);
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

TEST_F(QtPopoverTest, ClosesOnAClickOutside) {
    int expected = 0;
    for (const QPointF position : {QPointF(-1, 10), QPointF(10, -1), QPointF(200, 10), QPointF(10, 300)}) {
        show();
        click(position);
        EXPECT_FALSE(popover_.isShown()) << position.x() << ", " << position.y();
        EXPECT_FALSE(window().isVisible());
        EXPECT_EQ(closings_, ++expected);
    }
}

TEST_F(QtPopoverTest, HoldsThePointerUntilTheButtonThatWasPressedOutsideIsLetGo) {
    show();
    sendButton(QEvent::MouseButtonPress, {-1, 10});
    EXPECT_TRUE(popover_.isShown());
    sendButton(QEvent::MouseButtonRelease, {100, 150});
    EXPECT_FALSE(popover_.isShown());
    EXPECT_EQ(closings_, 1);
}

TEST_F(QtPopoverTest, StaysOpenWhenAButtonThatWasPressedInsideIsLetGoOutside) {
    show();
    sendButton(QEvent::MouseButtonPress, {100, 150});
    sendButton(QEvent::MouseButtonRelease, {-1, 10});
    EXPECT_TRUE(popover_.isShown());
}

TEST_F(QtPopoverTest, StaysOpenOnAClickInside) {
    show();
    for (const QPointF position : {QPointF(0, 0), QPointF(199, 299), QPointF(100, 150)}) click(position);
    EXPECT_TRUE(popover_.isShown());
    EXPECT_TRUE(window().isVisible());
    EXPECT_EQ(closings_, 0);
}

TEST_F(QtPopoverTest, StaysOpenOnAClickOutsideWhenItIsNotTransient) {
    popover_.setTransient(false);
    show();
    click({-10, -10});
    EXPECT_TRUE(popover_.isShown());
    EXPECT_EQ(closings_, 0);
}

TEST_F(QtPopoverTest, ClosesOnce) {
    show();
    popover_.performClose();
    EXPECT_FALSE(popover_.isShown());
    EXPECT_EQ(closings_, 1);
    popover_.performClose();
    click({-1, -1});
    click({-10, -10});
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
    click({-1, -1});
    EXPECT_EQ(closings_, 2);
}

TEST_F(QtPopoverTest, MayBeShownAgainByItsCloseHandler) {
    show();
    const int before = content_->exposures();
    popover_.setDidCloseHandler([this] {
        if (++closings_ == 1) popover_.show(button_, PopoverEdge::minY);
    });
    click({-1, -1});
    EXPECT_TRUE(popover_.isShown());
    EXPECT_TRUE(window().isVisible());
    waitForExposureAfter(before);
    click({-1, -1});
    EXPECT_FALSE(popover_.isShown());
    EXPECT_EQ(closings_, 2);
}

TEST_F(QtPopoverTest, ClosesWithoutAHandler) {
    popover_.setDidCloseHandler(nullptr);
    show();
    click({-1, -1});
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

    std::unique_ptr<QtPopover> mortal_ = std::make_unique<QtPopover>(input_, recording_.log);
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
    click({-1, -1});
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

/// Counts what it is asked for.
class CountingInput final : public PopoverInput {
  public:
    int holds = 0;

    void prepare(QWindow& /*window*/) override {}

    void acquire(QWindow& /*window*/, std::function<void()> /*onDismissed*/) override { ++holds; }

    void release(QWindow& /*window*/) override { --holds; }
};

TEST_F(QtPopoverEndTest, WhileItIsOpenClosesItWithoutCallingTheHandler) {
    CountingInput input;
    mortal_ = std::make_unique<QtPopover>(input, recording_.log);
    auto content = std::make_unique<PlainContent>();
    content_ = content.get();
    mortal_->setContent(std::move(content));
    mortal_->setContentSize({200, 300});
    mortal_->setDidCloseHandler([this] { ++closings_; });
    showMortal();
    ASSERT_EQ(input.holds, 1);
    mortal_ = nullptr;
    EXPECT_EQ(input.holds, 0);
    EXPECT_EQ(closings_, 0);
}

} // namespace kelvinbar
