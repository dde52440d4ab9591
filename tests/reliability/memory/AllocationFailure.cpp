#include "tests/reliability/memory/AllocationFailure.h"

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr std::int64_t never = std::numeric_limits<std::int64_t>::max();

std::atomic<std::int64_t> untilFailure{never}; ///< 0 or less once there was one
std::atomic<bool> isLasting{false};

/// Counts an allocation, and returns whether it is to fail.
bool isToFail() {
    if (untilFailure == never) return false;
    const std::int64_t left = --untilFailure;
    return left == 0 || (left < 0 && isLasting);
}

} // namespace

namespace kelvinbar::fakes {

AllocationFailure::AllocationFailure(std::int64_t number, Extent extent) {
    isLasting = extent == Extent::oneAndAllLater;
    untilFailure = number;
}

AllocationFailure::~AllocationFailure() { untilFailure = never; }

bool AllocationFailure::hasHappened() { return untilFailure <= 0; }

} // namespace kelvinbar::fakes

#ifdef KELVINBAR_OPERATOR_NEW_ONLY

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return isToFail() ? nullptr : std::malloc(size);
}

void* operator new(std::size_t size) {
    void* const memory = operator new(size, std::nothrow);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

void operator delete(void* memory) noexcept { std::free(memory); }

void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

#else

// These replace the C library's functions, which operator new, opendir and realpath call. The names are the
// library's.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)
extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);

[[gnu::visibility("default")]] void* malloc(std::size_t size) {
    if (!isToFail()) return __libc_malloc(size);
    errno = ENOMEM;
    return nullptr;
}

[[gnu::visibility("default")]] void* calloc(std::size_t count, std::size_t size) {
    if (!isToFail()) return __libc_calloc(count, size);
    errno = ENOMEM;
    return nullptr;
}

[[gnu::visibility("default")]] void* realloc(void* memory, std::size_t size) {
    if (!isToFail()) return __libc_realloc(memory, size);
    errno = ENOMEM;
    return nullptr;
}

} // extern "C"
  // NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)

#endif
