#pragma once

#include <string_view>

namespace kelvinbar {

/// Whether `left` comes strictly before `right` in the order in which people list names: runs of decimal
/// digits compare by value (leading zeros do not count, a run may have any length), other characters by
/// lower-cased code point (of Latin, Greek and Cyrillic letters), and a text that is a prefix of the other
/// comes first. A byte that belongs to no character comes last.
/// A strict weak ordering: "TC0P" and "TC0p", or "7" and "007", come neither before the other.
bool comesBeforeNaturally(std::string_view left, std::string_view right);

} // namespace kelvinbar
