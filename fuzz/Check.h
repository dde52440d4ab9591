#pragma once

#include <cstdio>
#include <cstdlib>

namespace kelvinbar::fuzz {

/// Ends the run as a finding unless `holds`.
inline void check(bool holds, const char* rule) {
    if (holds) return;
    std::fprintf(stderr, "broken rule: %s\n", rule);
    std::abort();
}

} // namespace kelvinbar::fuzz
