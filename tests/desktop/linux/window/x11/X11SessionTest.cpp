#include "desktop/linux/window/x11/X11Session.h"

#include "tests/desktop/linux/window/x11/X11Client.h"

#include <QByteArray>
#include <algorithm>
#include <string_view>
#include <xcb/shape.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::x11_session_test {

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using Numbers = std::vector<std::uint32_t>;

constexpr std::uint32_t wholeScreenEvents =
    XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;

class X11SessionTest : public testing::Test {
  protected:
    /// A window of the desktop, with a property that reserves space.
    void addBar(std::string_view property, const Numbers& values) {
        const xcb_window_t bar = desktop_.makeWindow();
        desktop_.setNumbers(bar, property, XCB_ATOM_CARDINAL, values);
        windows_.push_back(bar);
        desktop_.setNumbers(desktop_.root(), "_NET_CLIENT_LIST", XCB_ATOM_WINDOW, windows_);
    }

    ~X11SessionTest() override {
        for (const auto* const property : {"_NET_CLIENT_LIST", "_NET_SUPPORTING_WM_CHECK",
                                           "_NET_CURRENT_DESKTOP", "_GTK_WORKAREAS_D0", "_GTK_WORKAREAS_D1"})
            desktop_.removeProperty(desktop_.root(), property);
    }

    X11Client desktop_;
    X11Client program_;
    X11Session session_{program_.connection()};
    std::vector<std::uint32_t> windows_;
};

TEST_F(X11SessionTest, KnowsTheSizeOfTheDesktop) {
    const auto root = ownedReply(xcb_get_geometry_reply(
        desktop_.connection(), xcb_get_geometry(desktop_.connection(), desktop_.root()), nullptr));
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(session_.desktopSize(), QSize(root->width, root->height));
}

TEST_F(X11SessionTest, IsCompositedWhileACompositorRuns) {
    EXPECT_FALSE(session_.isComposited());
    xcb_set_selection_owner(desktop_.connection(), desktop_.makeWindow(), desktop_.atom("_NET_WM_CM_S0"),
                            XCB_CURRENT_TIME);
    desktop_.finish();
    EXPECT_TRUE(session_.isComposited());
    xcb_set_selection_owner(desktop_.connection(), XCB_WINDOW_NONE, desktop_.atom("_NET_WM_CM_S0"),
                            XCB_CURRENT_TIME);
    desktop_.finish();
    EXPECT_FALSE(session_.isComposited());
}

TEST_F(X11SessionTest, KnowsTheWindowManagerThatRuns) {
    EXPECT_EQ(session_.windowManager(), "");
    const xcb_window_t check = desktop_.makeWindow();
    desktop_.setNumbers(check, "_NET_SUPPORTING_WM_CHECK", XCB_ATOM_WINDOW, {check});
    desktop_.setNumbers(desktop_.root(), "_NET_SUPPORTING_WM_CHECK", XCB_ATOM_WINDOW, {check});
    EXPECT_EQ(session_.windowManager(), "unnamed");
    desktop_.setText(check, "_NET_WM_NAME", "wlroots wm");
    EXPECT_EQ(session_.windowManager(), "wlroots wm");
    xcb_destroy_window(desktop_.connection(), check); // the property stays, as after a crash
    desktop_.finish();
    EXPECT_EQ(session_.windowManager(), "");
}

TEST_F(X11SessionTest, HidesAWindowFromTheTaskbar) {
    const xcb_window_t window = program_.makeWindow();
    session_.hideFromTaskbar(window);
    EXPECT_THAT(
        desktop_.numbers(window, "_NET_WM_STATE"),
        ElementsAre(desktop_.atom("_NET_WM_STATE_SKIP_TASKBAR"), desktop_.atom("_NET_WM_STATE_SKIP_PAGER")));
}

TEST_F(X11SessionTest, AsksTheWindowManagerForTheFocusWithTheTimeOfTheEvent) {
    desktop_.listenOnRoot(wholeScreenEvents);
    const xcb_window_t window = program_.makeWindow();
    session_.activate(window, 4711);
    program_.finish();
    const auto messages = desktop_.messages();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].window, window);
    EXPECT_EQ(messages[0].type, desktop_.atom("_NET_ACTIVE_WINDOW"));
    EXPECT_EQ(messages[0].data.data32[0], 1U); // an application, not a taskbar
    EXPECT_EQ(messages[0].data.data32[1], 4711U);
}

