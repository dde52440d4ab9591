#include "desktop/linux/window/x11/X11Presses.h"

#include "tests/desktop/EventLoop.h"
#include "tests/desktop/linux/window/x11/X11Client.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

namespace kelvinbar::x11_presses_test {

namespace {

class X11PressesTest : public testing::Test {
  protected:
    void watch() {
        presses_ = std::make_unique<X11Presses>(X11Presses::Handlers{
            .pressed = [this] { events_ += "press "; }, .released = [this] { events_ += "release "; }});
    }

    void click(std::uint8_t button) {
        user_.button(button, true);
        user_.button(button, false);
    }

    X11Client user_;
    std::unique_ptr<X11Presses> presses_;
    std::string events_;
};

TEST_F(X11PressesTest, ReportsPressesWhereverTheyAre) {
    watch();
    click(XCB_BUTTON_INDEX_1);
    EXPECT_TRUE(waitFor([this] { return events_ == "press release "; })) << events_;
    click(XCB_BUTTON_INDEX_3);
    EXPECT_TRUE(waitFor([this] { return events_ == "press release press release "; })) << events_;
}

TEST_F(X11PressesTest, ReportsPressesWhileAnotherProgramHoldsPointerAndKeyboard) {
    watch();
    const X11Client locker;
    const auto grab = ownedReply(xcb_grab_pointer_reply(
        locker.connection(),
        xcb_grab_pointer(locker.connection(), 0, locker.root(), XCB_EVENT_MASK_BUTTON_PRESS,
                         XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, XCB_WINDOW_NONE, XCB_CURSOR_NONE,
                         XCB_CURRENT_TIME),
        nullptr));
    ASSERT_NE(grab, nullptr);
    EXPECT_EQ(grab->status, XCB_GRAB_STATUS_SUCCESS) << "the watch must not hold the pointer";
    click(XCB_BUTTON_INDEX_1);
    EXPECT_TRUE(waitFor([this] { return events_ == "press release "; })) << events_;
}

TEST_F(X11PressesTest, ATurnOfTheWheelIsNoPress) {
    watch();
    for (std::uint8_t wheel = 4; wheel <= 7; ++wheel) click(wheel);
    click(XCB_BUTTON_INDEX_2);
    EXPECT_TRUE(waitFor([this] { return !events_.empty(); }));
    runEventLoop(std::chrono::milliseconds(50));
    EXPECT_EQ(events_, "press release ");
}

TEST_F(X11PressesTest, ReportsNothingAfterItsEnd) {
    watch();
    presses_ = nullptr;
    click(XCB_BUTTON_INDEX_1);
    runEventLoop(std::chrono::milliseconds(50));
    EXPECT_EQ(events_, "");
}

TEST_F(X11PressesTest, AHandlerMayEndIt) {
    presses_ =
        std::make_unique<X11Presses>(X11Presses::Handlers{.pressed =
                                                              [this] {
                                                                  events_ += "press ";
                                                                  presses_ = nullptr;
                                                              },
                                                          .released = [this] { events_ += "release "; }});
    click(XCB_BUTTON_INDEX_1);
    click(XCB_BUTTON_INDEX_1);
    EXPECT_TRUE(waitFor([this] { return !events_.empty(); }));
    runEventLoop(std::chrono::milliseconds(50));
    EXPECT_EQ(events_, "press ");
}

TEST_F(X11PressesTest, WithoutADisplayNothingIsReported) {
    const QByteArray display = qgetenv("DISPLAY");
    qputenv("DISPLAY", ":999");
    watch();
    qputenv("DISPLAY", display);
    click(XCB_BUTTON_INDEX_1);
    runEventLoop(std::chrono::milliseconds(50));
    EXPECT_EQ(events_, "");
}

} // namespace
} // namespace kelvinbar::x11_presses_test
