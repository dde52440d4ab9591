#include "machines/demo/Load.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kelvinbar {

namespace {

double seconds(std::chrono::nanoseconds time) { return std::chrono::duration<double>(time).count(); }

double wave(double time, double period) { return std::sin(2 * std::numbers::pi * time / period); }

} // namespace

double loadAt(std::chrono::nanoseconds time) {
    // The periods have no common divisor, so the sum does not repeat within hours.
    const double now = seconds(time);
    const double sum = 0.35 + 0.25 * wave(now, 173) + 0.15 * wave(now, 61) + 0.1 * wave(now, 23);
    return std::clamp(sum, 0.0, 1.0);
}

double laggingLoadAt(std::chrono::nanoseconds time, std::chrono::seconds lag) {
    constexpr int samples = 8;
    double sum = 0;
    for (int sample = 0; sample < samples; ++sample) sum += loadAt(time - sample * lag / samples);
    return sum / samples;
}

double noiseAt(std::chrono::nanoseconds time, std::uint32_t seed) {
    auto bits = static_cast<std::uint64_t>(std::chrono::floor<std::chrono::seconds>(time).count());
    bits = (bits << 32U) ^ seed;
    // The mixing steps of the splitmix64 generator.
    bits = (bits ^ (bits >> 30U)) * 0xBF58476D1CE4E5B9U;
    bits = (bits ^ (bits >> 27U)) * 0x94D049BB133111EBU;
    bits ^= bits >> 31U;
    return static_cast<double>(bits >> 11U) / 4503599627370496.0 - 1; // 53 bits over 2^52
}

} // namespace kelvinbar
