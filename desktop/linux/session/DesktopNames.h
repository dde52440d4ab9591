#pragma once

#include "base/Text.h"

#include <sstream>
#include <string>
#include <string_view>

namespace kelvinbar {

/// Whether `name`, in lower case, is one of the names in `desktopNames`, the value of XDG_CURRENT_DESKTOP.
/// They are separated by colons, and their case does not matter.
inline bool hasDesktopName(const std::string& desktopNames, std::string_view name) {
    std::istringstream names(asciiLowercased(desktopNames));
    for (std::string candidate; std::getline(names, candidate, ':');) {
        if (candidate == name) return true;
    }
    return false;
}

} // namespace kelvinbar
