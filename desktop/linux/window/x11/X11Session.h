#pragma once

#include "desktop/linux/window/x11/Strut.h"

#include <QByteArray>
#include <QList>
#include <QRect>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>
#include <xcb/xcb.h>

namespace kelvinbar {

/// What the program asks of an X server and its window manager beyond what Qt offers: the manager's hints for
/// a window (Extended Window Manager Hints), and where the desktop's bars are. All coordinates are device
/// pixels of the root window.
///
/// Limits: knows the first screen of the display only, as Qt does. Main thread. Source of the names and
/// layouts: the Extended Window Manager Hints and the startup notification protocol of freedesktop.org.
class X11Session {
  public:
    /// The session of the application object. Null if the program draws on something else, such as Wayland.
    static std::unique_ptr<X11Session> ofApplication();

    /// The connection must outlive the object.
    explicit X11Session(xcb_connection_t* connection);

    /// The name of the window manager. Empty without one; then a window has to take the focus by itself.
    [[nodiscard]] QByteArray windowManager() const;

    /// Whether shadows and transparent corners are drawn as such.
    [[nodiscard]] bool isComposited() const;

    /// Removes the window from taskbar and pager. Call before each time it is shown, since the window manager
    /// forgets it. Returns when the server knows.
    void hideFromTaskbar(xcb_window_t window) const;

    /// Asks the window manager to give the window the focus. `time` is the server's time of the user's event
    /// that is the reason.
    void activate(xcb_window_t window, std::uint32_t time) const;

    /// Ends the feedback, such as a busy cursor, that a launcher shows for a program start. Does nothing for
    /// an empty id.
    void endStartupFeedback(const QByteArray& startupId) const;

    /// Limits the part of the window that takes the pointer. Elsewhere the pointer reaches what is below.
    void setInputArea(xcb_window_t window, const QRect& area) const;

    /// The space that bars reserve at the edges of the desktop.
    [[nodiscard]] Struts struts() const;

    /// The parts of the monitors that nothing covers, by shells whose own bar is no window. May be empty.
    [[nodiscard]] QList<QRect> workAreas() const;

    [[nodiscard]] QSize desktopSize() const;

  private:
    enum Atom : std::size_t {
        netActiveWindow,
        netClientList,
        netCurrentDesktop,
        netStartupInfo,
        netStartupInfoBegin,
        netSupportingWmCheck,
        netWmName,
        netWmState,
        netWmStateSkipPager,
        netWmStateSkipTaskbar,
        netWmStrut,
        netWmStrutPartial,
        compositorSelection,
        atomCount,
    };

    [[nodiscard]] std::vector<std::uint32_t> longs(xcb_window_t window, xcb_atom_t property) const;
    [[nodiscard]] std::vector<std::uint32_t> received(xcb_get_property_cookie_t request) const;
    [[nodiscard]] xcb_get_property_cookie_t request(xcb_window_t window, xcb_atom_t property) const;
    [[nodiscard]] xcb_atom_t interned(const QByteArray& name) const;
    void tellWindowManager(xcb_window_t window, xcb_atom_t type,
                           const std::array<std::uint32_t, 5>& data) const;

    xcb_connection_t* connection_;
    const xcb_screen_t* screen_;
    std::array<xcb_atom_t, atomCount> atoms_{};
};

} // namespace kelvinbar
