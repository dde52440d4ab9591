#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace kelvinbar {

/// The numbers that the placeholders of a key pattern stand for. A number above 15 matches no key.
struct KeyDigits {
    int chipIndex = 0;              ///< for "@"
    std::optional<int> labelNumber; ///< for "="
    int channelNumber = 0;          ///< for "#" and "%"
};

/// The first key that matches a pattern (see SensorRule), for which `isFree` returns true and that has a name
/// in the catalogue. Nothing when there is none. `isFree` is called during the call only.
std::optional<std::string> keyByPattern(std::string_view pattern, const KeyDigits& digits,
                                        const std::function<bool(const std::string&)>& isFree);

} // namespace kelvinbar
