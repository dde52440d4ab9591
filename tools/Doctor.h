#pragma once

#include "base/Log.h"

namespace kelvinbar {

/// Examines this machine and prints what was found; the desktop is not known to a console program. Returns
/// the exit status, which does not depend on what was found. Ends the process if a thread is stuck in a
/// driver.
int examineThisMachine(bool isJson, Log& log);

} // namespace kelvinbar
