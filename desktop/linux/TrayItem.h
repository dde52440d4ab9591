#pragma once

#include "base/Log.h"
#include "desktop/Desktop.h"
#include "desktop/linux/ReadingIcon.h"
#include "desktop/linux/StatusMenu.h"
#include "desktop/linux/StatusNotifierItem.h"
#include "desktop/linux/XEmbedTray.h"

#include <QDBusConnection>
#include <QRect>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// The status item of a Linux desktop: icon, label, tooltip and menu. A StatusNotifierItem in desktops that
/// support it, otherwise an icon in an XEmbed tray, never both at a time.
///
/// Most trays show no text, so the first pinned reading is drawn into the icon; only trays that support
/// labels show all pinned readings beside it. The rest is in the tooltip and the menu.
///
/// Limits: the place of the icon is unknown until it is clicked, and then only that of the click. Pitfall:
/// changes are published when control returns to the event loop, together.
namespace kelvinbar {

/// How the desktop's tray displays items. Trays do not report this; it is derived from the desktop's name.
struct TrayStyle {
    bool showsLabels = false; ///< displays text beside the icon
    bool isDark = true;       ///< has a dark background
};

/// `desktopName` is the value of XDG_CURRENT_DESKTOP, `hasDarkColors` whether programs have a dark theme.
TrayStyle trayStyle(const std::string& desktopName, bool hasDarkColors);

/// What the item has to know of the screens and of the panel. Main thread.
struct TraySurroundings {
    /// The place of a click that a host reports, in Qt's coordinates. No value if it is unknown.
    std::function<std::optional<QPoint>(QPoint reported)> placeOfClick;
    std::function<Rect(const Rect& place)> visibleFrameAround;
    /// Whether the click has already taken effect, because its press has dismissed the panel.
    std::function<bool()> takesClick;
};

/// A status item. The destructor removes it from the tray. Main thread.
class TrayItem final : public StatusItem, public StatusItemButton {
  public:
    /// `handlers`, `surroundings` and the log must outlive the object.
    TrayItem(const QDBusConnection& bus, TrayStyle style, const DesktopHandlers& handlers,
             const TraySurroundings& surroundings, Log& log);

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

    /// Handles a choice in the menu like a click at the last place.
    void activateAgain();

  private:
    void publishSoon();
    void publish();
    void publishMenu(const std::vector<PinnedReading>& pinned);
    void publishXEmbedIcon();
    [[nodiscard]] StatusNotifierPixmaps iconPixmaps(const std::vector<PinnedReading>& pinned);

    TrayStyle style_;
    const DesktopHandlers& handlers_;
    const TraySurroundings& surroundings_;
    Log& log_;
    std::function<void()> action_;
    std::optional<QRect> lastClick_;
    StatusNotifierContent content_;
    ReadingIcons readingIcons_;
    StatusNotifierPixmaps ownIcon_;
    QString drawnText_;
    StatusNotifierPixmaps drawnIcon_;
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
    TrayStatusBar(QDBusConnection bus, TrayStyle style, const DesktopHandlers& handlers,
                  TraySurroundings surroundings, Log& log)
        : bus_(std::move(bus))
        , style_(style)
        , handlers_(handlers)
        , surroundings_(std::move(surroundings))
        , log_(log) {}

    std::unique_ptr<StatusItem> makeItem() override;
    [[nodiscard]] bool hasImageResource(const std::string& name) const override;

  private:
    QDBusConnection bus_;
    TrayStyle style_;
    const DesktopHandlers& handlers_;
    TraySurroundings surroundings_;
    Log& log_;
};

} // namespace kelvinbar
