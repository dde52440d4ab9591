#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <optional>

namespace kelvinbar {

/// A separate connection to the session bus, like that of another program.
class PrivateBus {
  public:
    PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus();

    QDBusConnection connection() const { return connection_; }

    QString address() const { return connection_.baseService(); }

    bool hasOwner(const QString& service) const;

  private:
    QString name_;
    QDBusConnection connection_;
};

/// Another program on the session bus. Calls one of our objects and receives its signals.
class BusPeer final : public QObject {
    Q_OBJECT

  public:
    BusPeer(QString service, QString path, QString interface);

    /// Calls a method while the event loop runs. Returns the reply or the error.
    QDBusMessage call(const QString& method, const QVariantList& arguments = {});

    /// All properties of the object, as received over the bus.
    QVariantMap properties();

    /// The arguments of each received `signal`, including those sent just before this call.
    QList<QVariantList> received(const QString& signal);

  public slots: // NOLINT(readability-redundant-access-specifiers)

    void note(const QDBusMessage& message) { messages_.append(message); }

  private:
    QDBusMessage callInterface(const QString& interface, const QString& method,
                               const QVariantList& arguments);

    PrivateBus bus_;
    QString service_;
    QString path_;
    QString interface_;
    QList<QDBusMessage> messages_;
};

/// The desktop's service for notifications. Not on the bus until it appears.
class FakeNotifications final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

  public:
    void appear();

    /// The texts of the notifications, oldest first.
    const QStringList& bodies() const { return bodies_; }

  public slots: // NOLINT(readability-redundant-access-specifiers)

    uint Notify(const QString& /*program*/, uint /*replaced*/, const QString& /*icon*/,
                const QString& /*summary*/, const QString& body, const QStringList& /*actions*/,
                const QVariantMap& /*hints*/, int /*duration*/) {
        bodies_.append(body);
        return static_cast<uint>(bodies_.size());
    }

  private:
    PrivateBus bus_;
    QStringList bodies_;
};

/// A StatusNotifierItem watcher, like that of a desktop's panel. Not on the bus until it appears.
class FakeWatcher final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items)

  public:
    /// Whether it has a host. Without a value, the watcher lacks the property. Set before it appears.
    std::optional<bool> host;

    /// How many registrations it refuses before it takes one.
    int refusals = 0;

    void appear();
    void vanish();
    /// Appears as soon as the current watcher vanishes.
    void waitInLine();

    /// The services of the registered items, oldest first.
    const QStringList& items() const { return items_; }

    /// How many registrations it has refused.
    int refused() const { return refused_; }

    bool hasHost() const { return host.value_or(false); }

  public slots: // NOLINT(readability-redundant-access-specifiers)

    void RegisterStatusNotifierItem(const QString& service);

  signals:
    void StatusNotifierItemUnregistered(const QString& service);
    void StatusNotifierHostRegistered();
    void StatusNotifierHostUnregistered();

  private:
    void exportObject();

    PrivateBus bus_;
    QStringList items_;
    int refused_ = 0;
};

} // namespace kelvinbar
