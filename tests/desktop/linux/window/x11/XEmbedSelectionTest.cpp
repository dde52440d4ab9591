#include "desktop/linux/window/x11/XEmbedSelection.h"

#include "tests/desktop/linux/window/x11/X11Client.h"

#include <gtest/gtest.h>

namespace kelvinbar::xembed_selection_test {

TEST(XEmbedSelection, ATrayIsWhoOwnsItsSelection) {
    const X11Client client;
    EXPECT_FALSE(hasXEmbedTray(client.connection()));
    const xcb_window_t tray = client.makeWindow();
    const xcb_atom_t selection = client.atom("_NET_SYSTEM_TRAY_S0");
    EXPECT_FALSE(hasXEmbedTray(client.connection())); // known, but without an owner
    xcb_set_selection_owner(client.connection(), tray, selection, XCB_CURRENT_TIME);
    EXPECT_TRUE(hasXEmbedTray(client.connection()));
    xcb_set_selection_owner(client.connection(), XCB_WINDOW_NONE, selection, XCB_CURRENT_TIME);
    EXPECT_FALSE(hasXEmbedTray(client.connection()));
}

} // namespace kelvinbar::xembed_selection_test
