#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <functional>

namespace kelvinbar {

/// Ensures that one instance of the program runs per user: the one that owns the program's name on the
/// session bus. Other instances and the desktop's launcher activate it through org.freedesktop.Application.
/// Main thread.
class RunningInstance final : public QObject {
    Q_OBJECT

  public:
    /// `name` is the program's bus name, such as "org.kelvinbar.Kelvinbar". `onActivated` is called when
    /// another instance or the launcher activates this one.
    RunningInstance(QDBusConnection bus, const QString& name, std::function<void()> onActivated);
    RunningInstance(const RunningInstance&) = delete;
    RunningInstance& operator=(const RunningInstance&) = delete;
    ~RunningInstance() override;

    /// Whether this instance owns the name. Also true without a session bus, where others cannot be found.
    [[nodiscard]] bool isThisOne() const { return isThisOne_; }

    /// Asks the instance that owns the name to open its panel. Blocks until it has replied, at most five
    /// seconds.
    void activateOther() const;

  private:
    friend class RunningInstanceAdaptor;

    QDBusConnection bus_;
    QString name_;
    QString path_;
    std::function<void()> onActivated_;
    bool isThisOne_ = true;
};

/// The object on the bus. Launchers may call any of its methods; all do the same.
class RunningInstanceAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

  public:
    explicit RunningInstanceAdaptor(RunningInstance& instance)
        : QDBusAbstractAdaptor(&instance), instance_(instance) {}

  public slots: // NOLINT(readability-redundant-access-specifiers)

    void Activate(const QVariantMap& /*platformData*/) { instance_.onActivated_(); }

    void Open(const QStringList& /*uris*/, const QVariantMap& /*platformData*/) { instance_.onActivated_(); }

    void ActivateAction(const QString& /*name*/, const QVariantList& /*parameter*/,
                        const QVariantMap& /*platformData*/) {
        instance_.onActivated_();
    }

  private:
    RunningInstance& instance_;
};

} // namespace kelvinbar
