#pragma once

#include "base/Log.h"
#include "desktop/Desktop.h"
#include "desktop/linux/session/BusKeeper.h"
#include "desktop/linux/session/FocusRight.h"
#include "desktop/linux/tray/BarColors.h"
#include "desktop/linux/tray/StatusMenu.h"
#include "desktop/linux/tray/StatusNotifierItem.h"
#include "desktop/linux/tray/TrayIcon.h"
#include "desktop/linux/tray/XEmbedTray.h"
#include "store/UserDefaults.h"

#include <QDBusConnection>
#include <QObject>
#include <QPointer>
#include <QRect>
#include <QString>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// The status item of a Linux desktop: icon, label, tooltip and menu. A StatusNotifierItem in desktops that
/// support it, otherwise an icon in an XEmbed tray, never both at a time.
///
/// Most trays show no text, so a pinned reading is drawn into the icon: the first that has a number, or all
/// of these by turns if the user wants that. Only trays that support labels show all pinned readings beside
/// it. The rest is in the tooltip and the menu.
///
/// Limits: the place of the icon is unknown until it is clicked, and then only that of the click. Pitfall:
/// changes are published when control returns to the event loop, together.
namespace kelvinbar {

/// What the item has to know of the screens and of the panel. Main thread.
struct TraySurroundings {
    /// The place of a click that a host reports, in Qt's coordinates. No value if it is unknown.
    std::function<std::optional<QPoint>(QPoint reported)> placeOfClick;
    std::function<Rect(const Rect& place)> visibleFrameAround;
    /// Whether the click has already taken effect, because its press has dismissed the panel.
    std::function<bool()> takesClick;
};

/// What an item needs besides the bus. References outlive it; functions may be empty, and are called on the
/// main thread.
struct TrayContext {
    std::string desktopNames; ///< the value of XDG_CURRENT_DESKTOP
    BarColors& colors;
    UserDefaults& userDefaults;
    BusKeeper& busKeeper;
    TraySurroundings surroundings; ///< none of them empty
    /// Makes the icon for XEmbed trays. Empty, or returns null, where these are not supported.
    std::function<std::unique_ptr<XEmbedTrayIcon>(XEmbedTrayHandlers)> makeXEmbedIcon;
    /// Entries of the menu that the desktop adds. Asked again after one of them has been chosen.
    std::function<std::vector<StatusMenuEntry>()> desktopEntries;
    /// Called right before a window is opened or closed at the user's request.
    std::function<void(const FocusRight&)> focusRightGiven;
    /// How long each reading is in the icon when they are shown by turns.
    std::chrono::milliseconds turn{4000};
};

/// A status item. The destructor removes it from the tray. Main thread.
class TrayItem final : public QObject, public StatusItem, public StatusItemButton {
  public:
    /// The preference of the user to see the readings in the icon by turns: 1, or absent.
    static constexpr auto alternatesKey = "KelvinbarAlternatesIcon";

    /// `context`, `handlers` and the log must outlive the object.
    TrayItem(const QDBusConnection& bus, const TrayContext& context, const DesktopHandlers& handlers,
             Log& log);

    StatusItemButton* button() override { return this; }

    void setImageLeftOfTitle(const StatusImage& image) override;
    void setTitle(const StatusTitle& title) override;
    void setToolTip(const std::string& text) override;
    void setAction(std::function<void()> action) override;
    /// Where the item was last clicked.
    [[nodiscard]] std::optional<Rect> frameOnScreen() const override;
    [[nodiscard]] std::optional<Rect> visibleFrameOfScreen() const override;

    /// Handles a click on the item. Without a place, it is where the item was last clicked.
    void activate(std::optional<QRect> place);

    /// Whether a tray shows the item at the moment. No value while a watcher is yet to answer.
    [[nodiscard]] std::optional<bool> hasTray() const;

  private:
    [[nodiscard]] std::unique_ptr<XEmbedTrayIcon> makeXEmbedIcon();
    void toggle();
    void giveFocusRight(uint timestamp);
    void run(StatusMenuCommand command, uint timestamp);
    [[nodiscard]] StatusMenuEntry entryOf(const StatusMenuItem& item);
    [[nodiscard]] StatusMenuEntry alternationEntry();
    void appendDesktopEntries(std::vector<StatusMenuEntry>& entries);
    void setAlternates(bool alternates);
    void followTray();
    void moveTo(const QDBusConnection& bus);
    void watcherChanged();
    void decideOnLabels();
    void colorsChanged();
    void logStyle();
    void publishSoon();
    void publish();
    void publishMenu(const std::vector<PinnedReading>& pinned);
    [[nodiscard]] bool isForXEmbedTray() const;
    void publishXEmbedIcon();
    void showNextReading();
    [[nodiscard]] std::vector<PinnedReading> pinnedReadings() const;

    const TrayContext& context_;
    const DesktopHandlers& handlers_;
    Log& log_;
    std::function<void()> action_;
    std::optional<QRect> lastClick_;
    QString activationToken_; ///< of the host, for the next click or choice
    QString toolTip_;
    StatusNotifierContent content_;
    bool showsLabels_ = false;
    bool alternates_; ///< the user's choice
    TrayIcon icon_;
    StatusNotifierPixmaps xembedPixmaps_; ///< content of `xembedIcon_`
    bool isPublishPosted_ = false;
    bool isInXEmbedTray_ = false;
    StatusMenu menu_;
    StatusNotifierItem item_;
    std::unique_ptr<XEmbedTrayIcon> xembedIcon_; ///< null if XEmbed trays are not supported
};

/// Creates items in the desktop's tray. Main thread.
class TrayStatusBar final : public StatusBar {
  public:
    /// `handlers` and the log must outlive the object and its items.
    TrayStatusBar(QDBusConnection bus, TrayContext context, const DesktopHandlers& handlers, Log& log)
        : bus_(std::move(bus)), context_(std::move(context)), handlers_(handlers), log_(log) {}

    std::unique_ptr<StatusItem> makeItem() override;
    [[nodiscard]] bool hasImageResource(const std::string& name) const override;

    /// Whether a tray shows the newest item at the moment. No value without an item, or while a watcher is
    /// yet to answer.
    [[nodiscard]] std::optional<bool> hasTray() const;

  private:
    QDBusConnection bus_;
    TrayContext context_;
    const DesktopHandlers& handlers_;
    Log& log_;
    QPointer<const TrayItem> item_;
};

} // namespace kelvinbar
