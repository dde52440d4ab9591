#include "desktop/linux/tray/PlasmaColors.h"

#include "desktop/linux/files/RegularFile.h"
#include "desktop/linux/settings/SerializedValues.h"

#include <QByteArray>
#include <QColor>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>
#include <algorithm>
#include <cstddef>

namespace kelvinbar {

namespace {

constexpr auto themeSettings = "plasmarc";
constexpr auto colorSettings = "kdeglobals";

QStringList existing(const QStringList& folders, const QString& file) {
    QStringList paths;
    for (const QString& folder : folders) {
        const QString path = folder + '/' + file;
        if (QFileInfo(path).isFile()) paths.append(path);
    }
    return paths;
}

/// QSettings only reads what it can read without harm.
bool isSafe(const QString& path) {
    constexpr std::size_t largestFile = std::size_t{1024} * 1024; // in bytes; these files have a few thousand
    const auto content = regularContent(path.toStdString(), largestFile);
    return content && !holdsSerializedValues(QByteArray::fromStdString(*content));
}

QVariant valueIn(const QString& path, const QString& key) {
    if (!isSafe(path)) return {};
    return QSettings(path, QSettings::IniFormat).value(key);
}

/// Names come from files and become part of a path.
bool isPlainName(const QString& name) { return !name.isEmpty() && !name.contains('/') && name != ".."; }

/// Whether the windows of the colours in this file are dark. Colours are written as "red,green,blue".
std::optional<bool> hasDarkWindows(const QString& path) {
    const QStringList parts = valueIn(path, "Colors:Window/BackgroundNormal").toStringList();
    if (parts.size() < 3) return std::nullopt;
    return qGray(parts[0].toInt(), parts[1].toInt(), parts[2].toInt()) < 128;
}

/// The first value that a file has, in order of precedence.
template <typename ReadFile>
std::optional<bool> firstOf(const QStringList& paths, ReadFile read) {
    for (const QString& path : paths) {
        if (const std::optional<bool> found = read(path)) return found;
    }
    return std::nullopt;
}

QString themeName(const PlasmaFolders& folders) {
    for (const QString& path : existing(folders.config, themeSettings)) {
        QString name = valueIn(path, "Theme/name").toString();
        if (!name.isEmpty()) return name;
    }
    return {};
}

/// No value for a theme that has the colours of programs.
std::optional<bool> hasDarkTheme(const PlasmaFolders& folders) {
    const QString theme = themeName(folders);
    if (!isPlainName(theme)) return std::nullopt;
    return firstOf(existing(folders.data, "plasma/desktoptheme/" + theme + "/colors"), hasDarkWindows);
}

/// The colour scheme that the file names. Settings that were never changed only have the name.
std::optional<bool> hasDarkScheme(const QStringList& dataFolders, const QString& settings) {
    const QString scheme = valueIn(settings, "ColorScheme").toString(); // of [General], which QSettings omits
    if (!isPlainName(scheme)) return std::nullopt;
    return firstOf(existing(dataFolders, "color-schemes/" + scheme + ".colors"), hasDarkWindows);
}

std::optional<bool> hasDarkPrograms(const PlasmaFolders& folders) {
    return firstOf(existing(folders.config, colorSettings), [&](const QString& path) {
        const std::optional<bool> own = hasDarkWindows(path);
        return own ? own : hasDarkScheme(folders.data, path);
    });
}

} // namespace

PlasmaFolders PlasmaFolders::ofThisUser() {
    PlasmaFolders folders{QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation),
                          QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation)};
    // What the global theme sets. Only programs that Plasma starts have it in XDG_CONFIG_DIRS.
    const QString ofGlobalTheme = folders.config.constFirst() + "/kdedefaults";
    if (!folders.config.contains(ofGlobalTheme)) folders.config.insert(1, ofGlobalTheme);
    return folders;
}

std::optional<bool> hasDarkPlasmaPanel(const PlasmaFolders& folders) {
    const std::optional<bool> ofTheme = hasDarkTheme(folders);
    return ofTheme ? ofTheme : hasDarkPrograms(folders);
}

QStringList plasmaPanelSettings(const PlasmaFolders& folders) {
    return existing(folders.config, themeSettings) + existing(folders.config, colorSettings);
}

QString folderOfMissingPlasmaPanelSettings(const PlasmaFolders& folders) {
    const QStringList ofUser = folders.config.first(std::min<qsizetype>(1, folders.config.size()));
    const bool hasBoth =
        !existing(ofUser, themeSettings).isEmpty() && !existing(ofUser, colorSettings).isEmpty();
    return hasBoth ? QString() : ofUser.value(0);
}

} // namespace kelvinbar
