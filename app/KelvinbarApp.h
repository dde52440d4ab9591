#pragma once

#include "base/Log.h"
#include "sensors/Machine.h"

#include <functional>
#include <string>

namespace kelvinbar {

/// The program: everything it is made of, put together. It has no window of its own but the panel.
class KelvinbarApp {
  public:
    /// Makes the machine, whose sources may keep the log.
    using MachineMaker = std::function<Machine(Log&)>;

    /// Runs the program over a machine until it is told to end, answers an option such as --help, or hands
    /// over to the instance that runs already. The exit status. `name` is the program's, as its files have
    /// it.
    static int run(int& argc, char** argv, const MachineMaker& makeMachine, const std::string& name);
};

} // namespace kelvinbar
