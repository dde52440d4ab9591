#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <functional>

namespace kelvinbar {

/// The one instance of the program that runs for a user, by its name on the session bus. A second start, and
/// the desktop's launcher, reach it through org.freedesktop.Application.
class RunningInstance final : public QObject {
    Q_OBJECT

  public:
    /// `name` is the program's on the bus, such as "org.kelvinbar.Kelvinbar".
    RunningInstance(QDBusConnection bus, const QString& name, std::function<void()> onActivated);
    RunningInstance(const RunningInstance&) = delete;
    RunningInstance& operator=(const RunningInstance&) = delete;
    ~RunningInstance() override;

    /// Whether this is the one. Also true without a session bus, where nobody could be asked.
    [[nodiscard]] bool isThisOne() const { return isThisOne_; }

    /// Asks the other one to open its panel.
    void activateOther() const;

  private:
    friend class RunningInstanceAdaptor;

    QDBusConnection bus_;
    QString name_;
    QString path_;
    std::function<void()> onActivated_;
    bool isThisOne_ = true;
};

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
