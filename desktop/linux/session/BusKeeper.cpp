#include "desktop/linux/session/BusKeeper.h"

#include "base/Log.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

namespace kelvinbar {

namespace {

constexpr auto ownPrefix = "kelvinbar-connection-";

/// Connects by a name that no earlier connection has had. Returns the name.
QString connectAnew(QDBusConnection::BusType type) {
    static std::atomic<int> count = 0;
    QString name = ownPrefix + QString::number(++count);
    QDBusConnection::connectToBus(type, name);
    return name;
}

/// Not the connections that Qt D-Bus shares with others.
void closeOwn(const QString& name) {
    if (name.startsWith(ownPrefix)) QDBusConnection::disconnectFromBus(name);
}

} // namespace

/// Where an attempt delivers its result. The keeper may be gone by then.
struct BusKeeper::Receiver {
    std::mutex mutex;
    BusKeeper* keeper; ///< null when it is gone

    void deliver(const QString& name) {
        const std::lock_guard lock(mutex);
        if (keeper == nullptr) return;
        QMetaObject::invokeMethod(keeper, [to = keeper, name] { to->tried(name); }, Qt::QueuedConnection);
    }
};

BusKeeper::BusKeeper(QDBusConnection bus, QDBusConnection::BusType type, Log& log)
    : bus_(std::move(bus)), type_(type), log_(log), receiver_(std::make_shared<Receiver>()) {
    receiver_->keeper = this;
    nextAttempt_.setSingleShot(true);
    connect(&nextAttempt_, &QTimer::timeout, this, &BusKeeper::tryNow);
    if (bus_.isConnected()) follow();
}

BusKeeper::~BusKeeper() {
    const std::lock_guard lock(receiver_->mutex);
    receiver_->keeper = nullptr;
}

/// The signal does not come from the bus, but from the library that notices its end.
void BusKeeper::follow() {
    bus_.connect({}, "/org/freedesktop/DBus/Local", "org.freedesktop.DBus.Local", "Disconnected", this,
                 SLOT(lost()));
    if (!bus_.isConnected()) lost(); // before the signal was followed
}

void BusKeeper::lost() {
    if (nextAttempt_.isActive()) return;
    log_.write(LogCategory::tray, LogLevel::warning, [this] {
        return std::string(type_ == QDBusConnection::SystemBus ? "the system bus" : "the session bus") +
               " is lost; connecting again";
    });
    delay_ = firstDelay;
    tryAgainLater();
}

void BusKeeper::tryAgainLater() {
    nextAttempt_.start(delay_);
    delay_ = std::min(2 * delay_, longestDelay);
}

void BusKeeper::tryNow() {
    try {
        std::thread([receiver = receiver_, type = type_] { receiver->deliver(connectAnew(type)); }).detach();
    } catch (const std::system_error&) { // too many threads for this user
        tryAgainLater();
    }
}

void BusKeeper::tried(const QString& name) {
    const QDBusConnection bus(name);
    if (!bus.isConnected()) {
        closeOwn(name);
        tryAgainLater();
        return;
    }
    log_.write(LogCategory::tray, LogLevel::info,
               [&] { return "connected again, as " + bus.baseService().toStdString(); });
    const QString earlier = std::exchange(bus_, bus).name();
    follow();
    emit reconnected(bus);
    closeOwn(earlier);
}

} // namespace kelvinbar
