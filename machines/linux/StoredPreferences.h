#pragma once

#include "base/Value.h"

#include <string>
#include <string_view>

/// What the desktop program has stored for the user, as far as programs without its toolkit need it: lists of
/// texts, such as the pinned keys. Nothing is written. Pure functions except where noted; any thread.
namespace kelvinbar {

/// The lists in a file in the INI format of Qt's QSettings, by their keys; a lone text is a list of one.
/// Lists with elements of other types, sections other than the first and what cannot be understood are left
/// out.
Dictionary preferenceListsIn(std::string_view text);

/// The file of the user's preferences by the environment (XDG_CONFIG_HOME, HOME), which need not be there;
/// empty if the environment names no folder. Reads the environment.
std::string preferencesFile();

} // namespace kelvinbar
