#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace kelvinbar {

/// The numbers that the placeholders of a key pattern stand for. A number above 15 matches no key.
struct KeyDigits {
    int chipIndex = 0;              ///< for "@"
    std::optional<int> labelNumber; ///< for "="
    int channelNumber = 0;          ///< for "#" and "%"
};

/// Finds keys for patterns (see SensorRule). Keys are taken and do not become free again: each candidate of a
/// pattern is asked about until it is taken, however often a key is looked for.
class KeySearch {
  public:
    /// `isFree` is called by `find` only.
    explicit KeySearch(std::function<bool(const std::string&)> isFree) : isFree_(std::move(isFree)) {}

    /// The first free key that matches the pattern and has a name in the catalogue. Nothing when there is
    /// none.
    std::optional<std::string> find(std::string_view pattern, const KeyDigits& digits);

  private:
    std::function<bool(const std::string&)> isFree_;
    /// The number of the first candidate that may be free, by the pattern with its digits.
    std::unordered_map<std::string, std::size_t> firstOpen_;
};

} // namespace kelvinbar
