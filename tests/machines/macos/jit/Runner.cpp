// Runs the tests of a list that is written as the build finds them: TEST_CASE(suite, name) a line.

#include "tests/machines/macos/jit/HostLibrary.h"

#include <cstdio>

#include <gtest/gtest.h>

namespace {

int failureCount = 0;

} // namespace

void testing::standin::reportFailure(const char* file, int line, const std::string& what) {
    ++failureCount;
    std::printf("%s:%d: failure\n%s\n", file, line, what.c_str());
}

#define TEST_CASE(suite, name) extern "C" void test_##suite##_##name();
#include "TestList.inc"
#undef TEST_CASE

int main() {
    useHostStreams();
    int testCount = 0;
    const auto run = [&](const char* name, void (*test)()) {
        std::printf("%s\n", name);
        std::fflush(nullptr); // a test may abort
        test();
        ++testCount;
    };
#define TEST_CASE(suite, name) run(#suite "." #name, test_##suite##_##name);
#include "TestList.inc"
#undef TEST_CASE
    if (failureCount == 0) {
        std::printf("%d tests passed\n", testCount);
    } else {
        std::printf("%d expectations failed in %d tests\n", failureCount, testCount);
    }
    std::fflush(nullptr);
    return failureCount == 0 ? 0 : 1;
}
