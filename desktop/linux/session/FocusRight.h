#pragma once

#include <QString>

namespace kelvinbar {

/// What entitles a window of the program to the keyboard focus: the proof that the user has just clicked or
/// chosen something. Window managers refuse the focus to windows that open on their own.
struct FocusRight {
    QString activationToken; ///< of xdg-activation or startup notification, as the host gave it; may be empty
    uint timestamp = 0;      ///< the display server's time of the user's event, in ms; 0 if unknown
};

} // namespace kelvinbar
