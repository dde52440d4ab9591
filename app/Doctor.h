#pragma once

#include "base/Log.h"
#include "sensors/Machine.h"
#include "tools/doctor/DoctorRun.h"

#include <string>

namespace kelvinbar {

/// Examines the machine and the session of the desktop program `name`, and prints what was found. Returns the
/// exit status, which does not depend on that. Ends the process if a thread is stuck in a driver. Needs no
/// display.
int examine(const std::string& name, const DoctorOptions& options, const Machine& machine, Log& log);

} // namespace kelvinbar
