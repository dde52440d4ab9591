#include "tests/reliability/memory/AllocationFailure.h"

#include "tests/reliability/memory/FailingFunctions.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr std::int64_t never = std::numeric_limits<std::int64_t>::max();

std::atomic<std::int64_t> untilFailure{never}; ///< 0 or less once there was one
std::atomic<bool> isLasting{false};

} // namespace

namespace kelvinbar::fakes {

/// Counts the allocation.
bool isAllocationToFail() {
    if (untilFailure == never) return false;
    const std::int64_t left = --untilFailure;
    return left == 0 || (left < 0 && isLasting);
}

AllocationFailure::AllocationFailure(std::int64_t number, Extent extent) {
    isLasting = extent == Extent::oneAndAllLater;
    untilFailure = number;
}

AllocationFailure::~AllocationFailure() { untilFailure = never; }

bool AllocationFailure::hasHappened() { return untilFailure <= 0; }

} // namespace kelvinbar::fakes

#ifdef KELVINBAR_OPERATOR_NEW_ONLY

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return kelvinbar::fakes::isAllocationToFail() ? nullptr : std::malloc(size);
}

void* operator new(std::size_t size) {
    void* const memory = operator new(size, std::nothrow);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

void operator delete(void* memory) noexcept { std::free(memory); }

void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

#endif
