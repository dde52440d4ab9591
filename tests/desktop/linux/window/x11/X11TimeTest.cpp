#include "desktop/linux/window/x11/X11Time.h"

#include "tests/desktop/linux/window/x11/X11Client.h"

#include <QByteArray>

#include <gtest/gtest.h>

namespace kelvinbar::x11_time_test {

TEST(X11Time, IsTheClockOfTheServersEvents) {
    const X11Client client;
    const std::uint32_t before = x11Time();
    client.listenOnRoot(XCB_EVENT_MASK_PROPERTY_CHANGE);
    client.setText(client.root(), "KELVINBAR_TEST", "x");
    const auto event = ownedReply(xcb_poll_for_event(client.connection()));
    ASSERT_NE(event, nullptr);
    const std::uint32_t stamp = reinterpret_cast<const xcb_property_notify_event_t&>(*event).time;
    EXPECT_LE(before, stamp);
    EXPECT_LE(stamp, x11Time());
    EXPECT_LT(stamp - before, 60'000U);
}

TEST(X11Time, IsUnknownWithoutADisplay) {
    const QByteArray display = qgetenv("DISPLAY");
    qputenv("DISPLAY", ":999");
    EXPECT_EQ(x11Time(), 0U);
    qputenv("DISPLAY", display);
}

} // namespace kelvinbar::x11_time_test
