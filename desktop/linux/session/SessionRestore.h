#pragma once

class QGuiApplication;

namespace kelvinbar {

/// Tells the session manager not to start the program again when it restores a session: that is what the
/// autostart entry is for, and a second start would open the panel. Main thread.
void declineSessionRestore(const QGuiApplication& application);

} // namespace kelvinbar
