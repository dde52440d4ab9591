#pragma once

#include <QString>

namespace kelvinbar {

/// What entitles our window to the keyboard focus: the token that the host or the launcher passed on, or the
/// X server's time of the user's event. Both may be missing.
struct FocusRight {
    QString activationToken;
    uint timestamp = 0; ///< 0 if unknown
};

} // namespace kelvinbar
