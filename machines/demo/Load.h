#pragma once

#include <chrono>
#include <cstdint>

namespace kelvinbar {

/// The load of a made-up machine at a time, from 0 to 1: rises and falls over half a minute to some minutes.
/// A pure function of the time, so pictures and tests can be repeated.
double loadAt(std::chrono::nanoseconds time);

/// The load as a fan or a heatsink sees it: roughly its mean over the last `lag`.
double laggingLoadAt(std::chrono::nanoseconds time, std::chrono::seconds lag);

/// Noise from -1 to 1, different for each `seed` and each second, so that equal sensors differ.
double noiseAt(std::chrono::nanoseconds time, std::uint32_t seed);

} // namespace kelvinbar
