#pragma once

#include "desktop/linux/session/CallLimit.h"

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QTimer>
#include <chrono>
#include <utility>

namespace kelvinbar {

/// An object of the program on a bus. Its interfaces are the adaptors below it. An adaptor that is made from
/// an interface's description calls its object, which then derives from this one.
///
/// Qt D-Bus reads from the bus on a thread of its own, and posts each call to the main thread without a
/// limit. A caller that never pauses would fill the memory, with its calls and with answers that the bus has
/// no time to fetch. The object therefore answers as many calls as `CallLimit` admits; others get the error
/// UnknownObject, which costs so little that they do not pile up while the event loop runs.
///
/// Limits: callers are not told apart, so that others are also refused during a flood. Nobody else may post
/// calls to the object (QMetaObject::invokeMethod), which would count. Main thread.
class BusObject : public QObject {
    Q_OBJECT

  public:
    /// From the first refused call until `callsRefused`.
    static constexpr std::chrono::milliseconds refusalPeriod{1000};

    /// Put on the bus by `moveTo`, once it has its adaptors.
    explicit BusObject(QString path, CallLimit limit = CallLimit(), QObject* parent = nullptr);
    BusObject(const BusObject&) = delete;
    BusObject& operator=(const BusObject&) = delete;
    ~BusObject() override;

    /// Takes the object off its earlier bus and puts it on this one, which need not be connected.
    void moveTo(const QDBusConnection& bus);

    bool event(QEvent* event) override;

  signals:
    /// Calls were refused in the last second, which those who follow the object may have to repeat.
    void callsRefused();

  private:
    void leaveBus();

    QDBusConnection bus_;
    QString path_;
    CallLimit limit_;
    QTimer refusals_; ///< runs from a refused call until it is reported
};

} // namespace kelvinbar
