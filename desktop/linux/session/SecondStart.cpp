#include "desktop/linux/session/SecondStart.h"

#include "desktop/linux/session/RunningInstance.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QStringList>
#include <QVariantMap>
#include <cstdlib>
#include <string>

namespace kelvinbar {

namespace {

/// Shows `text` as a notification of the desktop, if it has a service for them.
void notify(const SecondStart& start, const std::string& text) {
    if (!start.bus.isConnected()) return;
    constexpr auto service = "org.freedesktop.Notifications";
    constexpr uint replacesNone = 0;
    constexpr int usualTime = -1;
    QDBusMessage call =
        QDBusMessage::createMethodCall(service, "/org/freedesktop/Notifications", service, "Notify");
    call << "Kelvinbar" << replacesNone << "kelvinbar"
         << "Kelvinbar" << QString::fromStdString(text) << QStringList() << QVariantMap() << usualTime;
    // The bus drops calls of a process that has ended while it starts the service for them.
    start.bus.call(call, QDBus::Block, static_cast<int>(start.answerLimit.count()));
}

int refused(const SecondStart& start, Log& log, const std::string& why) {
    log.write(LogCategory::panel, LogLevel::error, [&] { return why; });
    notify(start, why);
    return EXIT_FAILURE;
}

int leftAlone(Log& log) {
    log.write(LogCategory::panel, LogLevel::info, "another instance runs already");
    return EXIT_SUCCESS;
}

int opened(Log& log) {
    log.write(LogCategory::panel, LogLevel::info, "another instance runs and opens its panel");
    return EXIT_SUCCESS;
}

std::string onAnotherDisplay(const InstancePlace& holder) {
    const std::string& display = holder.display.empty() ? holder.waylandDisplay : holder.display;
    const std::string session = holder.session.empty() ? "" : ", session " + holder.session;
    return "it already runs on display " + display + " (process " + holder.process + session +
           "); quit it there before you start it here";
}

std::string onAnotherBus(const InstancePlace& holder) {
    return "it already runs (process " + holder.process +
           "), but not on this session bus, so its panel cannot be opened from here";
}

std::string hung(const SecondStart& start) {
    const std::string process = std::to_string(start.bus.interface()->servicePid(start.name).value());
    return "it already runs (process " + process + "), but does not answer; end it with \"kill -KILL " +
           process + "\" and start it again";
}

} // namespace

std::optional<int> exitStatusOf(const SecondStart& start, const InstanceLock& lock, Log& log) {
    const auto holder = lock.holder();
    if (holder && areOnDifferentDisplays(*holder, start.place)) {
        return refused(start, log, onAnotherDisplay(*holder));
    }
    const bool isOnThisBus =
        start.bus.isConnected() && start.bus.interface()->isServiceRegistered(start.name);
    if (start.isAtLogin && (holder || isOnThisBus)) return leftAlone(log);
    switch (activateRunningInstance(start.bus, start.name, start.answerLimit)) {
    case ActivationResult::opened:
        return opened(log);
    case ActivationResult::unanswered:
        return refused(start, log, hung(start));
    case ActivationResult::nobodyRuns:
        break;
    }
    // The lock is taken after the name and given up before it: who held it before the name was looked up, and
    // still does, has the name on another bus.
    if (holder && lock.holder()) return refused(start, log, onAnotherBus(*holder));
    return std::nullopt;
}

} // namespace kelvinbar
