#pragma once

namespace kelvinbar {

/// Whether a person at a terminal reads the program's standard output.
bool isStandardOutputTerminal();

} // namespace kelvinbar
