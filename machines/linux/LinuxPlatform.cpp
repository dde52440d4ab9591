#include "machines/Platform.h"
#include "machines/linux/BootTimeClock.h"
#include "machines/linux/LinuxMachine.h"

#include <iostream>
#include <memory>
#include <string>

namespace kelvinbar {

Machine makePlatform() {
    return makeLinuxMachine("/", std::make_shared<BootTimeClock>(),
                            [](const std::string& message) { std::cerr << "kelvinbar: " + message + "\n"; });
}

} // namespace kelvinbar
