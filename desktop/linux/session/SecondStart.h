#pragma once

#include "base/Log.h"
#include "desktop/linux/session/InstanceLock.h"

#include <QDBusConnection>
#include <QString>
#include <chrono>
#include <optional>

namespace kelvinbar {

/// A start of the program while another instance may run for the same user.
struct SecondStart {
    QDBusConnection bus; ///< the session bus; need not be connected
    QString name;        ///< the program's bus name
    InstancePlace place; ///< of this process
    bool isAtLogin = false;
    std::chrono::milliseconds answerLimit = std::chrono::seconds(2);
};

/// Settles a start if another instance runs: asks it to open its panel, or tells the user, on standard error
/// and by a notification of the desktop, why that is not possible. Returns the exit status, or no value if
/// no instance runs. A start at login opens no panel. Needs no application object. May wait for replies, at
/// most for about twice `answerLimit`.
///
/// | The running instance | Exit status |
/// |---|---|
/// | opens its panel, or a start at login leaves it alone | 0 |
/// | runs on another display | 1 |
/// | is on another session bus, so that it cannot be asked | 1 |
/// | does not reply | 1 |
std::optional<int> exitStatusOf(const SecondStart& start, const InstanceLock& lock, Log& log);

} // namespace kelvinbar
