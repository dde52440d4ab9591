#include "desktop/linux/window/LayerWindowSystem.h"

#include "tests/desktop/EventLoop.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QWindow>
#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::layer_window_system_test {

namespace {

constexpr QRect screen(100, 50, 1000, 800);
constexpr Qt::Edges allEdges = Qt::LeftEdge | Qt::TopEdge | Qt::RightEdge | Qt::BottomEdge;

/// Longer than a compositor may take to give the focus.
constexpr std::chrono::milliseconds longAfterOpening{500};

LayerPlace at(Qt::Edges edges, const QMargins& margins) {
    return {.edges = edges, .margins = margins, .screen = nullptr};
}

/// Layer surfaces that are only noted.
class LayerWindowSystemTest : public testing::Test {
  protected:
    struct Surface {
        LayerLevel level = LayerLevel::aboveWindows;
        LayerPlace place;
        LayerKeyboard keyboard = LayerKeyboard::none;
    };

    LayerShell shell() {
        return {
            .adopt = [this](QWindow& window, LayerLevel level) { surfaces_[&window].level = level; },
            .place = [this](QWindow& window, const LayerPlace& place) { surfaces_[&window].place = place; },
            .setKeyboard = [this](QWindow& window,
                                  LayerKeyboard keyboard) { surfaces_[&window].keyboard = keyboard; }};
    }

    /// Shows the popover as FocusInput does, without giving it the focus.
    void open() {
        system_.prepare(window_);
        system_.placeWindow(window_, {10, 10, 200, 300}, {0, 0, 200, 300});
        window_.show();
        watch_ = system_.watchPresses({.pressed = {}, .released = {}, .leaves = [this] {
                                           ++leavings_;
                                           onLeaving_();
                                       }});
        system_.activate(window_, {});
    }

    void close() {
        window_.hide();
        watch_ = nullptr;
    }

    Surface& surface() { return surfaces_[&window_]; }

    std::vector<QWindow*> backdrops() {
        std::vector<QWindow*> found;
        const auto windows = QGuiApplication::allWindows();
        for (QWindow* const window : windows) {
            if (window->isVisible() && surfaces_.contains(window) && window != &window_)
                found.push_back(window);
        }
        return found;
    }

    std::map<const QWindow*, Surface> surfaces_;
    QWindow window_;
    FocusInput::WindowSystem system_ = layerWindowSystem(shell(), LayerOutput::inUse);
    std::shared_ptr<void> watch_;
    int leavings_ = 0;
    std::function<void()> onLeaving_;
};

/// Where the compositor gives the focus to another window.
class LayerWindowWithoutFocusTest : public LayerWindowSystemTest {
  protected:
    void open() {
        LayerWindowSystemTest::open();
        other_.show();
        other_.requestActivate();
        ASSERT_TRUE(waitFor([this] { return other_.isActive(); }));
    }

    void openUntilItTakesTheInput() {
        open();
        ASSERT_TRUE(waitFor([this] { return !backdrops().empty(); }));
    }

