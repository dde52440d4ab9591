#pragma once

#include "shell/SystemSymbols.h"

namespace kelvinbar {

/// The system's symbol of a name, centred in a square of `side` pixels and as large as possible. No value if
/// this version of the system does not have it. Main thread.
std::optional<SymbolMask> systemSymbolMask(const std::string& name, int side);

} // namespace kelvinbar
