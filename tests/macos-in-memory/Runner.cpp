// Runs the tests. The linker in memory runs no initialisers of global objects, with which the tests register
// themselves: the build lists these in INITIALIZER(name) lines.

#include "tests/macos-in-memory/HostLibrary.h"

#include <ios>

#include <gtest/gtest.h>

#define INITIALIZER(name) void initialize_##name() __asm("__GLOBAL__sub_I_" #name ".cpp");
#include "Initializers.inc"
#undef INITIALIZER

int main(int argc, char** argv) {
    useHostStreams();
    const std::ios_base::Init streams;
#define INITIALIZER(name) initialize_##name();
#include "Initializers.inc"
#undef INITIALIZER
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
