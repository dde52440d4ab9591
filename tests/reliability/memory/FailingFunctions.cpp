#include "tests/reliability/memory/FailingFunctions.h"

#include <cerrno>
#include <cstddef>

namespace {

/// Whether the allocation is to fail, with the error that belongs to it.
bool fails() {
    if (!kelvinbar::fakes::isAllocationToFail()) return false;
    errno = ENOMEM;
    return true;
}

} // namespace

// These replace the C library's functions, which operator new, opendir and realpath call. The names are the
// library's.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)
extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);

[[gnu::visibility("default")]] void* malloc(std::size_t size) {
    return fails() ? nullptr : __libc_malloc(size);
}

[[gnu::visibility("default")]] void* calloc(std::size_t count, std::size_t size) {
    return fails() ? nullptr : __libc_calloc(count, size);
}

[[gnu::visibility("default")]] void* realloc(void* memory, std::size_t size) {
    return fails() ? nullptr : __libc_realloc(memory, size);
}

} // extern "C"
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)
