#include "tests/machines/linux/SystemCalls.h"

#include <array>
#include <atomic>
#include <cstdarg>
#include <cstddef>
#include <cstdlib>
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

namespace {

/// Inode and state of a stalled file. The inode is 0 for a place without one.
struct Stall {
    std::atomic<ino_t> inode{0};
    std::atomic<bool> hasVictim{false};
};

std::array<Stall, 8> stalls;

ino_t inodeOf(int file) {
    struct stat status{};

    return fstatat(file, "", &status, AT_EMPTY_PATH) == 0 ? status.st_ino : 0;
}

/// Does not return while the file is stalled.
void stallAt(ino_t inode) {
    for (Stall& stall : stalls) {
        if (inode == 0 || stall.inode != inode) continue;
        stall.hasVictim = true;
        stall.hasVictim.notify_all();
        stall.inode.wait(inode);
    }
}

} // namespace

namespace kelvinbar::fakes {

StalledFile::StalledFile(const std::filesystem::path& file) {
    struct stat status{};

    if (fstatat(AT_FDCWD, file.c_str(), &status, 0) != 0) std::abort();
    while (stalls.at(place_).inode != 0) ++place_;
    stalls.at(place_).hasVictim = false;
    stalls.at(place_).inode = status.st_ino;
}

StalledFile::~StalledFile() {
    stalls.at(place_).inode = 0;
    stalls.at(place_).inode.notify_all();
}

void StalledFile::waitForVictim() const { stalls.at(place_).hasVictim.wait(false); }

bool StalledFile::hasVictim() const { return stalls.at(place_).hasVictim; }

SystemCalls systemCallsSoFar() { return {.reads = reads, .others = others}; }

} // namespace kelvinbar::fakes

// These replace the C library's functions.
extern "C" {

[[gnu::visibility("default")]] ssize_t pread(int file, void* buffer, std::size_t size, off_t place) {
    ++reads;
    stallAt(inodeOf(file));
    return syscall(SYS_pread64, file, buffer, size, place);
}

[[gnu::visibility("default")]] ssize_t read(int file, void* buffer, std::size_t size) {
    ++others;
    stallAt(inodeOf(file));
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
