#include "desktop/linux/tray/TrayItem.h"

#include "desktop/StatusMenuCommands.h"
#include "desktop/linux/tray/LabelSupport.h"
#include "qt/QtGeometry.h"
#include "qt/QtText.h"

#include <QFile>
#include <QImage>
#include <string>
#include <utility>

namespace kelvinbar {

namespace {

const QString programName = "Kelvinbar";

/// The handler may destroy its owner, and is kept until it returns.
void call(const std::function<void()>& handler) {
    const auto kept = handler;
    if (kept) kept();
}

/// The text of a tooltip that has the program's name as its title: without the name and the mark behind it.
QString withoutProgramName(const QString& text) {
    for (const QString mark : {" • ", " - "}) {
        if (text.startsWith(programName + mark)) return text.sliced(programName.size() + mark.size());
    }
    return text;
}

} // namespace

TrayItem::TrayItem(const QDBusConnection& bus, const TrayContext& context, const DesktopHandlers& handlers,
                   Log& log)
    : context_(context)
    , handlers_(handlers)
    , log_(log)
    , alternates_(context.userDefaults.number(alternatesKey) != 0)
    , icon_(context.turn, [this] { showNextReading(); })
    , menu_(bus)
    , item_(bus,
            {.activated =
                 [this](QPoint reported) {
                     const auto place = context_.surroundings.placeOfClick(reported);
                     activate(place ? std::optional(QRect(*place, QSize(1, 1))) : std::nullopt);
                 },
             .activationTokenGiven = [this](const QString& token) { activationToken_ = token; }},
            log)
    , xembedIcon_(makeXEmbedIcon()) {
    content_.title = programName;
    content_.toolTipTitle = programName;
    icon_.setAlternates(alternates_);
    icon_.setOnDark(context_.colors.isDark());
    decideOnLabels();
    logStyle();
    publish();
    followTray();
}

void TrayItem::followTray() {
    QObject::connect(&item_, &StatusNotifierItem::watcherChanged, [this] { watcherChanged(); });
    QObject::connect(&context_.busKeeper, &BusKeeper::reconnected, &item_,
                     [this](const QDBusConnection& bus) { moveTo(bus); });
    QObject::connect(&context_.colors, &BarColors::changed, &item_, [this] { colorsChanged(); });
}

/// The menu first: a host reads it as soon as the item is registered.
void TrayItem::moveTo(const QDBusConnection& bus) {
    menu_.moveTo(bus);
    item_.moveTo(bus);
}

std::unique_ptr<XEmbedTrayIcon> TrayItem::makeXEmbedIcon() {
    if (!context_.makeXEmbedIcon) return nullptr;
    return context_.makeXEmbedIcon({.activated = [this](QRect place) { activate(place); },
                                    .menuEntries = [this] { return menu_.entries(); }});
}

void TrayItem::setImageLeftOfTitle(const StatusImage& image) {
    // Icon themes have no symbols of these names, so the program's own images are used for both sources.
    icon_.setOwnImage(image.name);
    publishSoon();
}

void TrayItem::setTitle(const StatusTitle& title) {
    content_.label = qtText(title.text).trimmed();
    content_.title = content_.label.isEmpty() ? programName : content_.label;
    publishSoon();
}

void TrayItem::setToolTip(const std::string& text) {
    toolTip_ = qtText(text);
    // Hosts may read the text as markup, and show the title above it.
    content_.toolTipText = withoutProgramName(toolTip_).toHtmlEscaped();
    publishSoon();
}

void TrayItem::setAction(std::function<void()> action) { action_ = std::move(action); }

void TrayItem::watcherChanged() {
    const bool earlier = showsLabels_;
    decideOnLabels();
    if (showsLabels_ != earlier) logStyle();
    publish();
}

void TrayItem::decideOnLabels() {
    showsLabels_ = !isForXEmbedTray() && showsLabels(item_.watcherProcess(), context_.desktopNames);
    icon_.setDrawsReadings(!showsLabels_);
}

void TrayItem::colorsChanged() {
    icon_.setOnDark(context_.colors.isDark());
    logStyle();
    publishSoon();
}

void TrayItem::logStyle() {
    log_.write(LogCategory::tray, LogLevel::debug, [this] {
        return std::string(showsLabels_ ? "readings are beside the icon"
                                        : "readings are drawn into the icon") +
               ", for a " + (context_.colors.isDark() ? "dark" : "light") + " panel";
    });
}

std::optional<bool> TrayItem::hasTray() const {
    const std::optional<bool> hasHost = item_.hasHost();
    if (!hasHost || *hasHost || xembedIcon_ == nullptr) return hasHost;
    return xembedIcon_->hasTray();
}

/// Publishes from the event loop, because title and tooltip are set one after the other.
void TrayItem::publishSoon() {
    if (std::exchange(isPublishPosted_, true)) return;
    QMetaObject::invokeMethod(&item_, [this] { publish(); }, Qt::QueuedConnection);
}

void TrayItem::publish() {
    isPublishPosted_ = false;
    const std::vector<PinnedReading> pinned = pinnedReadings();
    content_.iconPixmaps = icon_.pixmaps(pinned);
    item_.setContent(content_);
    publishXEmbedIcon();
    publishMenu(pinned);
}

std::vector<PinnedReading> TrayItem::pinnedReadings() const {
    return handlers_.pinnedReadings ? handlers_.pinnedReadings() : std::vector<PinnedReading>();
}

void TrayItem::showNextReading() {
    icon_.goOn(pinnedReadings());
    publish();
}

void TrayItem::setAlternates(bool alternates) {
    alternates_ = alternates;
    icon_.setAlternates(alternates);
    if (alternates) {
        context_.userDefaults.setNumber(alternatesKey, 1);
    } else {
        context_.userDefaults.remove(alternatesKey);
    }
    publishSoon();
}

/// Only where no tray shows the item, so that it is in one tray at a time.
bool TrayItem::isForXEmbedTray() const { return xembedIcon_ != nullptr && item_.hasHost() == false; }

void TrayItem::publishXEmbedIcon() {
    if (xembedIcon_ == nullptr) return;
    const bool isNeeded = isForXEmbedTray() && !content_.iconPixmaps.isEmpty();
    if (isNeeded && std::exchange(xembedPixmaps_, content_.iconPixmaps) != content_.iconPixmaps) {
        QList<QImage> sizes;
        for (const StatusNotifierPixmap& pixmap : content_.iconPixmaps) sizes.append(imageOf(pixmap));
        xembedIcon_->setIcon(sizes);
    }
    if (isNeeded) xembedIcon_->setToolTip(toolTip_);
    xembedIcon_->setShown(isNeeded);
    if (std::exchange(isInXEmbedTray_, isNeeded) == isNeeded) return;
    log_.write(LogCategory::tray, LogLevel::info,
               isNeeded ? "the icon is offered to an XEmbed tray"
                        : "the icon is taken out of the XEmbed tray");
}

void TrayItem::publishMenu(const std::vector<PinnedReading>& pinned) {
    std::vector<StatusMenuEntry> entries;
    for (const StatusMenuItem& item : statusMenuItems(pinned)) {
        if (item.identity == lastSeparatorIdentity) {
            if (!showsLabels_) entries.push_back(alternationEntry());
            appendDesktopEntries(entries);
        }
        entries.push_back(entryOf(item));
    }
    menu_.setEntries(std::move(entries));
}

StatusMenuEntry TrayItem::entryOf(const StatusMenuItem& item) {
    return {.identity = qtText(item.identity),
            .text = qtText(item.text),
            .action = [this, command = item.command](uint timestamp) { run(command, timestamp); },
            .isChecked = std::nullopt};
}

StatusMenuEntry TrayItem::alternationEntry() {
    return {.identity = "alternate",
            .text = "Alternate Readings in Icon",
            .action = [this](uint) { setAlternates(!alternates_); },
            .isChecked = alternates_};
}

void TrayItem::appendDesktopEntries(std::vector<StatusMenuEntry>& entries) {
    if (!context_.desktopEntries) return;
    for (StatusMenuEntry& entry : context_.desktopEntries()) {
        const auto chosen = [this, action = std::move(entry.action)](uint timestamp) {
            action(timestamp);
            publishSoon();
        };
        entry.action = chosen;
        entries.push_back(std::move(entry));
    }
}

void TrayItem::run(StatusMenuCommand command, uint timestamp) {
    const bool opensPanel =
        command == StatusMenuCommand::openPanel || command == StatusMenuCommand::openAbout;
    if (opensPanel) giveFocusRight(timestamp);
    call(handlerOf(command, handlers_));
}

void TrayItem::activate(std::optional<QRect> place) {
    log_.write(LogCategory::tray, LogLevel::debug, [place] {
        return place ? "clicked at " + std::to_string(place->x()) + ", " + std::to_string(place->y())
                     : std::string("clicked somewhere");
    });
    if (place) lastClick_ = place;
    if (!context_.surroundings.takesClick()) toggle();
}

void TrayItem::toggle() {
    giveFocusRight(0); // clicks come without a time
    call(action_);
}

void TrayItem::giveFocusRight(uint timestamp) {
    const FocusRight right{std::exchange(activationToken_, {}), timestamp};
    if (context_.focusRightGiven) context_.focusRightGiven(right);
}

std::optional<Rect> TrayItem::frameOnScreen() const {
    if (!lastClick_) return std::nullopt;
    return rectOf(*lastClick_);
}

std::optional<Rect> TrayItem::visibleFrameOfScreen() const {
    const auto frame = frameOnScreen();
    return frame ? std::optional(context_.surroundings.visibleFrameAround(*frame)) : std::nullopt;
}

std::unique_ptr<StatusItem> TrayStatusBar::makeItem() {
    auto item = std::make_unique<TrayItem>(bus_, context_, handlers_, log_);
    item_ = item.get();
    return item;
}

std::optional<bool> TrayStatusBar::hasTray() const {
    return item_.isNull() ? std::nullopt : item_->hasTray();
}

bool TrayStatusBar::hasImageResource(const std::string& name) const {
    return QFile::exists(TrayIcon::resourcePath(name, iconSides.front()));
}

} // namespace kelvinbar
