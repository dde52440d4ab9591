#include "desktop/linux/StatusNotifierItem.h"

#include "desktop/linux/StatusMenu.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <utility>

namespace kelvinbar {

namespace {

constexpr auto watcherService = "org.kde.StatusNotifierWatcher";
constexpr auto itemPath = "/StatusNotifierItem";

} // namespace

StatusNotifierItem::StatusNotifierItem(QDBusConnection bus, Activation onActivated)
    : bus_(std::move(bus))
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
    if (interface != nullptr && interface->isServiceRegistered(watcherService)) watcherAppeared();
}

StatusNotifierItem::~StatusNotifierItem() {
    if (!bus_.isConnected()) return;
    bus_.unregisterService(service_);
    bus_.unregisterObject(itemPath);
}

void StatusNotifierItem::watcherAppeared() {
    hasWatcher_ = true;
    QDBusMessage call = QDBusMessage::createMethodCall(watcherService, "/StatusNotifierWatcher",
                                                       watcherService, "RegisterStatusNotifierItem");
    call << service_;
    bus_.call(call, QDBus::NoBlock);
    // Some hosts keep what they had of an item that they know.
    emit adaptor_->NewTitle();
    emit adaptor_->NewIcon();
    emit adaptor_->XAyatanaNewLabel(content_.label, adaptor_->labelGuide());
    emit watcherChanged();
}

void StatusNotifierItem::watcherVanished() {
    hasWatcher_ = false;
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

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): the bus asks objects
QDBusObjectPath StatusNotifierItemAdaptor::menu() const { return QDBusObjectPath(StatusMenu::path); }

QString StatusNotifierItemAdaptor::labelGuide() const {
    QString guide = item_.content_.label;
    for (QChar& character : guide) {
        if (character.isDigit()) character = '8';
    }
    return guide;
}

} // namespace kelvinbar
