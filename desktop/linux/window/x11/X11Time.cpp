#include "desktop/linux/window/x11/X11Time.h"

#include "desktop/linux/window/x11/X11Connection.h"
#include "desktop/linux/window/x11/X11Reply.h"

namespace kelvinbar {

/// The server tells its time in events only, such as that of a changed property.
std::uint32_t x11Time() {
    const X11Connection connection = connectToX11();
    if (connection == nullptr) return 0;
    const xcb_window_t window = xcb_generate_id(connection.get());
    constexpr std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, window, firstScreen(connection.get()).root, 0,
                      0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &events);
    xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8,
                        0, nullptr);
    xcb_flush(connection.get());
    while (const auto event = ownedReply(xcb_wait_for_event(connection.get()))) {
        if (event->response_type == XCB_PROPERTY_NOTIFY)
            return reinterpret_cast<const xcb_property_notify_event_t&>(*event).time;
    }
    return 0; // the connection is lost
}

} // namespace kelvinbar
