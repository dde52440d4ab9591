#include "desktop/linux/session/BusObject.h"

#include <QEvent>

namespace kelvinbar {

BusObject::BusObject(QString path, CallLimit limit, QObject* parent)
    : QObject(parent), bus_(QString()), path_(std::move(path)), limit_(limit) {
    refusals_.setSingleShot(true);
    connect(&refusals_, &QTimer::timeout, this, &BusObject::callsRefused);
}

BusObject::~BusObject() { leaveBus(); }

void BusObject::moveTo(const QDBusConnection& bus) {
    leaveBus();
    bus_ = bus;
    bus_.registerObject(path_, this);
}

/// Also off a lost bus, whose connection would go on to pass signals to it.
void BusObject::leaveBus() { bus_.unregisterObject(path_); }

/// A call from the bus comes as an event, which answers with an error if it is destroyed unused.
bool BusObject::event(QEvent* event) {
    const bool isRefused =
        event->type() == QEvent::MetaCall && !limit_.admits(std::chrono::steady_clock::now());
    if (!isRefused) return QObject::event(event);
    if (!refusals_.isActive()) refusals_.start(refusalPeriod);
    return true;
}

} // namespace kelvinbar
