#pragma once

#include "base/Log.h"
#include "desktop/linux/session/DesktopEntry.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace kelvinbar {

/// The program's XDG autostart entry: a desktop file in the user's autostart folder. The program is
/// registered if the current desktop would start this very program for the entry. An entry that starts
/// another file, that the user has disabled, in an editor or in the desktop's settings, or that is for other
/// desktops does not count. Registering enables it and keeps its other lines, except for conditions that do
/// not hold here.
///
/// The entry names the program by the path at which it is found in PATH, with links as they are, which
/// survives an upgrade into another folder, and by its own path otherwise.
///
/// Pitfalls: a file that cannot be read completely is not replaced, so registering fails. An entry that is a
/// symbolic link stays one: it is written through, and unregistering hides it. One that is, or leads to,
/// anything but a regular file is left alone (files/RegularFile.h). What a shell or another
/// program in the entry starts in the end is unknown, so that such an entry does not count. Any thread, but
/// one change at a time; every call may wait for the disk.
class AutostartEntry {
  public:
    /// Takes a line for the log: a change, or as an error a failure.
    using Report = std::function<void(LogLevel, const std::string&)>;

    /// Values of environment variables.
    struct Surroundings {
        std::string path;         ///< PATH
        std::string desktopNames; ///< XDG_CURRENT_DESKTOP
    };

    /// `folder` is the autostart folder, `name` the entry's file name without ".desktop", and `command` the
    /// full path of this program and its arguments.
    AutostartEntry(const std::filesystem::path& folder, const std::string& name,
                   std::vector<std::string> command, Surroundings surroundings, Report report);

    [[nodiscard]] const std::filesystem::path& file() const { return file_; }

    [[nodiscard]] bool isRegistered() const;

    /// Returns false on failure.
    bool registerItem();

    /// Returns false on failure.
    bool unregisterItem();

    /// Makes an entry whose program is not found, but has this one's name, start this one. Keeps everything
    /// else, and does nothing if the entry is disabled. To be called at each start.
    void renew();

    /// What the user types to start this program: its name where PATH leads to it, otherwise its full path.
    [[nodiscard]] std::string programWord() const;

  private:
    [[nodiscard]] bool starts(const EntryLines& lines) const;
    [[nodiscard]] bool isThisProgram(const std::string& word) const;
    [[nodiscard]] bool isStale(const std::string& word) const;
    [[nodiscard]] std::string programName() const;
    [[nodiscard]] std::string programPath() const;
    [[nodiscard]] bool isTryExecMet(const EntryLines& lines) const;
    [[nodiscard]] EntryLines enabled(EntryLines lines) const;
    [[nodiscard]] bool write(const EntryLines& lines) const;
    bool reported(LogLevel level, const char* what) const;

    std::filesystem::path file_;
    std::vector<std::string> command_;
    Surroundings surroundings_;
    Report report_;
};

/// The user's autostart folder, from the environment variables XDG_CONFIG_HOME and HOME.
std::filesystem::path userAutostartFolder();

} // namespace kelvinbar
