// One pass over a machine whose driver answers from memory, and the same driver calls alone as its floor.

#include "bench/MemoryMachine.h"

#include <algorithm>

#include <benchmark/benchmark.h>

namespace kelvinbar::bench {

namespace {

constexpr std::size_t maximumCandidates = 1024;
constexpr std::size_t pinnedKeys = 6;

void setKeys(benchmark::State& state, std::size_t count) {
    state.counters["keys"] = static_cast<double>(count);
}

void call(MemoryDriver& driver, SMCCommand command, std::uint32_t key, std::uint32_t index) {
    SMCParamBlock input;
    input.command = static_cast<std::uint8_t>(command);
    input.key = key;
    input.data32 = index;
    SMCParamBlock output;
    std::size_t size = sizeof(output);
    driver.callStructMethod(1, 2, std::as_bytes(std::span(&input, 1)),
                            std::as_writable_bytes(std::span(&output, 1)), size);
    benchmark::DoNotOptimize(output);
}

void readKeyAlone(MemoryDriver& driver, std::uint32_t key) {
    call(driver, SMCCommand::readKeyInfo, key, 0);
    call(driver, SMCCommand::readBytes, key, 0);
}

std::vector<std::uint32_t> packedKeys(const std::vector<std::string>& keys) {
    std::vector<std::uint32_t> codes;
    std::ranges::transform(keys, std::back_inserter(codes), packedSMCKey);
    return codes;
}

/// A pass that discovers all keys and reads those that one pass may.
void loadReadingsWithDiscovery(benchmark::State& state) {
    const auto keys = namedKeys(static_cast<std::size_t>(state.range(0)));
    useMemoryMachine(keys);
    while (state.KeepRunning()) benchmark::DoNotOptimize(kelvinbar::loadReadings({}, true, {}, true));
    setKeys(state, keys.size());
}

void driverCallsWithDiscovery(benchmark::State& state) {
    const auto keys = namedKeys(static_cast<std::size_t>(state.range(0)));
    const auto codes = packedKeys(keys);
    MemoryDriver driver(keys);
    while (state.KeepRunning()) {
        readKeyAlone(driver, packedSMCKey("#KEY"));
        for (std::uint32_t index = 0; index < codes.size(); ++index) {
            call(driver, SMCCommand::keyByIndex, 0, index);
        }
        for (std::size_t index = 0; index < std::min(codes.size(), maximumCandidates); ++index) {
            readKeyAlone(driver, codes[index]);
        }
    }
    setKeys(state, keys.size());
}

/// A pass between two discoveries.
void loadReadings(benchmark::State& state) {
    const auto keys = namedKeys(static_cast<std::size_t>(state.range(0)));
    useMemoryMachine(keys);
    const KeySet known = keySet(keys);
    while (state.KeepRunning()) benchmark::DoNotOptimize(kelvinbar::loadReadings({}, false, known, true));
    setKeys(state, keys.size());
}

void driverCalls(benchmark::State& state) {
    const auto keys = namedKeys(static_cast<std::size_t>(state.range(0)));
    const auto codes = packedKeys(keys);
    MemoryDriver driver(keys);
    while (state.KeepRunning()) {
        for (const std::uint32_t code : codes) readKeyAlone(driver, code);
    }
    setKeys(state, keys.size());
}

void loadPinnedReadings(benchmark::State& state) {
    const auto keys = namedKeys(1000);
    useMemoryMachine(keys);
    const KeySet pinned(keys.end() - pinnedKeys, keys.end());
    while (state.KeepRunning())
        benchmark::DoNotOptimize(kelvinbar::loadReadings(pinned, false, pinned, false));
    setKeys(state, pinned.size());
}

BENCHMARK(loadReadingsWithDiscovery)->Arg(64)->Arg(512)->Arg(1000)->Arg(2048)->Arg(8192);
BENCHMARK(driverCallsWithDiscovery)->Arg(64)->Arg(512)->Arg(1000)->Arg(2048)->Arg(8192);
BENCHMARK(loadReadings)->Arg(64)->Arg(512)->Arg(1000);
BENCHMARK(driverCalls)->Arg(64)->Arg(512)->Arg(1000);
BENCHMARK(loadPinnedReadings);

} // namespace

} // namespace kelvinbar::bench
