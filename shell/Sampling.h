#pragma once

#include "catalogue/Settings.h"

#include <chrono>

namespace kelvinbar {

/// When readings in view are read.
struct Sampling {
    std::chrono::milliseconds interval;
    std::chrono::milliseconds tolerance; ///< how late a tick may be
};

inline Sampling samplingAt(SMCSamplingRate rate) {
    using std::chrono::milliseconds;
    return rate == SMCSamplingRate::fast ? Sampling{milliseconds(1000), milliseconds(20)}
                                         : Sampling{milliseconds(3000), milliseconds(100)};
}

} // namespace kelvinbar
