#include "machines/linux/BootTimeClock.h"

#include <ctime>

namespace kelvinbar {

std::chrono::nanoseconds BootTimeClock::now() const {
    std::timespec time{};
    static_cast<void>(clock_gettime(CLOCK_BOOTTIME, &time)); // cannot fail with this clock
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

} // namespace kelvinbar
