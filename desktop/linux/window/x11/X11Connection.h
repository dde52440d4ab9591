#pragma once

#include <memory>
#include <utility>
#include <xcb/xcb.h>

namespace kelvinbar {

struct X11Disconnecter {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};

/// A connection of our own to the X server, apart from the toolkit's, for what has to receive events.
using X11Connection = std::unique_ptr<xcb_connection_t, X11Disconnecter>;

/// Connects to the display of the environment. Null if it does not answer.
inline X11Connection connectToX11() {
    X11Connection connection(xcb_connect(nullptr, nullptr));
    return xcb_connection_has_error(connection.get()) == 0 ? std::move(connection) : nullptr;
}

inline const xcb_screen_t& firstScreen(xcb_connection_t* connection) {
    return *xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
}

} // namespace kelvinbar
