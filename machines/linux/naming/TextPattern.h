#pragma once

#include <cstddef>
#include <string_view>

namespace kelvinbar {

/// Whether `fits` holds for one of the alternatives that "|" separates in `pattern`.
template <typename Fits>
bool fitsAnyAlternative(std::string_view pattern, Fits fits) {
    for (;;) {
        const std::size_t end = pattern.find('|');
        if (fits(pattern.substr(0, end))) return true;
        if (end == std::string_view::npos) return false;
        pattern.remove_prefix(end + 1);
    }
}

/// Whether the whole of `text` matches `pattern`: "*" stands for any text, "?" for one character, "|"
/// separates alternatives. The case of ASCII letters is ignored.
bool fitsPattern(std::string_view pattern, std::string_view text);

} // namespace kelvinbar
