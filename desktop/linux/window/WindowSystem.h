#pragma once

#include "desktop/linux/window/FocusInput.h"

namespace kelvinbar {

class X11Session;

/// The window system behind a popover's input: X11, which tells of presses elsewhere, or any other, such as
/// Wayland, where only the focus counts. `x11` is null on the latter and must outlive the result.
FocusInput::WindowSystem popoverWindowSystem(const X11Session* x11);

/// Asks a Wayland compositor for the focus. Qt takes the token of the request from the environment, where it
/// is only during the call.
void activateWithToken(QWindow& window, const FocusRight& right);

/// The X server's time by which a window asks for the focus: that of the user's event, if it is one of the
/// last minute, else `now`. Some hosts give the time of another clock. Pure function; any thread.
uint focusTime(const FocusRight& right, uint now);

} // namespace kelvinbar
