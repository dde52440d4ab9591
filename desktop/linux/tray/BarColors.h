#pragma once

#include "desktop/linux/settings/PortalSettings.h"
#include "desktop/linux/tray/PlasmaColors.h"

#include <QDBusConnection>
#include <QFileSystemWatcher>
#include <QObject>
#include <memory>
#include <optional>
#include <string>

namespace kelvinbar {

/// Whether the bar with the status item is dark, for text that is drawn into the icon. Bars are nearly always
/// dark, whatever the colours of programs; on a light one the outline keeps the text legible. Only KDE's bar
/// has colours that can be found out: those of the Plasma theme, else of programs, else what the settings
/// portal or the palette says. They are followed while the program runs.
///
/// Limits: a settings file of Plasma that is new outside the user's folder is noticed with the next change of
/// another one. Nothing is watched on other desktops. Main thread.
class BarColors final : public QObject {
    Q_OBJECT

  public:
    /// `desktopNames` is the value of XDG_CURRENT_DESKTOP, names separated by colons.
    BarColors(const std::string& desktopNames, const QDBusConnection& bus, PlasmaFolders folders);

    /// Goes on on another connection, after the earlier one was lost.
    void moveTo(const QDBusConnection& bus);

    [[nodiscard]] bool isDark() const { return isDark_; }

    bool eventFilter(QObject* watched, QEvent* event) override;

  signals:
    /// `isDark` has changed.
    void changed();

  private:
    void follow(const QDBusConnection& bus);
    [[nodiscard]] QStringList newFiles() const;
    void followFiles();
    void followFolder();
    void folderChanged();
    void colorSchemeRead(uint scheme);
    void update();
    [[nodiscard]] bool isDarkNow() const;

    PlasmaFolders folders_;
    std::unique_ptr<QFileSystemWatcher> files_; ///< null where nothing is followed, as below
    std::unique_ptr<PortalSettings> portal_;
    std::optional<bool> prefersDark_; ///< by the portal
    bool isDark_ = true;
};

} // namespace kelvinbar
