#pragma once

#include <cstdint>

namespace kelvinbar::fakes {

/// Lets allocations of this process fail while it lives: the one of a number, counted from 1, or also all
/// after it. The program replaces the C library's functions; under a sanitizer, which has done so before,
/// `operator new` alone. One at a time.
class AllocationFailure {
  public:
    enum class Extent : std::uint8_t { one, oneAndAllLater };

    AllocationFailure(std::int64_t number, Extent extent);
    AllocationFailure(const AllocationFailure&) = delete;
    AllocationFailure& operator=(const AllocationFailure&) = delete;
    ~AllocationFailure();

    /// Whether there were as many allocations.
    [[nodiscard]] static bool hasHappened();
};

} // namespace kelvinbar::fakes
