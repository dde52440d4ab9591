#include "desktop/linux/tray/BarColors.h"

#include "desktop/linux/session/DesktopNames.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPalette>
#include <utility>

namespace kelvinbar {

namespace {

bool hasDarkPalette() {
    const QPalette palette = QGuiApplication::palette();
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

} // namespace

BarColors::BarColors(const std::string& desktopNames, const QDBusConnection& bus, PlasmaFolders folders)
    : folders_(std::move(folders)) {
    if (hasDesktopName(desktopNames, "kde")) follow(bus);
}

void BarColors::moveTo(const QDBusConnection& bus) {
    if (portal_ != nullptr) portal_->moveTo(bus);
}

void BarColors::follow(const QDBusConnection& bus) {
    const PortalSettings::Setting colorScheme("org.freedesktop.appearance", "color-scheme");
    portal_ = std::make_unique<PortalSettings>(bus, std::vector{colorScheme});
    connect(portal_.get(), &PortalSettings::settingRead, this,
            [this](const auto&, const QVariant& scheme) { colorSchemeRead(scheme.toUInt()); });
    files_ = std::make_unique<QFileSystemWatcher>();
    connect(files_.get(), &QFileSystemWatcher::fileChanged, this, &BarColors::update);
    connect(files_.get(), &QFileSystemWatcher::directoryChanged, this, &BarColors::folderChanged);
    qGuiApp->installEventFilter(this);
    followFiles();
    isDark_ = isDarkNow();
}

bool BarColors::eventFilter(QObject* watched, QEvent* event) {
    if (watched == qGuiApp && event->type() == QEvent::ApplicationPaletteChange) update();
    return false;
}

/// Programs replace a settings file when they change it, and the new one is not watched by itself.
QStringList BarColors::newFiles() const {
    QStringList unwatched;
    for (const QString& path : plasmaPanelSettings(folders_)) {
        if (!files_->files().contains(path)) unwatched.append(path);
    }
    return unwatched;
}

void BarColors::followFiles() {
    const QStringList unwatched = newFiles();
    if (!unwatched.isEmpty()) files_->addPaths(unwatched);
    followFolder();
}

/// Only as long as it lacks a file, since other programs change their files in it, too.
void BarColors::followFolder() {
    const QString folder = folderOfMissingPlasmaPanelSettings(folders_);
    const QStringList watched = files_->directories();
    if (watched.contains(folder)) return;
    if (!watched.isEmpty()) files_->removePaths(watched);
    if (!folder.isEmpty()) files_->addPath(folder);
}

void BarColors::folderChanged() {
    if (!newFiles().isEmpty()) update();
}

void BarColors::colorSchemeRead(uint scheme) {
    constexpr uint preferDark = 1;
    constexpr uint preferLight = 2;
    prefersDark_ =
        scheme == preferDark || scheme == preferLight ? std::optional(scheme == preferDark) : std::nullopt;
    update(); // also reads the files again, which may not have been watched
}

void BarColors::update() {
    followFiles();
    const bool isDark = isDarkNow();
    if (std::exchange(isDark_, isDark) != isDark) emit changed();
}

bool BarColors::isDarkNow() const {
    const std::optional<bool> ofPlasma = hasDarkPlasmaPanel(folders_);
    return ofPlasma ? *ofPlasma : prefersDark_.value_or(hasDarkPalette());
}

} // namespace kelvinbar
