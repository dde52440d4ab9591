#pragma once

#include "app/ProgramOptions.h"
#include "base/Log.h"
#include "sensors/Machine.h"

#include <functional>
#include <string_view>

namespace kelvinbar {

/// The program: everything it is made of, put together. It has no window of its own but the panel.
class KelvinbarApp {
  public:
    /// Makes the machine of that name, whose sources may keep the log. The name is empty for a program
    /// without a choice of machines.
    using MachineMaker = std::function<Machine(std::string_view name, Log& log)>;

    /// Runs the program over a machine until it is told to end, answers an option such as --help, or hands
    /// over to the instance that runs already. The exit status.
    static int run(int& argc, char** argv, const ProgramDescription& program,
                   const MachineMaker& makeMachine);
};

} // namespace kelvinbar
