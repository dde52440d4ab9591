#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QTimer>
#include <chrono>
#include <memory>

namespace kelvinbar {

class Log;

/// Connects to a bus again when the connection is lost: the bus has ended, or has dropped it.
///
/// It tries after a fifth of a second, and then at intervals that double up to half a minute. Nothing wakes
/// up while the connection stands. The attempts run on a thread of their own, since a bus that has stopped
/// keeps its caller waiting.
///
/// Limits: a bus that comes back at another address is not found, and a program that starts without a bus
/// stays without one. The shared connections of Qt D-Bus stay lost for Qt's own use. Main thread.
class BusKeeper final : public QObject {
    Q_OBJECT

  public:
    static constexpr std::chrono::milliseconds firstDelay{200};
    static constexpr std::chrono::milliseconds longestDelay{30'000};

    /// `bus` is a connection to the bus of this type. The log must outlive the object.
    BusKeeper(QDBusConnection bus, QDBusConnection::BusType type, Log& log);
    BusKeeper(const BusKeeper&) = delete;
    BusKeeper& operator=(const BusKeeper&) = delete;
    /// Does not wait for an attempt.
    ~BusKeeper() override;

  signals:
    /// Objects, names and signals have to be registered again, with this connection.
    void reconnected(const QDBusConnection& bus);

  private:
    struct Receiver;

    void follow();
    void tryAgainLater();
    void tryNow();
    void tried(const QString& name);

    QDBusConnection bus_;
    QDBusConnection::BusType type_;
    Log& log_;
    std::chrono::milliseconds delay_ = firstDelay; ///< of the next attempt
    QTimer nextAttempt_;
    std::shared_ptr<Receiver> receiver_; ///< also held by the thread of an attempt

  private slots: // NOLINT(readability-redundant-access-specifiers)
    void lost();
};

} // namespace kelvinbar
