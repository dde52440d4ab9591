// Catalogue look-ups: a key in the table, a key that a rule names, and an unknown key.

#include "bench/Measuring.h"
#include "catalogue/SMCKeyDatabase.h"

#include <array>
#include <string_view>

#include <benchmark/benchmark.h>

namespace kelvinbar::bench {

namespace {

void lookUp(benchmark::State& state, const std::array<std::string_view, 4>& keys) {
    measureInTurn(state, keys, [](std::string_view key) { return SMCKeyDatabase::hwMonitorDefinition(key); });
}

void tableHit(benchmark::State& state) { lookUp(state, {"TC0P", "F0Ac", "VC0C", "IG0S"}); }

void ruleHit(benchmark::State& state) { lookUp(state, {"TC3D", "TG2D", "VD0R", "B0XX"}); }

void miss(benchmark::State& state) { lookUp(state, {"#KEY", "MSSD", "TCaC", "F3Xy"}); }

BENCHMARK(tableHit);
BENCHMARK(ruleHit);
BENCHMARK(miss);

} // namespace

} // namespace kelvinbar::bench
