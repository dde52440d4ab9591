#pragma once

#include <string_view>

namespace kelvinbar {

/// A sentence for the user on why the system does not change whether the program in `programFile` starts at
/// login. The system runs a program that was downloaded and never moved from a temporary, read-only copy, and
/// registers no program there. Pure function; any thread.
const char* whyLoginIsRefused(std::string_view programFile);

} // namespace kelvinbar
