#pragma once

#include "base/Log.h"
#include "desktop/Desktop.h"
#include "desktop/linux/LegacyTray.h"
#include "desktop/linux/ReadingIcon.h"
#include "desktop/linux/StatusMenu.h"
#include "desktop/linux/StatusNotifierItem.h"

#include <QDBusConnection>
#include <QRect>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kelvinbar {

/// How the tray of a desktop shows an item.
struct TrayStyle {
    bool showsLabels = false; ///< whether it shows text beside the icon
    bool isDark = true;       ///< whether its background is
};

/// The style of the tray by the desktop's name (XDG_CURRENT_DESKTOP) and the colours of its programs.
TrayStyle trayStyle(const std::string& desktopName, bool hasDarkColors);

/// The status item in the tray of a Linux desktop: label, or where the tray shows none the first pinned
/// reading drawn into the icon; tooltip; menu.
class TrayItem final : public StatusItem, public StatusItemButton {
  public:
    TrayItem(const QDBusConnection& bus, TrayStyle style, const DesktopHandlers& handlers, Log& log);

    StatusItemButton* button() override { return this; }

    void setImageLeftOfTitle(const StatusImage& image) override;
    void setTitle(const StatusTitle& title) override;
    void setToolTip(const std::string& text) override;
    void setAction(std::function<void()> action) override;
    [[nodiscard]] std::optional<Rect> frameOnScreen() const override;
    [[nodiscard]] std::optional<Rect> visibleFrameOfScreen() const override;

    /// What a click at a place on the screen does.
    void activate(QRect place);

    /// What a click at the last place does.
    void activateAgain();

  private:
    void publishSoon();
    void publish();
    void publishMenu(const std::vector<PinnedReading>& pinned);
    void publishLegacyIcon();
    [[nodiscard]] StatusNotifierPixmaps iconPixmaps(const std::vector<PinnedReading>& pinned);

    TrayStyle style_;
    const DesktopHandlers& handlers_;
    Log& log_;
    std::function<void()> action_;
    std::optional<QRect> lastClick_;
    StatusNotifierContent content_;
    ReadingIcons readingIcons_;
    StatusNotifierPixmaps ownIcon_;
    QString drawnText_;
    StatusNotifierPixmaps drawnIcon_;
    StatusNotifierPixmaps legacyPixmaps_; ///< what the older tray's icon was made of
    bool isPublishPosted_ = false;
    bool isInLegacyTray_ = false;
    StatusMenu menu_;
    StatusNotifierItem item_;
    std::unique_ptr<LegacyTrayIcon> legacyIcon_; ///< null where no older tray can be needed
};

class TrayStatusBar final : public StatusBar {
  public:
    TrayStatusBar(QDBusConnection bus, TrayStyle style, const DesktopHandlers& handlers, Log& log)
        : bus_(std::move(bus)), style_(style), handlers_(handlers), log_(log) {}

    std::unique_ptr<StatusItem> makeItem() override;
    [[nodiscard]] bool hasImageResource(const std::string& name) const override;

  private:
    QDBusConnection bus_;
    TrayStyle style_;
    const DesktopHandlers& handlers_;
    Log& log_;
};

} // namespace kelvinbar
