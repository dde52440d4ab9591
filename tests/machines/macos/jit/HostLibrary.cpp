// Functions that code for macOS expects in its C library, and that the library of the host has under another
// name or not at all.

#include "tests/machines/macos/jit/HostLibrary.h"

#include <cstdio>
#include <cstdlib>
#include <mach/mach.h>

extern "C" {

extern FILE* hostStandardError __asm("_stderr");
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

} // extern "C"

void useHostStreams() { __stderrp = hostStandardError; }
