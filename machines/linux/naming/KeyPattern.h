#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace kelvinbar {

/// What the digits of a key pattern stand for; nothing fits a digit above 15.
struct KeyDigits {
    int chipIndex = 0;
    std::optional<int> labelNumber;
    int channelNumber = 0;
};

/// The first key that fits `pattern` (as SensorRule explains it, but for "????"), for which `isFree` says
/// true and which the catalogue can name; nothing when there is none.
std::optional<std::string> keyByPattern(std::string_view pattern, const KeyDigits& digits,
                                        const std::function<bool(const std::string&)>& isFree);

} // namespace kelvinbar
