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

} // namespace kelvinbar
