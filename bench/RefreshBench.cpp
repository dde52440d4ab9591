// Refreshes a complete store as often as a program does in days: memory and threads must not grow.

#include "base/MainLoopQueue.h"
#include "base/WorkerQueue.h"
#include "bench/MemoryStore.h"

#include <fstream>
#include <string>

#include <benchmark/benchmark.h>

namespace kelvinbar::bench {

namespace {

/// A number from /proc/self/status, such as "VmRSS" (KiB) or "Threads".
double processStatus(const std::string& name) {
    std::ifstream file("/proc/self/status");
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(name + ":")) return std::stod(line.substr(name.size() + 1));
    }
    return 0;
}

class RunningStore {
  public:
    RunningStore() { finishRefresh(); }

    void refreshOnce() {
        memory_.store().refresh(false);
        finishRefresh();
    }

  private:
    void finishRefresh() {
        mainQueue_.runUntil([&] { return memory_.store().statusMessage().value().starts_with("Loaded"); });
    }

    MainLoopQueue mainQueue_;
    WorkerQueue backgroundQueue_{2};
    MemoryStore memory_{mainQueue_, backgroundQueue_};
};

void refreshForDays(benchmark::State& state) {
    RunningStore running;
    for (int warmUp = 0; warmUp < 1000; ++warmUp) running.refreshOnce();
    const double memoryBefore = processStatus("VmRSS");
    const double threadsBefore = processStatus("Threads");
    while (state.KeepRunning()) running.refreshOnce();
    state.counters["memoryGrowthKiB"] = processStatus("VmRSS") - memoryBefore;
    state.counters["threadGrowth"] = processStatus("Threads") - threadsBefore;
}

BENCHMARK(refreshForDays)->Iterations(100000)->UseRealTime();

} // namespace

} // namespace kelvinbar::bench
