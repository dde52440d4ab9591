#include "desktop/linux/StatusNotifierItem.h"

#include "base/Log.h"
#include "desktop/linux/StatusMenu.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QFile>
#include <string>
#include <utility>

namespace kelvinbar {

namespace {

constexpr auto watcherService = "org.kde.StatusNotifierWatcher";
constexpr auto itemPath = "/StatusNotifierItem";

/// The process of the watcher, for the log: "process 1234 (xfce4-panel)".
std::string watcherProcess(const QDBusConnection& bus) {
    const QString process = QString::number(bus.interface()->servicePid(watcherService).value());
    QFile name("/proc/" + process + "/comm");
    const bool isNamed = name.open(QFile::ReadOnly);
    return QString("process %1 (%2)").arg(process, isNamed ? name.readAll().trimmed() : "?").toStdString();
}

} // namespace

StatusNotifierItem::StatusNotifierItem(QDBusConnection bus, Activation onActivated, Log& log)
    : log_(log)
    , bus_(std::move(bus))
    , service_(QString("org.kde.StatusNotifierItem-%1-1").arg(QCoreApplication::applicationPid()))
    , watcher_(watcherService, bus_, QDBusServiceWatcher::WatchForOwnerChange)
    , onActivated_(std::move(onActivated))
    , adaptor_(new StatusNotifierItemAdaptor(*this)) {
    registerStatusNotifierTypes();
    bus_.registerObject(itemPath, this);
    bus_.registerService(service_);
    connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& newOwner) {
                newOwner.isEmpty() ? watcherVanished() : watcherAppeared();
            });
    const auto* const interface = bus_.interface();
    if (interface != nullptr && interface->isServiceRegistered(watcherService)) {
        watcherAppeared();
    } else {
        log_.write(LogCategory::tray, LogLevel::info, "no watcher runs");
    }
}

StatusNotifierItem::~StatusNotifierItem() {
    if (!bus_.isConnected()) return;
    bus_.unregisterService(service_);
    bus_.unregisterObject(itemPath);
}

void StatusNotifierItem::watcherAppeared() {
    hasWatcher_ = true;
    log_.write(LogCategory::tray, LogLevel::info,
               [this] { return "a watcher runs: " + watcherProcess(bus_); });
    registerWithWatcher();
    // Some hosts cache the properties of an item that they know from before.
    emit adaptor_->NewTitle();
    emit adaptor_->NewIcon();
    emit adaptor_->XAyatanaNewLabel(content_.label, adaptor_->labelGuide());
    emit watcherChanged();
}

void StatusNotifierItem::registerWithWatcher() {
    QDBusMessage call = QDBusMessage::createMethodCall(watcherService, "/StatusNotifierWatcher",
                                                       watcherService, "RegisterStatusNotifierItem");
    call << service_;
    auto* const reply = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
    connect(reply, &QDBusPendingCallWatcher::finished, this, [this, reply] {
        registrationEnded(reply->error());
        reply->deleteLater();
    });
}

void StatusNotifierItem::registrationEnded(const QDBusError& error) {
    if (!error.isValid()) {
        log_.write(LogCategory::tray, LogLevel::info,
                   [this] { return "registered as " + service_.toStdString(); });
    } else if (hasWatcher_) { // a watcher that exits does not reply, which is not a failure
        log_.write(LogCategory::tray, LogLevel::warning,
                   [&] { return "the tray refuses the status item: " + error.message().toStdString(); });
    }
}

void StatusNotifierItem::watcherVanished() {
    hasWatcher_ = false;
    log_.write(LogCategory::tray, LogLevel::info, "the watcher is gone");
    emit watcherChanged();
}

void StatusNotifierItem::setContent(const StatusNotifierContent& content) {
    const StatusNotifierContent earlier = std::exchange(content_, content);
    if (content.title != earlier.title) emit adaptor_->NewTitle();
    if (content.label != earlier.label)
        emit adaptor_->XAyatanaNewLabel(content.label, adaptor_->labelGuide());
    if (content.iconPixmaps != earlier.iconPixmaps) emit adaptor_->NewIcon();
    if (content.toolTipTitle != earlier.toolTipTitle || content.toolTipText != earlier.toolTipText) {
        emit adaptor_->NewToolTip();
    }
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): D-Bus calls it on the object
QDBusObjectPath StatusNotifierItemAdaptor::menu() const { return QDBusObjectPath(StatusMenu::path); }

QString StatusNotifierItemAdaptor::labelGuide() const {
    QString guide = item_.content_.label;
    for (QChar& character : guide) {
        if (character.isDigit()) character = '8';
    }
    return guide;
}

} // namespace kelvinbar
