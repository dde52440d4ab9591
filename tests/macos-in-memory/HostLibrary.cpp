// Functions that code for macOS expects in its C library, and that the library of the host has under another
// name, with other numbers, or not at all.

#include "tests/macos-in-memory/HostLibrary.h"

#include <copyfile.h>
#include <crt_externs.h>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <dirent.h>
#include <dlfcn.h>
#include <mach/mach.h>
#include <sys/stat.h>
#include <xlocale.h>

namespace {

int noArguments = 0;
char** noArgument = nullptr;

} // namespace

extern "C" {

extern FILE* hostStandardInput __asm("_stdin");
extern FILE* hostStandardError __asm("_stderr");
extern FILE* hostStandardOutput __asm("_stdout");
FILE* __stdinp = nullptr;
FILE* __stdoutp = nullptr;
FILE* __stderrp = nullptr;

mach_port_t mach_task_self_ = 0x103;

void* __dso_handle = nullptr;

long __stack_chk_guard = 0x7a3d'11c5'09e2'44b8;

[[noreturn]] void __stack_chk_fail();

// Destructors of static objects are dropped: they would run after the code has been unloaded.
int __cxa_atexit(void (* /*destructor*/)(void*), void* /*object*/, void* /*library*/) { return 0; }

// Silences the in-memory linker's messages about crashes of its own.
void abort() {
    std::fprintf(stderr, "Aborted\n");
    std::fflush(nullptr);
    std::_Exit(3);
}

void __stack_chk_fail() { std::abort(); }

void __assert_rtn(const char* function, const char* file, int line, const char* condition) {
    std::fprintf(stderr, "%s:%d: %s: %s\n", file, line, function, condition);
    std::abort();
}

// The tests' framework asks for these before a test that is expected to end its process. None does here.
kern_return_t task_threads(task_inspect_t /*task*/, thread_act_array_t* /*threads*/,
                           mach_msg_type_number_t* /*count*/) {
    return KERN_FAILURE;
}

kern_return_t vm_deallocate(vm_map_t /*task*/, vm_address_t /*address*/, vm_size_t /*size*/) {
    return KERN_FAILURE;
}

int* _NSGetArgc() { return &noArguments; }

char*** _NSGetArgv() { return &noArgument; }

// The host lays out what it tells of files in another way, so there are none. Opening one by its name works.
int stat(const char* /*path*/, struct stat* /*state*/) { return -1; }

int lstat(const char* /*path*/, struct stat* /*state*/) { return -1; }

int fstat(int /*file*/, struct stat* /*state*/) { return -1; }

DIR* opendir(const char* /*path*/) { return nullptr; }

DIR* fdopendir(int /*file*/) { return nullptr; }

dirent* readdir(DIR* /*folder*/) { return nullptr; }

// Nothing copies files. The C++ library's own function does.
copyfile_state_t copyfile_state_alloc() { return nullptr; }

int copyfile_state_free(copyfile_state_t /*state*/) { return 0; }

int fcopyfile(int /*from*/, int /*to*/, copyfile_state_t /*state*/, copyfile_flags_t /*what*/) { return -1; }

char* hostRealPath(const char* path, char* resolved) __asm("_realpath");

char* realpath(const char* path, char* resolved) { return hostRealPath(path, resolved); }

int* hostErrorNumber() __asm("___errno_location");

int* __error() { return hostErrorNumber(); }

int clock_gettime(clockid_t clock, timespec* time) {
    constexpr auto hostMonotonic = static_cast<clockid_t>(1);
    static const auto host = reinterpret_cast<decltype(&clock_gettime)>(dlsym(nullptr, "clock_gettime"));
    return host(clock == CLOCK_MONOTONIC || clock == CLOCK_UPTIME_RAW ? hostMonotonic : clock, time);
}

#ifdef __aarch64__
// Variable arguments are on the stack on macOS, and in registers first on the host, whose list of them tells
// how many are left there: none.
struct HostArguments {
    void* stack;
    void* endOfGeneral = nullptr;
    void* endOfVector = nullptr;
    int generalOffset = 0;
    int vectorOffset = 0;
};

int hostFormat(char* text, size_t size, const char* format, HostArguments* arguments) __asm("___vsnprintf");
int hostPrint(FILE* file, const char* format, HostArguments* arguments) __asm("__IO_vfprintf");
int hostScan(const char* text, const char* format, HostArguments* arguments) __asm("___isoc99_vsscanf");

int vsnprintf(char* text, size_t size, const char* format, va_list list) {
    HostArguments arguments{.stack = list};
    return hostFormat(text, size, format, &arguments);
}

int snprintf(char* text, size_t size, const char* format, ...) {
    va_list list;
    va_start(list, format);
    const int length = vsnprintf(text, size, format, list);
    va_end(list);
    return length;
}

int vfprintf(FILE* file, const char* format, va_list list) {
    HostArguments arguments{.stack = list};
    return hostPrint(file, format, &arguments);
}

int fprintf(FILE* file, const char* format, ...) {
    va_list list;
    va_start(list, format);
    const int length = vfprintf(file, format, list);
    va_end(list);
    return length;
}

int vprintf(const char* format, va_list list) { return vfprintf(stdout, format, list); }

int printf(const char* format, ...) {
    va_list list;
    va_start(list, format);
    const int length = vprintf(format, list);
    va_end(list);
    return length;
}

int vsscanf(const char* text, const char* format, va_list list) {
    HostArguments arguments{.stack = list};
    return hostScan(text, format, &arguments);
}
#endif

// The C++ library formats and scans numbers of streams in the locale of C, which is the tests' own here. It
// passes null for that locale, which the host does not know.
double strtod_l(const char* text, char** end, locale_t /*locale*/) { return std::strtod(text, end); }

float strtof_l(const char* text, char** end, locale_t /*locale*/) { return std::strtof(text, end); }

#ifdef __aarch64__
// As large as a double on macOS, not on the host.
long double strtold_l(const char* text, char** end, locale_t /*locale*/) { return std::strtod(text, end); }
#endif

long long strtoll_l(const char* text, char** end, int base, locale_t /*locale*/) {
    return std::strtoll(text, end, base);
}

unsigned long long strtoull_l(const char* text, char** end, int base, locale_t /*locale*/) {
    return std::strtoull(text, end, base);
}

int snprintf_l(char* text, size_t size, locale_t /*locale*/, const char* format, ...) {
    va_list list;
    va_start(list, format);
    const int length = vsnprintf(text, size, format, list);
    va_end(list);
    return length;
}

int asprintf_l(char** text, locale_t /*locale*/, const char* format, ...) {
    va_list list;
    va_start(list, format);
    va_list again;
    va_copy(again, list);
    const int length = vsnprintf(nullptr, 0, format, list);
    const size_t size = static_cast<size_t>(length) + 1;
    *text = static_cast<char*>(std::malloc(size));
    vsnprintf(*text, size, format, again);
    va_end(again);
    va_end(list);
    return length;
}

int sscanf_l(const char* text, locale_t /*locale*/, const char* format, ...) {
    va_list list;
    va_start(list, format);
    const int count = vsscanf(text, format, list);
    va_end(list);
    return count;
}

} // extern "C"

#ifndef __aarch64__
// Of a newer C++ library than the host's.
_LIBCPP_BEGIN_NAMESPACE_STD
void __libcpp_verbose_abort(const char* format, ...) {
    va_list list;
    va_start(list, format);
    std::vfprintf(stderr, format, list);
    va_end(list);
    std::abort();
}

_LIBCPP_END_NAMESPACE_STD
#endif

void useHostStreams() {
    __stdinp = hostStandardInput;
    __stdoutp = hostStandardOutput;
    __stderrp = hostStandardError;
}
