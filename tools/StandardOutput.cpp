#include "tools/StandardOutput.h"

#include <unistd.h>

namespace kelvinbar {

bool isStandardOutputTerminal() { return isatty(STDOUT_FILENO) == 1; }

} // namespace kelvinbar
