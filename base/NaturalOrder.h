#pragma once

#include <string_view>

namespace kelvinbar {

/// Whether `left` sorts strictly before `right` in the order that people expect of names, with "Core 2"
/// before "Core 10". Runs of decimal digits compare by value; they may have any length, and leading zeros do
/// not count. Other characters compare by code point, ignoring the case of Latin, Greek and Cyrillic letters.
/// A prefix sorts first, a byte that is not valid UTF-8 sorts last.
///
/// A strict weak ordering. Different texts can be equivalent: neither of "7" and "007" sorts before the
/// other. Does not depend on the locale. Any thread.
bool comesBeforeNaturally(std::string_view left, std::string_view right);

} // namespace kelvinbar
