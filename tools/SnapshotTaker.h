#pragma once

#include "sensors/Machine.h"

#include <string>

namespace kelvinbar {

/// The snapshot of `machine` as text. Waits for the first full refresh of a store with in-memory preferences,
/// then closes the machine's source. Blocks. Main thread.
std::string takeSnapshot(const Machine& machine);

} // namespace kelvinbar
