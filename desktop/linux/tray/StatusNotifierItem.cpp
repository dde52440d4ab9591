#include "desktop/linux/tray/StatusNotifierItem.h"

#include "base/Log.h"
#include "desktop/linux/tray/StatusMenu.h"
#include "desktop/linux/tray/StatusNotifierWatcher.h"

#include <QDBusMessage>
#include <QTimer>
#include <chrono>
#include <string>
#include <utility>

namespace kelvinbar {

namespace {

constexpr auto itemPath = "/StatusNotifierItem";

/// A watcher that has dropped or refused the item is often about to be replaced.
constexpr std::chrono::milliseconds delayOfRepeatedRegistration{200};
constexpr std::chrono::minutes quietPeriod{1};

} // namespace

StatusNotifierItem::StatusNotifierItem(const QDBusConnection& bus, StatusNotifierHandlers handlers, Log& log)
    : log_(log)
    , bus_(QString())
    , object_(itemPath, CallLimit(), this)
    , handlers_(std::move(handlers))
    , adaptor_(new StatusNotifierItemAdaptor(*this, object_)) {
    registerStatusNotifierTypes();
    watcher_.addWatchedService(watcherService);
    connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& newOwner) {
                newOwner.isEmpty() ? watcherVanished() : findWatcher();
            });
    connect(&object_, &BusObject::callsRefused, this, &StatusNotifierItem::announceAll);
    moveTo(bus);
}

void StatusNotifierItem::moveTo(const QDBusConnection& bus) {
    if (hasWatcher_) watcherVanished();
    bus_ = bus;
    object_.moveTo(bus_);
    watcher_.setConnection(bus_);
    if (bus_.isConnected()) {
        followWatcherSignals();
        findWatcher();
    } else {
        noWatcherFound();
    }
}

void StatusNotifierItem::followWatcherSignals() {
    const auto follow = [this](const char* signal, const char* slot) {
        bus_.connect(watcherService, watcherPath, watcherService, signal, this, slot);
    };
    follow("StatusNotifierItemUnregistered", SLOT(itemUnregistered(QString)));
    follow("StatusNotifierHostRegistered", SLOT(readHasHost()));
    follow("StatusNotifierHostUnregistered", SLOT(readHasHost()));
}

void StatusNotifierItem::findWatcher() {
    search_ = std::make_unique<QDBusPendingCallWatcher>(bus_.asyncCall(watcherProcessQuestion()));
    connect(search_.get(), &QDBusPendingCallWatcher::finished, this, [this] {
        const QDBusMessage reply = search_->reply();
        search_.release()->deleteLater();
        const std::optional<uint> process = watcherProcessIn(reply);
        process ? watcherAppeared(*process) : noWatcherFound();
    });
}

void StatusNotifierItem::noWatcherFound() {
    log_.write(LogCategory::tray, LogLevel::info, "no watcher runs");
    hasHost_ = false;
    emit watcherChanged();
}

void StatusNotifierItem::watcherAppeared(uint process) {
    hasWatcher_ = true;
    hasHost_.reset();
    watcherProcess_ = processName(process);
    log_.write(LogCategory::tray, LogLevel::info, [&] {
        const std::string& name = watcherProcess_.empty() ? "?" : watcherProcess_;
        return "a watcher runs: process " + std::to_string(process) + " (" + name + ")";
    });
    registerWithWatcher();
    readHasHost();
    announceAll(); // some hosts cache the properties of an item that they know from before
    emit watcherChanged();
}

void StatusNotifierItem::announceAll() {
    emit adaptor_->NewTitle();
    emit adaptor_->NewIcon();
    emit adaptor_->NewToolTip();
    emit adaptor_->XAyatanaNewLabel(content_.label, adaptor_->labelGuide());
}

void StatusNotifierItem::registerWithWatcher() {
    QDBusMessage call = QDBusMessage::createMethodCall(watcherService, watcherPath, watcherService,
                                                       "RegisterStatusNotifierItem");
    call << bus_.baseService();
    auto* const reply = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
    connect(reply, &QDBusPendingCallWatcher::finished, this, [this, reply] {
        registrationEnded(reply->error());
        reply->deleteLater();
    });
}

void StatusNotifierItem::registrationEnded(const QDBusError& error) {
    if (!error.isValid()) {
        log_.write(LogCategory::tray, LogLevel::info,
                   [this] { return "registered as " + bus_.baseService().toStdString(); });
    } else if (hasWatcher_) { // a watcher that exits does not reply, which is not a failure
        registerAgain("the tray refuses the status item (" + error.message().toStdString() + ")");
    }
}

bool StatusNotifierItem::isOwnService(const QString& service) const {
    return isItemOf(service, bus_.baseService());
}

/// A watcher that does not reply in time is slow to refuse, so a minute counts from the last repetition.
bool StatusNotifierItem::mayRegisterAgain() {
    const std::chrono::milliseconds period = quietPeriod;
    QElapsedTimer& since = sinceRepeatedRegistration_;
    if (!since.isValid() || since.hasExpired(period.count())) repeatedRegistrations_ = 0;
    const bool may = ++repeatedRegistrations_ <= mostRepeatedRegistrations;
    if (may) since.start();
    return may;
}

void StatusNotifierItem::itemUnregistered(const QString& service) {
    if (hasWatcher_ && isOwnService(service)) registerAgain("the watcher has dropped the status item");
}

/// `why` is for the log.
void StatusNotifierItem::registerAgain(const std::string& why) {
    if (isRegistrationPosted_) return;
    if (mayRegisterAgain()) {
        log_.write(LogCategory::tray, LogLevel::info, [&] { return why + "; registering again"; });
        registerAgainSoon();
    } else if (repeatedRegistrations_ == mostRepeatedRegistrations + 1) {
        log_.write(LogCategory::tray, LogLevel::warning,
                   [&] { return why + " too often: it may not be seen"; });
    }
}

void StatusNotifierItem::registerAgainSoon() {
    isRegistrationPosted_ = true;
    QTimer::singleShot(delayOfRepeatedRegistration, this, [this] {
        isRegistrationPosted_ = false;
        if (hasWatcher_) registerWithWatcher();
    });
}

void StatusNotifierItem::readHasHost() {
    auto* const call = new QDBusPendingCallWatcher(bus_.asyncCall(hostQuestion()), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        if (hasWatcher_) setHasHost(saysThatAHostIsThere(call->reply()));
        call->deleteLater();
    });
}

void StatusNotifierItem::setHasHost(bool hasHost) {
    if (std::exchange(hasHost_, hasHost) == hasHost) return;
    if (!hasHost) log_.write(LogCategory::tray, LogLevel::info, "the watcher has no host");
    emit watcherChanged();
}

void StatusNotifierItem::watcherVanished() {
    search_ = nullptr;
    hasWatcher_ = false;
    hasHost_ = false;
    watcherProcess_.clear();
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
