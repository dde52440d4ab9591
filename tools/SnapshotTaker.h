#pragma once

#include "smc/Machine.h"

#include <string>

namespace kelvinbar {

/// The snapshot of `machine`: the store is built over it with preferences that are never kept, its first full
/// refresh is awaited, and its readings are exported. The machine stays the process's own.
std::string takeSnapshot(const Machine& machine);

} // namespace kelvinbar
