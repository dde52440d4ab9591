#pragma once

#include "bench/MemoryMachine.h"

#include <cstddef>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace kelvinbar::bench {

inline void reportKeys(benchmark::State& state, std::size_t count) {
    state.counters["keys"] = static_cast<double>(count);
}

/// As many keys as the benchmark's argument requests. Reports their actual number.
inline std::vector<std::string> keysOfArgument(benchmark::State& state) {
    auto keys = namedKeys(static_cast<std::size_t>(state.range(0)));
    reportKeys(state, keys.size());
    return keys;
}

/// Measures `work` on each input in turn, repeatedly. `inputs` must not be empty.
template <typename Inputs, typename Work>
void measureInTurn(benchmark::State& state, const Inputs& inputs, Work work) {
    std::size_t next = 0;
    while (state.KeepRunning()) benchmark::DoNotOptimize(work(inputs[next++ % inputs.size()]));
}

} // namespace kelvinbar::bench
