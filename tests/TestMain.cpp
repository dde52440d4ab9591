// Runs the tests under a locale whose numbers have a decimal comma, and fails if there is none.

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
    return RUN_ALL_TESTS();
}
