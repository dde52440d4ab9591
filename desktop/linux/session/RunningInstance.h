#pragma once

#include "desktop/linux/session/BusObject.h"
#include "desktop/linux/session/FocusRight.h"
#include "desktop/qt/QtMainQueue.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QStringList>
#include <QVariantMap>
#include <chrono>
#include <functional>
#include <optional>

namespace kelvinbar {

/// Ensures that one instance of the program runs per session bus: the one that owns the program's name on it.
/// Other instances and the desktop's launcher activate it through org.freedesktop.Application. Main thread.
class RunningInstance final {
  public:
    using Activation = std::function<void(const FocusRight&)>;

    /// Claims `name`, the program's bus name, such as "org.kelvinbar.Kelvinbar". `onActivated` is called from
    /// the event loop, after the caller has its reply, when another instance or the launcher activates this
    /// one; once for all activations until then, with the right of the last.
    RunningInstance(QDBusConnection bus, const QString& name, Activation onActivated);
    RunningInstance(const RunningInstance&) = delete;
    RunningInstance& operator=(const RunningInstance&) = delete;

    ~RunningInstance() { release(); }

    /// Claims the name unless this instance owns it. Returns whether it does then. Also true without a
    /// session bus, where others cannot be found.
    bool claim();

    /// Goes on on another connection, after the earlier one was lost. Claims the name there, unless it was
    /// given up, without waiting for the result.
    void moveTo(const QDBusConnection& bus);

    /// Gives the name up, so that a new start does not find this instance. Does not wait for the bus, which
    /// may not answer while the program ends.
    void release();

    /// Whether the last claim succeeded and the name was not given up since.
    [[nodiscard]] bool isThisOne() const { return isThisOne_; }

  private:
    friend class RunningInstanceAdaptor;

    void activated(const QVariantMap& platformData);

    QDBusConnection bus_;
    QString name_;
    BusObject object_;
    Activation onActivated_;
    std::optional<FocusRight> activation_; ///< of the call that is posted
    bool isThisOne_ = false;
    QtMainQueue queue_;
};

/// What became of a request to the instance that owns the program's name.
enum class ActivationResult { opened, unanswered, nobodyRuns };

/// Asks the instance that owns `name` to open its panel, and passes on the right to the focus that this
/// process was started with. Waits for the reply, at most `limit`. Needs no application object.
ActivationResult activateRunningInstance(const QDBusConnection& bus, const QString& name,
                                         std::chrono::milliseconds limit);

/// The object on the bus. Launchers may call any of its methods; all do the same.
class RunningInstanceAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

  public:
    RunningInstanceAdaptor(RunningInstance& instance, BusObject& object)
        : QDBusAbstractAdaptor(&object), instance_(instance) {}

  public slots: // NOLINT(readability-redundant-access-specifiers)

    void Activate(const QVariantMap& platformData) { instance_.activated(platformData); }

    void Open(const QStringList& /*uris*/, const QVariantMap& platformData) {
        instance_.activated(platformData);
    }

    void ActivateAction(const QString& /*name*/, const QVariantList& /*parameter*/,
                        const QVariantMap& platformData) {
        instance_.activated(platformData);
    }

  private:
    RunningInstance& instance_;
};

} // namespace kelvinbar
