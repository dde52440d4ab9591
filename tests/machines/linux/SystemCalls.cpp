#include "tests/machines/linux/SystemCalls.h"

#include <atomic>
#include <cstdarg>
#include <cstddef>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/types.h>

#include <unistd.h>

namespace {

std::atomic<std::int64_t> reads{0};
std::atomic<std::int64_t> others{0};

/// The mode argument of a call that creates a file.
mode_t modeOf(int flags, std::va_list arguments) {
    const bool hasMode = (flags & (O_CREAT | O_TMPFILE)) != 0;
    return hasMode ? va_arg(arguments, mode_t) : 0;
}

} // namespace

namespace kelvinbar::fakes {

SystemCalls systemCallsSoFar() { return {.reads = reads, .others = others}; }

} // namespace kelvinbar::fakes

// These replace the C library's functions.
extern "C" {

[[gnu::visibility("default")]] ssize_t pread(int file, void* buffer, std::size_t size, off_t place) {
    ++reads;
    return syscall(SYS_pread64, file, buffer, size, place);
}

[[gnu::visibility("default")]] ssize_t read(int file, void* buffer, std::size_t size) {
    ++others;
    return syscall(SYS_read, file, buffer, size);
}

[[gnu::visibility("default")]] int open(const char* path, int flags, ...) {
    ++others;
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

[[gnu::visibility("default")]] int close(int file) {
    ++others;
    return static_cast<int>(syscall(SYS_close, file));
}

[[gnu::visibility("default")]] int fstat(int file, struct stat* status) noexcept {
    ++others;
    return fstatat(file, "", status, AT_EMPTY_PATH);
}

[[gnu::visibility("default")]] int stat(const char* path, struct stat* status) noexcept {
    ++others;
    return fstatat(AT_FDCWD, path, status, 0);
}

} // extern "C"
// NOLINTEND(readability-inconsistent-declaration-parameter-name,cert-dcl50-cpp)
