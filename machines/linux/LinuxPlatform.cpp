#include "machines/Platform.h"
#include "machines/linux/BootTimeClock.h"
#include "machines/linux/LinuxMachine.h"

#include <memory>

namespace kelvinbar {

Machine makePlatform(Log& log) { return makeLinuxMachine("/", std::make_shared<BootTimeClock>(), log); }

std::string_view usualDemoMachine() { return "linux-pc"; }

} // namespace kelvinbar
