#pragma once

#include "sensors/Machine.h"

#include <string>

namespace kelvinbar {

/// The snapshot of `machine`: builds a store over it with preferences that are never kept, waits for its
/// first full refresh, exports the readings, and closes the machine's source.
std::string takeSnapshot(const Machine& machine);

} // namespace kelvinbar
