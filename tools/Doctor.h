#pragma once

#include "base/Log.h"
#include "tools/doctor/DoctorRun.h"

namespace kelvinbar {

/// Examines this machine and prints what was found; the desktop is not known to a console program. Returns
/// the exit status, which does not depend on what was found. Ends the process if a thread is stuck in a
/// driver.
int examineThisMachine(const DoctorOptions& options, Log& log);

} // namespace kelvinbar
