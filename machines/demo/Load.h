#pragma once

#include <chrono>
#include <cstdint>

namespace kelvinbar {

/// How much a made-up machine has to do at a moment, from 0 to 1: work that comes and goes over half a minute
/// to some minutes, the same for the same moment.
double loadAt(std::chrono::nanoseconds time);

/// What lags behind the load, as a fan and a heatsink do: its mean over the last `lag`, roughly.
double laggingLoadAt(std::chrono::nanoseconds time, std::chrono::seconds lag);

/// From -1 to 1, different for each `seed` and each second: what no two readings of a sensor agree in.
double noiseAt(std::chrono::nanoseconds time, std::uint32_t seed);

} // namespace kelvinbar
