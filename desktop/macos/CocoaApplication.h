#pragma once

#include <functional>
#include <memory>

namespace kelvinbar {

/// Neither in the Dock nor with a menu. Main thread.
void becomeAccessoryApplication();

/// Brings the program to the front, so that a window of it can have the keyboard. Main thread.
void activateApplication();

/// Gives the front back to the program that had it before. Main thread.
void hideApplication();

/// Whether the user has asked the system for less motion. Main thread.
bool systemPrefersReducedMotion();

/// Calls `onPress` on the main thread at every press of a mouse button in another program, while the result
/// is kept. Main thread.
std::shared_ptr<void> watchPressesElsewhere(std::function<void()> onPress);

/// Whether the program runs already for this user, as the same application. That one is then told that it was
/// opened again.
bool handOverToRunningApplication();

/// Hears that the program was opened again while it runs: by the user, or by another instance that hands
/// over. One object at a time, main thread.
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
