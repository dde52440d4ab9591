#pragma once

#include <string>

namespace kelvinbar {

/// Whether the tray displays text beside an icon (XAyatanaLabel). There is no way to ask a host, so the
/// process that watches over the items decides, or the desktop if the process is unknown.
///
/// `watcherProcess` is the process's name of at most 15 characters, empty if unknown; `desktopNames` is the
/// value of XDG_CURRENT_DESKTOP, names separated by colons.
bool showsLabels(const std::string& watcherProcess, const std::string& desktopNames);

} // namespace kelvinbar
