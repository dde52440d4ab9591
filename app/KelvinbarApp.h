#pragma once

#include "sensors/Machine.h"

#include <memory>
#include <string>

namespace kelvinbar {

/// The program: everything it is made of, put together. It has no window of its own but the panel.
class KelvinbarApp {
  public:
    /// Runs the program over `machine` until it is told to end, or hands over to the instance that runs
    /// already. The exit status. `name` is the program's, as its files and messages have it.
    static int run(int& argc, char** argv, const Machine& machine, const std::string& name);
};

} // namespace kelvinbar
