#include "machines/demo/DemoMachine.h"

#include "machines/demo/DemoKeys.h"
#include "machines/emulated/EmulatedSMCDriver.h"
#include "machines/replay/ReplayMachine.h"
#include "machines/replay/SnapshotParser.h"
#include "resources/SampleMachines.h"

#include <utility>

namespace kelvinbar {

Machine makeDemoMachine(std::shared_ptr<const MonotonicClock> clock) {
    const std::string_view text = sampleMachines().front().text;
    // Everything but the keys is as it is replayed.
    Machine machine = makeReplayMachine(text, clock).machine.value_or(Machine());
    auto keys = std::make_unique<DemoKeys>(parseSnapshot(text).machine.keys, std::move(clock));
    machine.driver = std::make_shared<EmulatedSMCDriver>(std::move(keys));
    return machine;
}

} // namespace kelvinbar
