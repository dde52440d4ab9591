#pragma once

#include "sensors/Machine.h"

#include <string_view>
#include <vector>

namespace kelvinbar {

/// The names of all demo machines, for options and messages.
std::vector<std::string_view> demoMachineNames();

/// A made-up machine with values that change as under load, for people without sensors, for pictures and for
/// tests. It uses the clock and the texts of `host`; the same time yields the same values.
///
/// `name` is one of demoMachineNames(). Any other name yields a machine without a source.
Machine makeDemoMachine(std::string_view name, const Machine& host);

} // namespace kelvinbar
