#pragma once

#include <QStringList>
#include <optional>

/// The colours of Plasma's panel, from Plasma's files. They need not be those of programs: a Plasma theme may
/// have its own, as Breeze Dark has, and Breeze Twilight combines it with light programs.
namespace kelvinbar {

/// The folders of Plasma's settings and themes, those that take precedence first.
struct PlasmaFolders {
    QStringList config;
    QStringList data;

    [[nodiscard]] static PlasmaFolders ofThisUser();
};

/// Whether Plasma's panel has a dark background. No value if no file tells.
std::optional<bool> hasDarkPlasmaPanel(const PlasmaFolders& folders);

/// The existing settings files that decide it.
QStringList plasmaPanelSettings(const PlasmaFolders& folders);

/// The user's folder while it lacks one of these files, which the user's next choice may create there.
/// Otherwise empty.
QString folderOfMissingPlasmaPanelSettings(const PlasmaFolders& folders);

} // namespace kelvinbar
