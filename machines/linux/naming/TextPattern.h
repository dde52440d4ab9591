#pragma once

#include <cstddef>
#include <string_view>

namespace kelvinbar {

/// Whether `fits` returns true for one of the alternatives in `pattern`, which "|" separates. Stops at the
/// first.
template <typename Fits>
bool fitsAnyAlternative(std::string_view pattern, Fits fits) {
    for (;;) {
        const std::size_t end = pattern.find('|');
        if (fits(pattern.substr(0, end))) return true;
        if (end == std::string_view::npos) return false;
        pattern.remove_prefix(end + 1);
    }
}

/// Whether `pattern` matches the whole of `text`. "*" stands for any text, "?" for one character, "|"
/// separates alternatives. ASCII letters match regardless of case. For the short patterns of our own tables:
/// backtracking makes several "*" slow.
bool fitsPattern(std::string_view pattern, std::string_view text);

} // namespace kelvinbar
