#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace kelvinbar {

/// What the digits of a key pattern stand for. Numbers above 15 match nothing.
struct KeyDigits {
    int chipIndex = 0;
    std::optional<int> labelNumber;
    int channelNumber = 0;
};

/// The first key that matches a pattern of SensorRule, for which `isFree` returns true and which the
/// catalogue can name; nothing when there is none.
std::optional<std::string> keyByPattern(std::string_view pattern, const KeyDigits& digits,
                                        const std::function<bool(const std::string&)>& isFree);

} // namespace kelvinbar
