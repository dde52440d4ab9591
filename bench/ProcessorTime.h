#pragma once

#include <chrono>
#include <sys/resource.h>

namespace kelvinbar::bench {

/// CPU time of this process and the kernel for it, which does not depend on how busy the machine is
/// otherwise.
inline std::chrono::microseconds processorTime() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto exactly = [](const timeval& time) {
        return std::chrono::seconds(time.tv_sec) + std::chrono::microseconds(time.tv_usec);
    };
    return exactly(usage.ru_utime) + exactly(usage.ru_stime);
}

} // namespace kelvinbar::bench
