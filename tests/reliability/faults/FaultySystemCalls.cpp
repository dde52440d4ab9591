#include "tests/reliability/faults/FaultySystemCalls.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <string_view>
#include <sys/syscall.h>
#include <sys/types.h>
#include <system_error>
#include <utility>

#include <unistd.h>

namespace {

using kelvinbar::fakes::Fault;
using kelvinbar::fakes::FaultyCall;

bool isCounting = false;
std::int64_t calls = 0;
std::vector<FaultyCall> faultyCalls;
std::vector<std::string> faultyPaths;

/// Counts a call, and says what is to go wrong with it.
template <typename Path>
std::optional<Fault> faultOfNextCall(const Path& path) {
    if (!isCounting) return std::nullopt;
    const auto faulty = std::ranges::find(faultyCalls, ++calls, &FaultyCall::number);
    if (faulty == faultyCalls.end()) return std::nullopt;
    isCounting = false;
    faultyPaths.push_back(path());
    isCounting = true;
    return faulty->fault;
}

std::string pathOf(int file) {
    std::error_code ignored;
    return std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(file), ignored).string();
}

template <typename Function>
Function original(const char* name) {
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

/// `read` reads as many bytes as it is told.
template <typename Read>
ssize_t faultyRead(int file, void* buffer, std::size_t size, Read read) {
    const auto fault = faultOfNextCall([file] { return pathOf(file); });
    if (!fault) return read(size);
    constexpr std::string_view impossible = "-2147483648000\n";
    switch (*fault) {
    case Fault::fails:
        errno = EIO;
        return -1;
    case Fault::isShort:
        return read(2);
    case Fault::lies:
        std::memcpy(buffer, impossible.data(), std::min(size, impossible.size()));
        return static_cast<ssize_t>(std::min(size, impossible.size()));
    case Fault::floods:
        std::memset(buffer, 0xFF, size);
        return static_cast<ssize_t>(size);
    }
    std::abort();
}

} // namespace

namespace kelvinbar::fakes {

SystemCallFaults::SystemCallFaults(std::vector<FaultyCall> faulty) {
    faultyCalls = std::move(faulty);
    faultyPaths.clear();
    calls = 0;
    isCounting = true;
}

SystemCallFaults::~SystemCallFaults() { isCounting = false; }

const std::vector<std::string>& SystemCallFaults::paths() { return faultyPaths; }

} // namespace kelvinbar::fakes

// These replace the C library's functions, and bear its names.
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name,cert-dcl50-cpp)
extern "C" {

[[gnu::visibility("default")]] int open(const char* path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    const auto fault = faultOfNextCall([path] { return std::string(path); });
    if (fault == Fault::lies) path = "/dev/null";
    if (fault && fault != Fault::lies) {
        errno = fault == Fault::fails ? EACCES : EMFILE;
        return -1;
    }
    return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

[[gnu::visibility("default")]] ssize_t read(int file, void* buffer, std::size_t size) {
    return faultyRead(file, buffer, size,
                      [=](std::size_t count) { return syscall(SYS_read, file, buffer, count); });
}

[[gnu::visibility("default")]] ssize_t pread(int file, void* buffer, std::size_t size, off_t place) {
    return faultyRead(file, buffer, size,
                      [=](std::size_t count) { return syscall(SYS_pread64, file, buffer, count, place); });
}

[[gnu::visibility("default")]] DIR* opendir(const char* path) {
    static const auto openFolder = original<DIR* (*)(const char*)>("opendir");
    if (!faultOfNextCall([path] { return std::string(path); })) return openFolder(path);
    errno = EACCES;
    return nullptr;
}

[[gnu::visibility("default")]] dirent* readdir(DIR* folder) {
    static const auto next = original<dirent* (*)(DIR*)>("readdir");
    const auto fault = faultOfNextCall([folder] { return pathOf(::dirfd(folder)); });
    if (!fault) return next(folder);
    if (fault == Fault::fails) errno = EIO;
    if (fault == Fault::fails || fault == Fault::isShort) return nullptr;
    static dirent invented{};
    std::memset(std::data(invented.d_name), 'x', sizeof(invented.d_name) - 1);
    if (fault == Fault::lies) std::strcpy(std::data(invented.d_name), "temp99_input");
    return &invented;
}

} // extern "C"
// NOLINTEND(readability-inconsistent-declaration-parameter-name,cert-dcl50-cpp)
