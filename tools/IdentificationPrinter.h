#pragma once

#include "sensors/Machine.h"
#include "tools/Identification.h"
#include "tools/ReadingSelection.h"
#include "tools/SnapshotTaker.h"

namespace kelvinbar {

/// What is identified, and how the answer is printed.
struct IdentificationRequest {
    IdentificationPlan plan;
    ReadingSelection selection; ///< among which the sensors are
    bool isJson = false;        ///< otherwise a text for people
};

/// Identifies sensors of `machine`, and prints what responded; how it goes is said on standard error. Returns
/// the exit status; without a sensor among the selected readings, it is that of a failure at once. Throws
/// std::bad_alloc if there is not enough memory for the first snapshot. Main thread.
int printIdentification(const IdentificationRequest& request, const Machine& machine, SnapshotTaker& taker);

} // namespace kelvinbar
