#pragma once

#include "base/Log.h"

#include <QTimer>
#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace kelvinbar {

/// What to do about a status item that no tray shows depends on how the program was started.
struct TraySituation {
    std::string command; ///< starts the program, for the user to type
    bool isAtLogin = false;
    bool isFirstStart = false; ///< the user has no preferences yet
    bool hasBus = true;        ///< a second start can open the panel
    /// Whether a tray shows the item now. No value while that is unknown.
    std::function<std::optional<bool>()> hasTray;
    std::function<void()> openPanel;
};

/// Tells the user how to open the panel if no tray shows the status item some time after the start. The panel
/// also opens by itself if the user cannot know that yet, or has no other way to open it, but never at login.
/// Main thread.
class NoTrayNotice {
  public:
    /// Trays start together with the program at login, and later.
    static constexpr std::chrono::seconds patienceAtLogin{10};
    /// Long enough for a tray to take the item.
    static constexpr std::chrono::seconds patience{2};

    /// Asks after `wait`, and once more after that time if there is no answer yet. The log must outlive the
    /// object. The destructor cancels.
    NoTrayNotice(TraySituation situation, std::chrono::milliseconds wait, Log& log);

  private:
    void look();
    void giveNotice() const;

    TraySituation situation_;
    Log& log_;
    QTimer timer_;
    bool hasAsked_ = false;
};

} // namespace kelvinbar
