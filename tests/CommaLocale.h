#pragma once

#include <array>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <locale>
#include <string>

#ifdef __has_feature
#if __has_feature(address_sanitizer)
#include <sanitizer/lsan_interface.h>
#define KELVINBAR_LOOKS_FOR_LEAKS
#endif
#endif

namespace kelvinbar {

#ifdef KELVINBAR_LOOKS_FOR_LEAKS
using LeaksOfTheSystem = __lsan::ScopedDisabler;
#else
struct LeaksOfTheSystem {};
#endif

/// Enters the locale of `folder` whose numbers have a decimal comma, by the environment, so that a toolkit
/// enters it too. False when it is not there. Before any thread.
inline bool enterCommaLocale(const char* folder) {
    // The C library keeps what it makes of LOCPATH and never frees it.
    [[maybe_unused]] const LeaksOfTheSystem leaks;
    setenv("LOCPATH", folder, 1);       // NOLINT(concurrency-mt-unsafe)
    setenv("LC_ALL", "de_DE.UTF-8", 1); // NOLINT(concurrency-mt-unsafe)
    if (std::setlocale(LC_ALL, "") == nullptr) return false;
    std::locale::global(std::locale("de_DE.UTF-8"));
    std::array<char, 8> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.1f", 0.5);
    return std::string(buffer.data()) == "0,5";
}

} // namespace kelvinbar
