#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace kelvinbar {

/// A connection of its own to the session bus, as another program has one.
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

/// Another program on the session bus, which calls an object of ours and hears its signals.
class BusPeer final : public QObject {
    Q_OBJECT

  public:
    BusPeer(QString service, QString path, QString interface);

    /// Calls the object while the event loop runs; the answer, or the error.
    QDBusMessage call(const QString& method, const QVariantList& arguments = {});

    /// All properties of the object, as they came over the bus.
    QVariantMap properties();

    /// What was heard of a signal. What the object sent before this call is among it.
    QList<QVariantList> heard(const QString& signal);

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

/// A watcher of tray items, as a desktop's panel has one. Absent until it appears.
class FakeWatcher final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")

  public:
    void appear();
    void vanish();
    /// Appears as soon as the watcher that there is vanishes.
    void waitInLine();

    /// The services of the items that were registered, oldest first.
    const QStringList& items() const { return items_; }

  public slots: // NOLINT(readability-redundant-access-specifiers)

    void RegisterStatusNotifierItem(const QString& service) { items_.append(service); }

  private:
    PrivateBus bus_;
    QStringList items_;
};

} // namespace kelvinbar
