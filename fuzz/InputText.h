#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

/// Inputs that are lines of fields, which a person can write and a mutation can rearrange.
namespace kelvinbar::fuzz {

inline std::string_view inputText(std::span<const std::uint8_t> input) {
    return {reinterpret_cast<const char*>(input.data()), input.size()};
}

/// The parts of `text` between separators, at most `most`. The last one contains the rest.
inline std::vector<std::string_view> parts(std::string_view text, char separator, std::size_t most) {
    std::vector<std::string_view> found;
    while (found.size() + 1 < most) {
        const std::size_t end = text.find(separator);
        if (end == std::string_view::npos) break;
        found.push_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    found.push_back(text);
    return found;
}

/// The field at `index`; empty if there are fewer.
inline std::string_view field(const std::vector<std::string_view>& fields, std::size_t index) {
    return index < fields.size() ? fields[index] : std::string_view();
}

} // namespace kelvinbar::fuzz
