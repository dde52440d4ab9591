#include "platform/Platform.h"
#include "platform/linux/AbsentController.h"
#include "platform/linux/BootTimeClock.h"
#include "platform/linux/LinuxSystemInformation.h"

#include <memory>

#include <unistd.h>

namespace kelvinbar {

Machine makePlatform() {
    return {.driver = std::make_shared<AbsentSMCDriver>(),
            .registry = std::make_shared<AbsentIORegistry>(),
            .system = std::make_shared<LinuxSystemInformation>("/"),
            .clock = std::make_shared<BootTimeClock>()};
}

bool isStandardOutputTerminal() { return isatty(STDOUT_FILENO) == 1; }

} // namespace kelvinbar
