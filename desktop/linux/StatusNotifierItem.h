#pragma once

#include "desktop/linux/StatusNotifierTypes.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QPoint>
#include <QString>
#include <functional>

namespace kelvinbar {

class Log;

/// What a status item shows, in the words of the protocol.
struct StatusNotifierContent {
    QString title; ///< of the item
    QString label; ///< text beside the icon, for hosts that show one
    StatusNotifierPixmaps iconPixmaps;
    QString toolTipTitle;
    QString toolTipText;
};

/// An item in the desktop's tray by the StatusNotifierItem protocol (org.kde.StatusNotifierItem), with the
/// label extension (XAyatanaLabel). Registers itself with every watcher that appears; hosts hear only of what
/// changed.
class StatusNotifierItem final : public QObject {
    Q_OBJECT

  public:
    using Activation = std::function<void(QPoint)>;

    /// `onActivated` gets the place on the screen at which the host was clicked.
    StatusNotifierItem(QDBusConnection bus, Activation onActivated, Log& log);
    StatusNotifierItem(const StatusNotifierItem&) = delete;
    StatusNotifierItem& operator=(const StatusNotifierItem&) = delete;
    ~StatusNotifierItem() override;

    void setContent(const StatusNotifierContent& content);

    [[nodiscard]] const StatusNotifierContent& content() const { return content_; }

    /// Whether some watcher runs that keeps items.
    [[nodiscard]] bool hasWatcher() const { return hasWatcher_; }

  signals:
    void watcherChanged();

  private:
    friend class StatusNotifierItemAdaptor;

    void watcherAppeared();
    void watcherVanished();
    void registerWithWatcher();
    void registrationEnded(const QDBusError& error);

    Log& log_;
    QDBusConnection bus_;
    QString service_;
    QDBusServiceWatcher watcher_;
    bool hasWatcher_ = false;
    Activation onActivated_;
    StatusNotifierContent content_;
    class StatusNotifierItemAdaptor* adaptor_;
};

// NOLINTBEGIN(readability-convert-member-functions-to-static): the bus asks objects
/// The item as hosts see it.
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
    explicit StatusNotifierItemAdaptor(StatusNotifierItem& item) : QDBusAbstractAdaptor(&item), item_(item) {}

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

    /// A true one would turn the click into the menu.
    [[nodiscard]] bool itemIsMenu() const { return false; }

    [[nodiscard]] QDBusObjectPath menu() const;

    [[nodiscard]] QString label() const { return item_.content_.label; }

    /// A text as wide as the label can be with as many digits: hosts keep that much room.
    [[nodiscard]] QString labelGuide() const;

  public slots: // NOLINT(readability-redundant-access-specifiers)

    void Activate(int x, int y) { item_.onActivated_({x, y}); }

    // Neither does anything: what they should do, a click and the menu do.
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
