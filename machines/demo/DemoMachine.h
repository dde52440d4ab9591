#pragma once

#include "sensors/Machine.h"

#include <string_view>
#include <vector>

namespace kelvinbar {

/// The machines that can be made, for options and messages.
std::vector<std::string_view> demoMachineNames();

/// A made-up machine at work, for those who have no sensors, for pictures and for tests. It has the clock and
/// the texts of `host`. The same time gives the same values. `name` is one of demoMachineNames(); any other
/// name makes a machine without a source.
Machine makeDemoMachine(std::string_view name, const Machine& host);

} // namespace kelvinbar