TEST_F(X11SessionTest, EndsTheFeedbackOfALauncher) {
    desktop_.listenOnRoot(wholeScreenEvents);
    session_.endStartupFeedback("launcher-17 \"x\\y\"_TIME99");
    program_.finish();
    QByteArray text;
    const auto messages = desktop_.messages();
    ASSERT_FALSE(messages.empty());
    for (std::size_t index = 0; index < messages.size(); ++index) {
        const bool isFirst = index == 0;
        EXPECT_EQ(messages[index].type,
                  desktop_.atom(isFirst ? "_NET_STARTUP_INFO_BEGIN" : "_NET_STARTUP_INFO"));
        text.append(reinterpret_cast<const char*>(messages[index].data.data8), 20);
    }
    EXPECT_EQ(QByteArray(text.constData()), "remove: ID=\"launcher-17 \\\"x\\\\y\\\"_TIME99\"");
    EXPECT_EQ(text.back(), '\0');
}

TEST_F(X11SessionTest, TheFeedbackEndsWithAZeroAlsoIfTheLastPieceIsFull) {
    desktop_.listenOnRoot(wholeScreenEvents);
    session_.endStartupFeedback("1234567"); // 20 characters with the rest of the message
    program_.finish();
    EXPECT_EQ(desktop_.messages().size(), 2U);
}

TEST_F(X11SessionTest, WithoutAnIdThereIsNoFeedbackToEnd) {
    desktop_.listenOnRoot(wholeScreenEvents);
    session_.endStartupFeedback({});
    program_.finish();
    EXPECT_TRUE(desktop_.messages().empty());
}

TEST_F(X11SessionTest, LimitsThePartOfAWindowThatTakesThePointer) {
    const xcb_window_t window = program_.makeWindow();
    session_.setInputArea(window, {24, 20, 100, 50});
    const auto input = ownedReply(xcb_shape_get_rectangles_reply(
        desktop_.connection(), xcb_shape_get_rectangles(desktop_.connection(), window, XCB_SHAPE_SK_INPUT),
        nullptr));
    ASSERT_NE(input, nullptr);
    ASSERT_EQ(xcb_shape_get_rectangles_rectangles_length(input.get()), 1);
    const xcb_rectangle_t area = *xcb_shape_get_rectangles_rectangles(input.get());
    EXPECT_EQ(QRect(area.x, area.y, area.width, area.height), QRect(24, 20, 100, 50));
}

TEST_F(X11SessionTest, ReadsTheSpaceThatBarsReserve) {
    EXPECT_TRUE(session_.struts().empty());
    addBar("_NET_WM_STRUT_PARTIAL", {0, 0, 28, 0, 0, 0, 0, 0, 0, 639, 0, 0});
    addBar("_NET_WM_STRUT_PARTIAL", {40, 0, 0, 30, 100, 479, 0, 0, 0, 0, 320, 639});
    EXPECT_THAT(session_.struts(),
                ElementsAre(Strut{.edge = Qt::TopEdge, .depth = 28, .first = 0, .last = 639},
                            Strut{.edge = Qt::LeftEdge, .depth = 40, .first = 100, .last = 479},
                            Strut{.edge = Qt::BottomEdge, .depth = 30, .first = 320, .last = 639}));
}

TEST_F(X11SessionTest, TheOlderStrutReachesAlongTheWholeEdge) {
    addBar("_NET_WM_STRUT", {0, 0, 0, 24});
    const QSize size = session_.desktopSize();
    EXPECT_THAT(
        session_.struts(),
        ElementsAre(Strut{.edge = Qt::BottomEdge, .depth = 24, .first = 0, .last = size.width() - 1}));
}

TEST_F(X11SessionTest, IgnoresMalformedStrutsAndWindowsThatAreGone) {
    addBar("_NET_WM_STRUT_PARTIAL", {0, 0, 28});
    addBar("_NET_WM_STRUT", {1, 2, 3, 4, 5});
    windows_.push_back(0x1FFFFFF);
    addBar("_NET_WM_STRUT_PARTIAL", {0, 0, 28, 0, 0, 0, 0, 0, 0, 639, 0, 0});
    EXPECT_EQ(session_.struts().size(), 1U);
}

TEST_F(X11SessionTest, ReadsTheWorkAreasOfTheCurrentDesktop) {
    EXPECT_TRUE(session_.workAreas().isEmpty());
    desktop_.setNumbers(desktop_.root(), "_GTK_WORKAREAS_D0", XCB_ATOM_CARDINAL, {0, 27, 640, 453});
    desktop_.setNumbers(desktop_.root(), "_GTK_WORKAREAS_D1", XCB_ATOM_CARDINAL,
                        {0, 30, 640, 450, 640, 0, 800, 600, 7});
    EXPECT_EQ(session_.workAreas(), QList<QRect>({{0, 27, 640, 453}}));
    desktop_.setNumbers(desktop_.root(), "_NET_CURRENT_DESKTOP", XCB_ATOM_CARDINAL, {1});
    EXPECT_EQ(session_.workAreas(), QList<QRect>({{0, 30, 640, 450}, {640, 0, 800, 600}}));
}

} // namespace
} // namespace kelvinbar::x11_session_test
