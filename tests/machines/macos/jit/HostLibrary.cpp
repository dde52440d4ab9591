// Functions that code for macOS expects in its C library, and that the library of the host has under another
// name or not at all.

#include "tests/machines/macos/jit/HostLibrary.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <mach/mach.h>

extern "C" {

extern FILE* hostStandardError __asm("_stderr");
extern FILE* hostStandardOutput __asm("_stdout");
FILE* __stderrp = nullptr;

mach_port_t mach_task_self_ = 0x103;

void* __dso_handle = nullptr;

// Destructors of static objects are dropped: they would run after the code has been unloaded.
int __cxa_atexit(void (* /*destructor*/)(void*), void* /*object*/, void* /*library*/) { return 0; }

// Silences the in-memory linker's messages about crashes of its own.
void abort() {
    std::fprintf(stderr, "Aborted\n");
    std::fflush(nullptr);
    std::_Exit(3);
}

int* hostErrorNumber() __asm("___errno_location");

int* __error() { return hostErrorNumber(); }

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

int hostFormat(char* text, size_t size, const char* format, HostArguments* arguments) __asm("_vsnprintf");
int hostPrint(FILE* file, const char* format, HostArguments* arguments) __asm("_vfprintf");

int snprintf(char* text, size_t size, const char* format, ...) {
    va_list list;
    va_start(list, format);
    HostArguments arguments{.stack = list};
    const int length = hostFormat(text, size, format, &arguments);
    va_end(list);
    return length;
}

int fprintf(FILE* file, const char* format, ...) {
    va_list list;
    va_start(list, format);
    HostArguments arguments{.stack = list};
    const int length = hostPrint(file, format, &arguments);
    va_end(list);
    return length;
}

int printf(const char* format, ...) {
    va_list list;
    va_start(list, format);
    HostArguments arguments{.stack = list};
    const int length = hostPrint(hostStandardOutput, format, &arguments);
    va_end(list);
    return length;
}
#endif

} // extern "C"

void useHostStreams() { __stderrp = hostStandardError; }
