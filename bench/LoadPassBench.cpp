// One pass over a machine whose driver answers from memory, and the same driver calls alone as the lower
// bound.

#include "bench/Measuring.h"

#include <algorithm>
#include <iterator>
#include <span>

#include <benchmark/benchmark.h>

namespace kelvinbar::bench {

namespace {

constexpr std::size_t maximumCandidates = 1024;
constexpr std::size_t pinnedKeys = 6;

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

/// The driver calls of a pass, without the rest of it.
struct DriverCalls {
    explicit DriverCalls(const std::vector<std::string>& keys) : driver(keys), codes(packedKeys(keys)) {}

    void listKeys() {
        readKeyAlone(driver, packedSMCKey("#KEY"));
        for (std::uint32_t index = 0; index < codes.size(); ++index) {
            call(driver, SMCCommand::keyByIndex, 0, index);
        }
    }

    void readKeys() {
        for (const std::uint32_t code : std::span(codes).first(std::min(codes.size(), maximumCandidates))) {
            readKeyAlone(driver, code);
        }
    }

    MemoryDriver driver;
    std::vector<std::uint32_t> codes;
};

void measurePass(benchmark::State& state, const std::vector<std::string>& keys, const LoadPass& pass) {
    const MemoryMachine memory(keys);
    while (state.KeepRunning()) benchmark::DoNotOptimize(kelvinbar::loadReadings(memory.machine, pass));
}

/// A pass that discovers all keys and reads as many as one pass may read.
void loadReadingsWithDiscovery(benchmark::State& state) {
    measurePass(state, keysOfArgument(state), discoveringPass());
}

void driverCallsWithDiscovery(benchmark::State& state) {
    DriverCalls calls(keysOfArgument(state));
    while (state.KeepRunning()) {
        calls.listKeys();
        calls.readKeys();
    }
}

/// A pass between two discoveries.
void loadReadings(benchmark::State& state) {
    const auto keys = keysOfArgument(state);
    measurePass(state, keys, passOver(keys, true));
}

void driverCalls(benchmark::State& state) {
    DriverCalls calls(keysOfArgument(state));
    while (state.KeepRunning()) calls.readKeys();
}

void loadPinnedReadings(benchmark::State& state) {
    const auto keys = namedKeys(1000);
    measurePass(state, keys, passOver({keys.end() - pinnedKeys, keys.end()}, false));
    reportKeys(state, pinnedKeys);
}

BENCHMARK(loadReadingsWithDiscovery)->Arg(64)->Arg(512)->Arg(1000)->Arg(2048)->Arg(8192);
BENCHMARK(driverCallsWithDiscovery)->Arg(64)->Arg(512)->Arg(1000)->Arg(2048)->Arg(8192);
BENCHMARK(loadReadings)->Arg(64)->Arg(512)->Arg(1000);
BENCHMARK(driverCalls)->Arg(64)->Arg(512)->Arg(1000);
BENCHMARK(loadPinnedReadings);

} // namespace

} // namespace kelvinbar::bench
