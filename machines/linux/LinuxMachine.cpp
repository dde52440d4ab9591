#include "machines/linux/LinuxMachine.h"

#include "machines/linux/LinuxSystemInformation.h"
#include "machines/linux/applesmc/KeySourceDriver.h"
#include "machines/linux/sources/HwmonRegistry.h"
#include "machines/linux/sources/LinuxKeys.h"

#include <utility>

namespace kelvinbar {

Machine makeLinuxMachine(const std::filesystem::path& root, std::shared_ptr<const MonotonicClock> clock,
                         OnceLog::Sink log) {
    auto inventory = std::make_shared<SensorInventory>(root, clock, std::move(log));
    auto keys = std::make_unique<LinuxKeys>(inventory, [inventory] { return openAppleSMC(*inventory); });
    return {.driver = std::make_shared<KeySourceDriver>(std::move(keys)),
            .registry = std::make_shared<HwmonRegistry>(inventory),
            .system = std::make_shared<LinuxSystemInformation>(root),
            .clock = std::move(clock)};
}

} // namespace kelvinbar
