#pragma once

#include "desktop/linux/session/BusObject.h"
#include "desktop/linux/tray/StatusNotifierTypes.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QElapsedTimer>
#include <QObject>
#include <QPoint>
#include <QString>
#include <functional>
#include <memory>
#include <optional>
#include <string>

/// The status item as a tray shows it under Linux, by the StatusNotifierItem protocol. Three processes take
/// part: the item is an object on the session bus with an icon, a tooltip and a menu; the watcher keeps the
/// list of items; the host is the panel that displays them and reports clicks. The item registers with the
/// watcher, and hosts then read its properties and listen for its signals. It registers by the unique name of
/// its connection: a name that is owned and given up can reach a watcher in another order than the item.
///
/// Limits: the protocol has no text beside the icon. The label is an extension (XAyatanaLabel) that few hosts
/// support. Pitfalls: the watcher may start after the program, crash or be replaced, so the item registers
/// again whenever a watcher appears, and when it drops or refuses the item or does not reply, a limited
/// number of times. A watcher may run without a host, which shows nothing. Hosts do not report the icon's
/// place, only where it was clicked, and some report 0, 0.
namespace kelvinbar {

class Log;

/// What a status item shows, with the protocol's names.
struct StatusNotifierContent {
    QString title; ///< name of the item, read by screen readers
    QString label; ///< text beside the icon, for hosts that support it
    StatusNotifierPixmaps iconPixmaps;
    QString toolTipTitle;
    QString toolTipText;
};

/// What hosts report. Both are called on the main thread.
struct StatusNotifierHandlers {
    std::function<void(QPoint place)> activated; ///< a click, with its position on the screen
    /// An xdg-activation or startup-notification token, for the click that follows.
    std::function<void(const QString& token)> activationTokenGiven;
};

/// An item on the session bus (org.kde.StatusNotifierItem). Registers with every watcher that appears, until
/// it is destroyed. One per connection. Never waits for the bus. Main thread.
class StatusNotifierItem final : public QObject {
    Q_OBJECT

  public:
    /// How often the item registers again with a watcher that drops or refuses it, until it has not done so
    /// for a minute.
    static constexpr int mostRepeatedRegistrations = 5;

    /// The log must outlive the object.
    StatusNotifierItem(const QDBusConnection& bus, StatusNotifierHandlers handlers, Log& log);
    StatusNotifierItem(const StatusNotifierItem&) = delete;
    StatusNotifierItem& operator=(const StatusNotifierItem&) = delete;
    ~StatusNotifierItem() override = default;

    /// Goes on on another connection, after the earlier one was lost: looks for a watcher there.
    void moveTo(const QDBusConnection& bus);

    /// Notifies hosts of the properties that have changed, and only of those.
    void setContent(const StatusNotifierContent& content);

    [[nodiscard]] const StatusNotifierContent& content() const { return content_; }

    /// Whether a watcher runs, as far as the bus has told. It may have refused the item.
    [[nodiscard]] bool hasWatcher() const { return hasWatcher_; }

    /// Whether a watcher runs and has a host, which shows items. No value until the bus and the watcher have
    /// replied. A watcher that does not tell counts as one with a host.
    [[nodiscard]] std::optional<bool> hasHost() const { return hasHost_; }

    /// The name of the watcher's process, at most 15 characters. Empty without a watcher, or if unknown.
    [[nodiscard]] const std::string& watcherProcess() const { return watcherProcess_; }

  signals:
    /// A watcher has appeared or vanished, or `hasHost` has changed.
    void watcherChanged();

  private:
    friend class StatusNotifierItemAdaptor;

    void findWatcher();
    void watcherAppeared(uint process);
    void noWatcherFound();
    void watcherVanished();
    void announceAll();
    void registerWithWatcher();
    void registrationEnded(const QDBusError& error);
    void registerAgain(const std::string& why);
    void registerAgainSoon();
    [[nodiscard]] bool isOwnService(const QString& service) const;
    [[nodiscard]] bool mayRegisterAgain();
    void setHasHost(bool hasHost);
    void followWatcherSignals();

