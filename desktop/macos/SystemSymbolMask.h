#pragma once

#include "shell/SystemSymbols.h"

namespace kelvinbar {

/// The system's symbol of a name, as large as a square of `side` pixels allows and in its middle. Main
/// thread.
std::optional<SymbolMask> systemSymbolMask(const std::string& name, int side);

} // namespace kelvinbar