    QWindow other_;
};

void pressOn(QWindow& window) {
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(5, 5), QPointF(5, 5), Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(&window, &press);
}

TEST(LayerPlaceOf, IsTheNearestCorner) {
    EXPECT_EQ(layerPlace({900, 50, 200, 300}, screen), at(Qt::RightEdge | Qt::TopEdge, {}));
    EXPECT_EQ(layerPlace({100, 50, 200, 300}, screen), at(Qt::LeftEdge | Qt::TopEdge, {}));
    EXPECT_EQ(layerPlace({900, 550, 200, 300}, screen), at(Qt::RightEdge | Qt::BottomEdge, {}));
    EXPECT_EQ(layerPlace({100, 550, 200, 300}, screen), at(Qt::LeftEdge | Qt::BottomEdge, {}));
}

TEST(LayerPlaceOf, HasTheDistancesFromItsEdges) {
    EXPECT_EQ(layerPlace({300, 150, 200, 300}, screen),
              at(Qt::LeftEdge | Qt::TopEdge, QMargins(200, 100, 0, 0)));
    EXPECT_EQ(layerPlace({700, 450, 200, 300}, screen),
              at(Qt::RightEdge | Qt::BottomEdge, QMargins(0, 0, 200, 100)));
}

TEST(LayerPlaceOf, LeavesTheDistanceFromABarToTheCompositor) {
    EXPECT_EQ(layerPlace({300, 50 + 64, 200, 300}, screen).margins.top(), 0);
    EXPECT_EQ(layerPlace({300, 50 + 65, 200, 300}, screen).margins.top(), 65);
}

TEST(LayerPlaceOf, DoesNotPushALargeFrameOutOfTheScreen) {
    EXPECT_EQ(layerPlace({100, 50, 1200, 900}, screen).margins, QMargins());
}

TEST_F(LayerWindowSystemTest, IsAboveAllAndGetsTheKeyboardOnDemand) {
    system_.prepare(window_);
    EXPECT_EQ(surface().level, LayerLevel::aboveAll);
    EXPECT_EQ(surface().keyboard, LayerKeyboard::onDemand);
}

TEST_F(LayerWindowSystemTest, IsWhereTheFrameIsOnTheOutputInUse) {
    const QRect output = QGuiApplication::primaryScreen()->geometry();
    QRect frame(0, 0, 200, 300);
    frame.moveBottomRight(output.bottomRight());
    system_.placeWindow(window_, frame, {10, 10, 180, 280});
    EXPECT_EQ(surface().place, at(Qt::RightEdge | Qt::BottomEdge, {}));
    EXPECT_EQ(window_.size(), QSize(200, 300));
    EXPECT_EQ(window_.mask(), QRegion(10, 10, 180, 280));
}

TEST_F(LayerWindowSystemTest, IsOnTheOutputOfItsPlace) {
    system_ = layerWindowSystem(shell(), LayerOutput::ofPlace);
    system_.placeWindow(window_, {10, 10, 200, 300}, {0, 0, 200, 300});
    EXPECT_EQ(surface().place.screen, QGuiApplication::primaryScreen());
}

TEST_F(LayerWindowSystemTest, LeavesTheKeyboardOnDemandWhenItGetsTheFocus) {
    open();
    ASSERT_TRUE(waitFor([this] { return window_.isActive(); }));
    runEventLoop(longAfterOpening);
    EXPECT_EQ(surface().keyboard, LayerKeyboard::onDemand);
}

TEST_F(LayerWindowSystemTest, IsDismissedByAPressOnTheBareDesktopThatDoesNotMoveTheFocus) {
    open();
    ASSERT_TRUE(waitFor([this] { return !backdrops().empty(); }));
    QWindow* const backdrop = backdrops().front();
    EXPECT_EQ(surfaces_[backdrop].level, LayerLevel::belowWindows);
    EXPECT_EQ(surfaces_[backdrop].keyboard, LayerKeyboard::none);
    onLeaving_ = [this] { close(); };
    pressOn(*backdrop);
    EXPECT_EQ(leavings_, 1);
    EXPECT_TRUE(backdrops().empty());
}

TEST_F(LayerWindowWithoutFocusTest, TakesTheKeyboardWhenItGetsNoFocus) {
    open();
    EXPECT_EQ(surface().keyboard, LayerKeyboard::onDemand);
    EXPECT_TRUE(waitFor([this] { return surface().keyboard == LayerKeyboard::exclusive; }));
    close();
    open();
    EXPECT_EQ(surface().keyboard, LayerKeyboard::onDemand);
}

TEST_F(LayerWindowWithoutFocusTest, ThenCoversTheOutputsBelowIt) {
    openUntilItTakesTheInput();
    EXPECT_EQ(backdrops().size(), static_cast<std::size_t>(QGuiApplication::screens().size()));
    QWindow* const backdrop = backdrops().front();
    const Surface& below = surfaces_[backdrop];
    EXPECT_EQ(below.level, LayerLevel::aboveWindows);
    EXPECT_EQ(below.keyboard, LayerKeyboard::none);
    EXPECT_EQ(below.place.edges, allEdges);
    EXPECT_EQ(below.place.screen, backdrop->screen());
    close();
    EXPECT_TRUE(backdrops().empty());
}

TEST_F(LayerWindowWithoutFocusTest, ThenAPressElsewhereDismissesIt) {
    openUntilItTakesTheInput();
    onLeaving_ = [this] { close(); };
    pressOn(*backdrops().front());
    EXPECT_EQ(leavings_, 1);
    EXPECT_TRUE(backdrops().empty());
}

TEST_F(LayerWindowWithoutFocusTest, TakesNothingAfterItWasClosed) {
    open();
    window_.hide(); // the tray may still have to report a press
    runEventLoop(longAfterOpening);
    EXPECT_EQ(surface().keyboard, LayerKeyboard::onDemand);
    EXPECT_TRUE(backdrops().empty());
}

} // namespace
} // namespace kelvinbar::layer_window_system_test
