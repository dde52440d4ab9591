#pragma once

#include "sensors/Machine.h"
#include "tools/Identification.h"
#include "tools/SnapshotCommandLine.h"
#include "tools/SnapshotTaker.h"

namespace kelvinbar {

/// Identifies the sensors of `machine` as the options say, and prints what responded; how it goes is said on
/// standard error. Returns the exit status. Throws std::bad_alloc if there is not enough memory for the first
/// snapshot. Main thread.
int printIdentification(const SnapshotOptions& options, const Machine& machine, SnapshotTaker& taker);

} // namespace kelvinbar
