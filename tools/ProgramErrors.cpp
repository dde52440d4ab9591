#include "tools/ProgramErrors.h"

#include <cstdio>
#include <iostream>

namespace kelvinbar {

void reportError(const std::string& message) { std::cerr << "kelvinbar-snapshot: " + message + "\n"; }

void reportMissingMemory() {
    static_cast<void>(std::fputs("kelvinbar-snapshot: there is not enough memory\n", stderr));
}

} // namespace kelvinbar
