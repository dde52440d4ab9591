// Runs the tests under a locale whose numbers have a decimal comma; fails if there is none, and if no test
// runs.

#include "tests/CommaLocale.h"

#include <cstdio>
#include <cstdlib>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (!kelvinbar::enterCommaLocale(KELVINBAR_LOCALES)) {
        std::fputs("the locale with a decimal comma is missing\n", stderr);
        return EXIT_FAILURE;
    }
    const int result = RUN_ALL_TESTS();
    if (testing::UnitTest::GetInstance()->test_to_run_count() > 0) return result;
    std::fputs("no test ran\n", stderr);
    return EXIT_FAILURE;
}
