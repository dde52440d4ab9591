#pragma once

#include <cstdio>
#include <cstdlib>

namespace kelvinbar::fuzz {

/// Aborts unless `holds`, which libFuzzer reports as a finding.
inline void check(bool holds, const char* rule) {
    if (holds) return;
    std::fprintf(stderr, "broken rule: %s\n", rule);
    std::abort();
}

} // namespace kelvinbar::fuzz
