#pragma once

namespace kelvinbar {

/// Whether standard output is a terminal.
bool isStandardOutputTerminal();

} // namespace kelvinbar
