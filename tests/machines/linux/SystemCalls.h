#pragma once

#include <cstdint>

namespace kelvinbar::fakes {

/// How often this process has asked the kernel for something in files so far. The test program counts the
/// calls of the C library by standing in for them.
struct SystemCalls {
    std::int64_t reads = 0;  ///< of a file that stays open, in place
    std::int64_t others = 0; ///< opening, closing, asking for attributes, reading onwards

    friend SystemCalls operator-(const SystemCalls& left, const SystemCalls& right) {
        return {left.reads - right.reads, left.others - right.others};
    }

    friend bool operator==(const SystemCalls&, const SystemCalls&) = default;
};

SystemCalls systemCallsSoFar();

/// The calls that `work` makes.
template <typename Work>
SystemCalls systemCallsOf(Work work) {
    const SystemCalls before = systemCallsSoFar();
    work();
    return systemCallsSoFar() - before;
}

} // namespace kelvinbar::fakes
