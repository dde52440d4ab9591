// Refreshes of a whole store, for as long as a program runs for days: memory and threads must not grow.

#include "base/MainLoopQueue.h"
#include "base/WorkerQueue.h"
#include "bench/MemoryMachine.h"
#include "store/InMemoryUserDefaults.h"
#include "store/KelvinbarStore.h"

#include <fstream>
#include <string>

#include <benchmark/benchmark.h>

namespace kelvinbar::bench {

namespace {

/// A number from the kernel's account of this process, such as "VmRSS" (KiB) or "Threads".
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
        store_.refresh(false);
        finishRefresh();
    }

  private:
    void finishRefresh() {
        mainQueue_.runUntil([&] { return store_.statusMessage().value().starts_with("Loaded"); });
    }

    InMemoryUserDefaults defaults_;
    NotificationCenter notifications_;
    MainLoopQueue mainQueue_;
    WorkerQueue backgroundQueue_{2};
    SystemWallClock wallClock_;
    StandingClock clock_;

    KelvinbarStore store_{{.defaults = defaults_,
                           .notifications = notifications_,
                           .mainQueue = mainQueue_,
                           .backgroundQueue = backgroundQueue_,
                           .wallClock = wallClock_,
                           .monotonicClock = clock_}};
};

void refreshForDays(benchmark::State& state) {
    useMemoryMachine(namedKeys(300));
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
