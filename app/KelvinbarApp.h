#pragma once

#include "app/ProgramOptions.h"
#include "base/Log.h"
#include "sensors/Machine.h"

#include <functional>
#include <string_view>

namespace kelvinbar {

/// The composition root of the desktop programs: creates the machine, the desktop and the delegate, connects
/// them, and runs the event loop.
class KelvinbarApp {
  public:
    /// Creates the machine of that name, whose sources may keep the reference to the log. The name is empty
    /// for a program without a choice of machines.
    using MachineMaker = std::function<Machine(std::string_view name, Log& log)>;

    /// Runs the program until it is asked to quit. Returns earlier if an option such as --help or --doctor
    /// has been answered, or if another instance runs, which then opens its panel. Returns the exit status.
    /// Main thread.
    static int run(int& argc, char** argv, const ProgramDescription& program,
                   const MachineMaker& makeMachine);
};

} // namespace kelvinbar
