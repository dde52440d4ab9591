#pragma once

#include <xcb/xcb.h>

namespace kelvinbar {

/// Whether a tray of the XEmbed protocol runs on the first screen: somebody owns the selection
/// _NET_SYSTEM_TRAY_S0 (System Tray Protocol of freedesktop.org). Waits for the X server.
bool hasXEmbedTray(xcb_connection_t* connection);

} // namespace kelvinbar
