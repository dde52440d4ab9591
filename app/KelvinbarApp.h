#pragma once

#include "base/Log.h"
#include "sensors/Machine.h"

#include <functional>
#include <string>

namespace kelvinbar {

/// The composition root of the desktop programs: creates the machine, the desktop and the delegate, connects
/// them, and runs the event loop.
class KelvinbarApp {
  public:
    /// Creates the machine. Its sources may keep the reference to the log.
    using MachineMaker = std::function<Machine(Log&)>;

    /// Runs the program until it is asked to quit. Returns earlier if an option such as --help has been
    /// answered, or if another instance runs, which then opens its panel. Returns the exit status. `name` is
    /// the program's file name. Main thread.
    static int run(int& argc, char** argv, const MachineMaker& makeMachine, const std::string& name);
};

} // namespace kelvinbar
