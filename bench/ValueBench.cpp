// Single steps of a pass: decoding, normalising, sorting. printf is the lower bound for number text.

#include "base/NumberText.h"
#include "bench/Measuring.h"
#include "smc/SMCValueDecoding.h"
#include "store/ReadingOrder.h"
#include "store/ValueNormalization.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

#include <benchmark/benchmark.h>

namespace kelvinbar::bench {

namespace {

SMCParamBlock block(std::string_view type, std::array<std::uint8_t, 4> bytes, std::uint32_t size) {
    SMCParamBlock filled;
    filled.dataType = packedSMCKey(type);
    filled.dataSize = size;
    std::ranges::copy(bytes, filled.bytes.begin());
    return filled;
}

void decodeValue(benchmark::State& state) {
    const std::array blocks{block("sp78", {0x2D, 0x80}, 2), block("flt ", {0x33, 0x33, 0x3D, 0x42}, 4),
                            block("ui16", {0x2D, 0x42}, 2), block("ch8*", {0x6A, 0x31, 0x33, 0x38}, 4)};
    measureInTurn(state, blocks, [](const SMCParamBlock& each) { return dictionaryForKey("TC0P", each); });
}

constexpr std::array numbers{45.5, 1200.25, 3.125, 12500.0};

void normalizeOneValue(benchmark::State& state) {
    measureInTurn(state, numbers, [](double number) { return normalizeValue("B0AV", "", number, "V"); });
}

void numberText(benchmark::State& state) {
    measureInTurn(state, numbers, [](double number) { return fixedText(number, 2); });
}

void numberTextByPrintf(benchmark::State& state) {
    std::array<char, 32> buffer{};
    measureInTurn(state, numbers,
                  [&](double number) { return std::snprintf(buffer.data(), buffer.size(), "%.2f", number); });
}

void sortReadings(benchmark::State& state) {
    const auto keys = keysOfArgument(state);
    const MemoryMachine memory(keys);
    const auto readings = kelvinbar::loadReadings(memory.machine, passOver(keys, false)).readings;
    while (state.KeepRunning()) {
        state.PauseTiming();
        auto copy = readings;
        state.ResumeTiming();
        copy = sortedByCategoryAndKey(std::move(copy));
        benchmark::DoNotOptimize(copy);
    }
}

BENCHMARK(decodeValue);
BENCHMARK(normalizeOneValue);
BENCHMARK(numberText);
BENCHMARK(numberTextByPrintf);
BENCHMARK(sortReadings)->Arg(64)->Arg(512)->Arg(1000);

} // namespace

} // namespace kelvinbar::bench
