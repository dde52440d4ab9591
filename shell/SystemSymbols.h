#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kelvinbar {

/// A square symbol without colour: the coverage of each pixel, 0 to 255, row by row from the top.
struct SymbolMask {
    int side = 0; ///< in pixels
    std::vector<std::uint8_t> coverage;
};

/// Returns the system's symbol of a name, drawn into a square of `side` pixels. No value if this version of
/// the system does not have it. Main thread.
using SystemSymbols = std::function<std::optional<SymbolMask>(const std::string& name, int side)>;

} // namespace kelvinbar
