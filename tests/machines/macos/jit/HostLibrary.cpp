// What code for macOS finds in its C library, where the library of the machine that runs the tests has it
// under another name or not at all.

#include "tests/machines/macos/jit/HostLibrary.h"

#include <cstdio>
#include <cstdlib>
#include <mach/mach.h>

extern "C" {

extern FILE* hostStandardError __asm("_stderr");
FILE* __stderrp = nullptr;

mach_port_t mach_task_self_ = 0x103;

void* __dso_handle = nullptr;

// What has static storage lives on: its destructor would run when the code is gone.
int __cxa_atexit(void (* /*destructor*/)(void*), void* /*object*/, void* /*library*/) { return 0; }

// Without what the linker in memory says about crashes of its own.
void abort() {
    std::fprintf(stderr, "Aborted\n");
    std::fflush(nullptr);
    std::_Exit(3);
}

} // extern "C"

void useHostStreams() { __stderrp = hostStandardError; }
