#include "process/ProcessorLoad.h"

#include <algorithm>
#include <system_error>

namespace kelvinbar {

namespace {

using Clock = std::chrono::steady_clock;

/// About a tenth of a millisecond of arithmetic. Every step needs the one before, and nobody can predict the
/// result, so the compiler leaves nothing out.
double computed(double value) {
    constexpr int steps = 20'000;
    constexpr double chaos = 3.99; // of the logistic map
    for (int step = 0; step < steps; ++step) value = chaos * value * (1 - value);
    return value;
}

void computeUntil(Clock::time_point deadline, const std::atomic<bool>& isEnded) {
    volatile double value = 0.4;
    while (!isEnded && Clock::now() < deadline) value = computed(value);
}

} // namespace

std::size_t ProcessorLoad::begin(std::chrono::nanoseconds time) {
    end();
    isEnded_ = false;
    const auto deadline = Clock::now() + time;
    const std::size_t processors = std::max(std::thread::hardware_concurrency(), 1U);
    threads_.reserve(processors);
    try {
        while (threads_.size() < processors) {
            threads_.emplace_back([this, deadline] { computeUntil(deadline, isEnded_); });
        }
    } catch (const std::system_error&) {
        return threads_.size();
    }
    return threads_.size();
}

void ProcessorLoad::end() {
    isEnded_ = true;
    for (std::thread& thread : threads_) thread.join();
    threads_.clear();
}

} // namespace kelvinbar
