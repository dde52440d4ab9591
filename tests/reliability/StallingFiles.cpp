// A library to be preloaded: files of a driver that does not answer.
//
// While the file $STALL_WHILE exists, calls for files whose path ends with $STALLED_FILE do not return: those
// that open them if $STALLED_CALL is "open", those that read them if it is "read", those that open them as a
// stream if it is "stream", those that open folders if it is "list". The first call that is held makes a link
// with the name of $STALL_WHILE and
// ".reached". A signal does not end the wait, as it does not end one in a driver.

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/types.h>

#include <unistd.h>

namespace {

constexpr useconds_t lookEveryMicroseconds = 20'000;

const char* variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

bool isStalled(std::string_view call, std::string_view path) {
    const std::string_view file = variable("STALLED_FILE");
    return !file.empty() && path.ends_with(file) && call == variable("STALLED_CALL") &&
           ::access(variable("STALL_WHILE"), F_OK) == 0;
}

void waitAtPath(std::string_view call, const char* path) {
    if (!isStalled(call, path)) return;
    const std::string reached = std::string(variable("STALL_WHILE")) + ".reached";
    static_cast<void>(::symlink("here", reached.c_str()) == 0); // fails after the first
    while (isStalled(call, path)) ::usleep(lookEveryMicroseconds);
}

void waitAtDescriptor(int descriptor) {
    char path[4096];
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t size = ::readlink(link.c_str(), path, sizeof path - 1);
    if (size <= 0) return;
    path[size] = '\0';
    waitAtPath("read", path);
}

template <typename Function, typename... Arguments>
auto callNext(const char* name, Arguments... arguments) {
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name))(arguments...);
}

using Open = int (*)(const char*, int, mode_t);
using CheckedOpen = int (*)(const char*, int);
using OpenStream = std::FILE* (*)(const char*, const char*);
using OpenFolder = DIR* (*)(const char*);
using Read = ssize_t (*)(int, void*, std::size_t);
using CheckedRead = ssize_t (*)(int, void*, std::size_t, std::size_t);
using ReadAt = ssize_t (*)(int, void*, std::size_t, off_t);
using CheckedReadAt = ssize_t (*)(int, void*, std::size_t, off_t, std::size_t);

mode_t modeAmong(int flags, std::va_list& arguments) {
    return (flags & O_CREAT) == 0 ? 0 : va_arg(arguments, mode_t);
}

} // namespace

extern "C" {

int open(const char* path, int flags, ...) {
    waitAtPath("open", path);
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeAmong(flags, arguments);
    va_end(arguments);
    return callNext<Open>("open", path, flags, mode);
}

int open64(const char* path, int flags, ...) {
    waitAtPath("open", path);
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeAmong(flags, arguments);
    va_end(arguments);
    return callNext<Open>("open64", path, flags, mode);
}

std::FILE* fopen(const char* path, const char* mode) {
    waitAtPath("stream", path);
    return callNext<OpenStream>("fopen", path, mode);
}

std::FILE* fopen64(const char* path, const char* mode) {
    waitAtPath("stream", path);
    return callNext<OpenStream>("fopen64", path, mode);
}

DIR* opendir(const char* path) {
    waitAtPath("list", path);
    return callNext<OpenFolder>("opendir", path);
}

// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl51-cpp,cert-dcl37-c): what the C library's checked calls
// are named

int __open_2(const char* path, int flags) {
    waitAtPath("open", path);
    return callNext<CheckedOpen>("__open_2", path, flags);
}

int __open64_2(const char* path, int flags) {
    waitAtPath("open", path);
    return callNext<CheckedOpen>("__open64_2", path, flags);
}

ssize_t __read_chk(int descriptor, void* buffer, std::size_t size, std::size_t room) {
    waitAtDescriptor(descriptor);
    return callNext<CheckedRead>("__read_chk", descriptor, buffer, size, room);
}

ssize_t __pread_chk(int descriptor, void* buffer, std::size_t size, off_t place, std::size_t room) {
    waitAtDescriptor(descriptor);
    return callNext<CheckedReadAt>("__pread_chk", descriptor, buffer, size, place, room);
}

ssize_t __pread64_chk(int descriptor, void* buffer, std::size_t size, off_t place, std::size_t room) {
    waitAtDescriptor(descriptor);
    return callNext<CheckedReadAt>("__pread64_chk", descriptor, buffer, size, place, room);
}

// NOLINTEND(bugprone-reserved-identifier,cert-dcl51-cpp,cert-dcl37-c)

ssize_t read(int descriptor, void* buffer, std::size_t size) {
    waitAtDescriptor(descriptor);
    return callNext<Read>("read", descriptor, buffer, size);
}

ssize_t pread(int descriptor, void* buffer, std::size_t size, off_t place) {
    waitAtDescriptor(descriptor);
    return callNext<ReadAt>("pread", descriptor, buffer, size, place);
}

ssize_t pread64(int descriptor, void* buffer, std::size_t size, off_t place) {
    waitAtDescriptor(descriptor);
    return callNext<ReadAt>("pread64", descriptor, buffer, size, place);
}

} // extern "C"
