#include "desktop/linux/RunningInstance.h"

#include <QDBusMessage>
#include <utility>

namespace kelvinbar {

RunningInstance::RunningInstance(QDBusConnection bus, const QString& name, std::function<void()> onActivated)
    : bus_(std::move(bus))
    , name_(name)
    , path_("/" + QString(name).replace('.', '/'))
    , onActivated_(std::move(onActivated)) {
    new RunningInstanceAdaptor(
        *this); // NOLINT(cppcoreguidelines-owning-memory): the object owns its adaptors
    if (!bus_.isConnected()) return;
    // Register the object before the name, so that whoever sees the name can call it.
    bus_.registerObject(path_, this);
    isThisOne_ = bus_.registerService(name_);
}

RunningInstance::~RunningInstance() {
    if (!bus_.isConnected()) return;
    if (isThisOne_) bus_.unregisterService(name_);
    bus_.unregisterObject(path_);
}

void RunningInstance::activateOther() const {
    QDBusMessage call =
        QDBusMessage::createMethodCall(name_, path_, "org.freedesktop.Application", "Activate");
    call << QVariantMap();
    constexpr int timeout = 5000; // milliseconds
    bus_.call(call, QDBus::Block, timeout);
}

} // namespace kelvinbar
