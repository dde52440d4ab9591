// Runs the tests under a locale whose numbers have a decimal comma, and fails if there is none.

#include <array>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <locale>
#include <string>

#include <gtest/gtest.h>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
using LeaksOfTheSystem = __lsan::ScopedDisabler;
#else
struct LeaksOfTheSystem {};
#endif

namespace {

bool enterCommaLocale() {
    // The C library keeps what it makes of LOCPATH and never frees it.
    [[maybe_unused]] const LeaksOfTheSystem leaks;
    setenv("LOCPATH", KELVINBAR_LOCALES, 1); // NOLINT(concurrency-mt-unsafe): before any thread
    if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr) return false;
    std::locale::global(std::locale("de_DE.UTF-8"));
    std::array<char, 8> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.1f", 0.5);
    return std::string(buffer.data()) == "0,5";
}

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (!enterCommaLocale()) {
        std::fputs("the locale with a decimal comma is missing\n", stderr);
        return EXIT_FAILURE;
    }
    return RUN_ALL_TESTS();
}
