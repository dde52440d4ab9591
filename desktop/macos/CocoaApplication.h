#pragma once

#include "shell/Geometry.h"

#include <functional>
#include <memory>

namespace kelvinbar {

/// Removes the program from the Dock, and its menu. Main thread.
void becomeAccessoryApplication();

/// Makes the program active, so that its windows can have keyboard focus. Takes effect later. Main thread.
void activateApplication();

/// Hides the program, which makes the previously active program active. Takes effect later. Main thread.
void hideApplication();

/// Whether the user has enabled reduced motion in the system's settings. Main thread.
bool systemPrefersReducedMotion();

/// Whether the user has asked for more contrast there. Main thread.
bool systemPrefersMoreContrast();

/// The buttons whose presses are watched.
enum class MouseButtons { all, secondary };

/// Calls `onPress` on the main thread for every press of the buttons in another program, with its place on
/// the screen, as long as the result lives. Null if the system refuses. Main thread.
std::shared_ptr<void> watchPressesInOtherPrograms(MouseButtons buttons, std::function<void(Point)> onPress);

/// Keeps the system from slowing down this program, its timers for one, as long as the result lives. The
/// machine may still sleep. Main thread.
std::shared_ptr<void> runOnTime();

/// If an older instance of the same application runs for this user, notifies its ReopenObserver and returns
/// true. Main thread.
bool handOverToRunningApplication();

/// Calls `onReopen` when the program is opened again while it runs: by the user, or by another instance that
/// hands over. Only one object at a time. Main thread.
class ReopenObserver {
  public:
    explicit ReopenObserver(std::function<void()> onReopen);
    ReopenObserver(const ReopenObserver&) = delete;
    ReopenObserver& operator=(const ReopenObserver&) = delete;
    ~ReopenObserver();

  private:
    class Target;
    std::unique_ptr<Target> target_;
};

} // namespace kelvinbar
