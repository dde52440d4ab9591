#include "desktop/linux/TrayItem.h"

#include "base/Text.h"
#include "desktop/linux/ReadingIcon.h"
#include "desktop/qt/QtScreens.h"
#include "qt/QtGeometry.h"
#include "qt/QtText.h"

#include <QFile>
#include <QImage>
#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace kelvinbar {

namespace {

/// Desktops whose trays display labels.
constexpr std::array<std::string_view, 4> labellingDesktops{"gnome", "unity", "mate", "pantheon"};

/// The resource with the image `name`, `side` pixels wide and high.
QString resourcePath(const std::string& name, int side) {
    return QString(":/artwork/%1-%2.argb").arg(QString::fromStdString(name)).arg(side);
}

/// The image in every size that hosts request.
StatusNotifierPixmaps imagePixmaps(const std::string& name) {
    StatusNotifierPixmaps pixmaps;
    for (const int side : iconSides) {
        QFile pixels(resourcePath(name, side));
        if (pixels.open(QIODevice::ReadOnly)) pixmaps.append({side, side, pixels.readAll()});
    }
    return pixmaps;
}

std::string describedStyle(TrayStyle style) {
    return std::string(style.showsLabels ? "readings are beside the icon"
                                         : "readings are drawn into the icon") +
           ", for a " + (style.isDark ? "dark" : "light") + " panel";
}

} // namespace

TrayStyle trayStyle(const std::string& desktopName, bool hasDarkColors) {
    const std::string name = asciiLowercased(desktopName);
    const bool showsLabels = std::ranges::any_of(
        labellingDesktops, [&](std::string_view desktop) { return contains(name, desktop); });
    // Only KDE's panel has the colours of programs. Other panels are nearly always dark; on a light one the
    // outline keeps the text legible.
    const bool followsColors = contains(name, "kde");
    return {.showsLabels = showsLabels, .isDark = !followsColors || hasDarkColors};
}

TrayItem::TrayItem(const QDBusConnection& bus, TrayStyle style, const DesktopHandlers& handlers, Log& log)
    : style_(style)
    , handlers_(handlers)
    , log_(log)
    , readingIcons_(style.isDark)
    , menu_(bus)
    , item_(
          bus,
          [this](QPoint place) {
              activate({place, QSize(1, 1)});
          },
          log)
    , xembedIcon_(makeXEmbedTrayIcon([this](QRect place) { activate(place); })) {
    QObject::connect(&item_, &StatusNotifierItem::watcherChanged, [this] { publishXEmbedIcon(); });
    log_.write(LogCategory::tray, LogLevel::debug, [style] { return describedStyle(style); });
    content_.title = "Kelvinbar";
    content_.toolTipTitle = "Kelvinbar";
    publish();
}

void TrayItem::setImageLeftOfTitle(const StatusImage& image) {
    // Icon themes have no symbols of these names, so the program's own images are used for both sources.
    ownIcon_ = imagePixmaps(image.name);
    publishSoon();
}

void TrayItem::setTitle(const StatusTitle& title) {
    content_.label = qtText(title.text).trimmed();
    content_.title = content_.label.isEmpty() ? "Kelvinbar" : content_.label;
    publishSoon();
}

void TrayItem::setToolTip(const std::string& text) {
    content_.toolTipText = qtText(text);
    publishSoon();
}

void TrayItem::setAction(std::function<void()> action) { action_ = std::move(action); }

/// Publishes from the event loop, because title and tooltip are set one after the other.
void TrayItem::publishSoon() {
    if (std::exchange(isPublishPosted_, true)) return;
    QMetaObject::invokeMethod(
        &item_, [this] { publish(); }, Qt::QueuedConnection);
}

void TrayItem::publish() {
    isPublishPosted_ = false;
    const auto pinned = handlers_.pinnedReadings ? handlers_.pinnedReadings() : std::vector<PinnedReading>();
    content_.iconPixmaps = iconPixmaps(pinned);
    item_.setContent(content_);
    publishXEmbedIcon();
    publishMenu(pinned);
}

StatusNotifierPixmaps TrayItem::iconPixmaps(const std::vector<PinnedReading>& pinned) {
    if (style_.showsLabels || pinned.empty()) return ownIcon_;
    const QString text = iconText(qtText(pinned.front().compactValue));
    if (text.isEmpty()) return ownIcon_;
    if (text != std::exchange(drawnText_, text)) drawnIcon_ = readingIcons_.pixmaps(text);
    return drawnIcon_;
}

/// Shows the XEmbed icon only while no watcher runs, so that the item is in one tray at a time.
void TrayItem::publishXEmbedIcon() {
    if (xembedIcon_ == nullptr) return;
    const bool isNeeded = !item_.hasWatcher() && !content_.iconPixmaps.isEmpty();
    if (isNeeded && std::exchange(xembedPixmaps_, content_.iconPixmaps) != content_.iconPixmaps) {
        QList<QImage> sizes;
        for (const StatusNotifierPixmap& pixmap : content_.iconPixmaps) sizes.append(imageOf(pixmap));
        xembedIcon_->setIcon(sizes);
    }
    if (isNeeded) xembedIcon_->setToolTip(content_.toolTipText);
    xembedIcon_->setShown(isNeeded);
    if (std::exchange(isInXEmbedTray_, isNeeded) == isNeeded) return;
    log_.write(LogCategory::tray, LogLevel::info,
               isNeeded ? "the icon is offered to an XEmbed tray"
                        : "the icon is taken out of the XEmbed tray");
}

void TrayItem::publishMenu(const std::vector<PinnedReading>& pinned) {
    std::vector<StatusMenuEntry> entries;
    entries.reserve(pinned.size() + 3);
    const auto open = [this] { activateAgain(); };
    for (const PinnedReading& reading : pinned) {
        entries.push_back({qtText(reading.name + ": " + reading.value), open});
    }
    if (!pinned.empty()) entries.emplace_back();
    entries.push_back({"Open Kelvinbar", open});
    entries.push_back({"Quit Kelvinbar", [this] {
                           if (handlers_.quit) handlers_.quit();
                       }});
    menu_.setEntries(std::move(entries));
}

void TrayItem::activate(QRect place) {
    log_.write(LogCategory::tray, LogLevel::debug, [place] {
        return "clicked at " + std::to_string(place.x()) + ", " + std::to_string(place.y());
    });
    // Some hosts do not know the position and report 0, 0.
    if (!place.topLeft().isNull()) lastClick_ = place;
    activateAgain();
}

void TrayItem::activateAgain() {
    const auto action = action_; // a copy: the action may destroy the item
    if (action) action();
}

std::optional<Rect> TrayItem::frameOnScreen() const {
    if (!lastClick_) return std::nullopt;
    return rectOf(*lastClick_);
}

std::optional<Rect> TrayItem::visibleFrameOfScreen() const {
    const auto frame = frameOnScreen();
    return frame ? std::optional(screenAround(frame).visibleFrame) : std::nullopt;
}

std::unique_ptr<StatusItem> TrayStatusBar::makeItem() {
    return std::make_unique<TrayItem>(bus_, style_, handlers_, log_);
}

bool TrayStatusBar::hasImageResource(const std::string& name) const {
    return QFile::exists(resourcePath(name, iconSides.front()));
}

} // namespace kelvinbar
