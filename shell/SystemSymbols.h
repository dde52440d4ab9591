#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kelvinbar {

/// How much of each pixel of a square is covered, 0 to 255, row after row from the top.
struct SymbolMask {
    int side = 0; ///< in pixels
    std::vector<std::uint8_t> coverage;
};

/// The system's symbol of a name, drawn into a square of `side` pixels; nothing where this version of the
/// system has none of that name.
using SystemSymbols = std::function<std::optional<SymbolMask>(const std::string& name, int side)>;

} // namespace kelvinbar