    Log& log_;
    QDBusConnection bus_;
    BusObject object_;
    QDBusServiceWatcher watcher_;
    std::unique_ptr<QDBusPendingCallWatcher> search_; ///< for the watcher; null if none is under way
    bool hasWatcher_ = false;
    std::optional<bool> hasHost_;
    std::string watcherProcess_;
    bool isRegistrationPosted_ = false;
    int repeatedRegistrations_ = 0; ///< without a quiet minute, and what was refused then
    QElapsedTimer sinceRepeatedRegistration_;
    StatusNotifierHandlers handlers_;
    StatusNotifierContent content_;
    class StatusNotifierItemAdaptor* adaptor_;

  private slots: // NOLINT(readability-redundant-access-specifiers)
    void itemUnregistered(const QString& service);
    void readHasHost();
};

// NOLINTBEGIN(readability-convert-member-functions-to-static): D-Bus calls them on the object
/// The object on the bus. Properties, methods and signals have the names of the protocol.
class StatusNotifierItemAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category)
    Q_PROPERTY(QString Id READ id)
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(int WindowId READ windowId)
    Q_PROPERTY(QString IconName READ noText)
    Q_PROPERTY(kelvinbar::StatusNotifierPixmaps IconPixmap READ iconPixmaps)
    Q_PROPERTY(QString OverlayIconName READ noText)
    Q_PROPERTY(kelvinbar::StatusNotifierPixmaps OverlayIconPixmap READ noPixmaps)
    Q_PROPERTY(QString AttentionIconName READ noText)
    Q_PROPERTY(kelvinbar::StatusNotifierPixmaps AttentionIconPixmap READ noPixmaps)
    Q_PROPERTY(QString AttentionMovieName READ noText)
    Q_PROPERTY(QString IconThemePath READ noText)
    Q_PROPERTY(kelvinbar::StatusNotifierToolTip ToolTip READ toolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu)
    Q_PROPERTY(QDBusObjectPath Menu READ menu)
    Q_PROPERTY(QString XAyatanaLabel READ label)
    Q_PROPERTY(QString XAyatanaLabelGuide READ labelGuide)

  public:
    /// Longer activation tokens are none.
    static constexpr qsizetype longestToken = 1024;

    StatusNotifierItemAdaptor(StatusNotifierItem& item, BusObject& object)
        : QDBusAbstractAdaptor(&object), item_(item) {}

    [[nodiscard]] QString category() const { return "Hardware"; }

    [[nodiscard]] QString id() const { return "kelvinbar"; }

    [[nodiscard]] QString title() const { return item_.content_.title; }

    [[nodiscard]] QString status() const { return "Active"; }

    [[nodiscard]] int windowId() const { return 0; }

    [[nodiscard]] StatusNotifierPixmaps iconPixmaps() const { return item_.content_.iconPixmaps; }

    [[nodiscard]] QString noText() const { return {}; }

    [[nodiscard]] StatusNotifierPixmaps noPixmaps() const { return {}; }

    [[nodiscard]] StatusNotifierToolTip toolTip() const {
        return {{}, {}, item_.content_.toolTipTitle, item_.content_.toolTipText};
    }

    /// False, or hosts would open the menu instead of calling Activate.
    [[nodiscard]] bool itemIsMenu() const { return false; }

    [[nodiscard]] QDBusObjectPath menu() const;

    [[nodiscard]] QString label() const { return item_.content_.label; }

    /// The widest label with the same number of digits. Hosts reserve that width.
    [[nodiscard]] QString labelGuide() const;

  public slots: // NOLINT(readability-redundant-access-specifiers)

    void Activate(int x, int y) const { item_.handlers_.activated({x, y}); }

    /// Wayland hosts call it before Activate.
    void ProvideXdgActivationToken(const QString& token) const {
        if (token.size() <= longestToken) item_.handlers_.activationTokenGiven(token);
    }

    // The protocol requires these. A left click and the menu cover what they would do.
    void SecondaryActivate(int /*x*/, int /*y*/) {}

    void ContextMenu(int /*x*/, int /*y*/) {}

    void Scroll(int /*delta*/, const QString& /*orientation*/) {}

  signals:
    void NewTitle();
    void NewIcon();
    void NewToolTip();
    void NewStatus(const QString& status);
    void XAyatanaNewLabel(const QString& label, const QString& guide);

  private:
    StatusNotifierItem& item_;
};

// NOLINTEND(readability-convert-member-functions-to-static)

} // namespace kelvinbar
