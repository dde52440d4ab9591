#include "desktop/linux/window/x11/XEmbedSelection.h"

#include "desktop/linux/window/x11/X11Reply.h"

#include <string_view>

namespace kelvinbar {

bool hasXEmbedTray(xcb_connection_t* connection) {
    constexpr std::string_view name = "_NET_SYSTEM_TRAY_S0";
    constexpr std::uint8_t onlyIfExists = 1;
    const auto length = static_cast<std::uint16_t>(name.size());
    const auto atom = ownedReply(xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, onlyIfExists, length, name.data()), nullptr));
    if (atom == nullptr || atom->atom == XCB_ATOM_NONE) return false;
    const auto owner = ownedReply(
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, atom->atom), nullptr));
    return owner != nullptr && owner->owner != XCB_WINDOW_NONE;
}

} // namespace kelvinbar
