#pragma once

#include "base/Finding.h"

#include <QByteArray>
#include <functional>

namespace kelvinbar {

/// Chooses the window system for the application object that is created during its lifetime: Wayland if it
/// offers layer surfaces. Otherwise X11 comes first, also within a Wayland session, because an ordinary
/// window cannot choose its place on Wayland; and Wayland if there is no X server or it refuses us. A choice
/// of the user, in QT_QPA_PLATFORM or with -platform, stands.
///
/// Qt takes the choice from the environment, which is restored afterwards: it must not reach programs that
/// are started later. Main thread, before other threads exist.
class PlatformChoice {
  public:
    /// `offersLayerShell` tells whether the compositor has layer surfaces that we can use.
    explicit PlatformChoice(const std::function<bool()>& offersLayerShell);
    PlatformChoice(const PlatformChoice&) = delete;
    PlatformChoice& operator=(const PlatformChoice&) = delete;
    ~PlatformChoice();

  private:
    bool isOurs_;
};

/// The window systems of a session.
struct SessionDisplays {
    bool hasXServer = false; ///< which accepts us
    bool hasWayland = false;
    bool hasLayerShell = false; ///< which we can use
};

/// What the environment of this process offers. Asks the X server only if there are no layer surfaces.
SessionDisplays displaysOfSession(const std::function<bool()>& offersLayerShell);

/// How the panel is drawn in a session. `choice` is that of the user in QT_QPA_PLATFORM, empty without one.
/// Pure function.
Finding platformFinding(const QByteArray& choice, const SessionDisplays& displays);

/// Qt's name of the platform for a session. Empty to leave the choice to Qt. Pure function.
QByteArray platformFor(const SessionDisplays& displays);

} // namespace kelvinbar
