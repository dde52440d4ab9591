#pragma once

#include "desktop/linux/tray/PlasmaColors.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <filesystem>

#include <gtest/gtest.h>

namespace kelvinbar {

/// Plasma's folders with the files that a test writes. Colours are those of Breeze.
class PlasmaSettings {
  public:
    static constexpr auto lightWindows = "[Colors:Window]\nBackgroundNormal=239,240,241\n";
    static constexpr auto darkWindows = "[Colors:Window]\nBackgroundNormal=42,46,50\n";

    [[nodiscard]] PlasmaFolders folders() const {
        return {{path("config"), path("config/kdedefaults")}, {path("data"), path("system")}};
    }

    /// Replaces the file as KDE's programs do: by another one with its name.
    void write(const QString& file, const QByteArray& content) const {
        const QString target = path(file);
        QDir().mkpath(QFileInfo(target).path());
        QFile fresh(target + ".new");
        ASSERT_TRUE(fresh.open(QFile::WriteOnly));
        fresh.write(content);
        fresh.close();
        std::filesystem::rename(fresh.fileName().toStdString(), target.toStdString());
    }

  private:
    [[nodiscard]] QString path(const QString& file) const { return folder_.filePath(file); }

    QTemporaryDir folder_;
};

} // namespace kelvinbar
