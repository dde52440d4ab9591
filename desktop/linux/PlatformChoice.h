#pragma once

#include <QByteArray>

namespace kelvinbar {

/// Chooses the window system for the application object that is created during its lifetime. X11 comes first,
/// also within a Wayland session, because a window cannot choose its place on Wayland; Wayland if there is no
/// X server or it refuses us. A choice of the user, in QT_QPA_PLATFORM or with -platform, stands.
///
/// Qt takes the choice from the environment, which is restored afterwards: it must not reach programs that
/// are started later. Main thread, before other threads exist.
class PlatformChoice {
  public:
    PlatformChoice();
    PlatformChoice(const PlatformChoice&) = delete;
    PlatformChoice& operator=(const PlatformChoice&) = delete;
    ~PlatformChoice();

  private:
    bool isOurs_;
};

/// Qt's name of the platform for a session. Empty to leave the choice to Qt. Pure function.
QByteArray platformFor(bool hasXServer, bool hasWaylandDisplay);

} // namespace kelvinbar
