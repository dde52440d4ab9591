#include "machines/demo/DemoMachine.h"

#include "machines/demo/DemoSource.h"
#include "machines/replay/ReplayMachine.h"
#include "resources/SampleMachines.h"

#include <utility>

namespace kelvinbar {

Machine makeDemoMachine(std::shared_ptr<const MonotonicClock> clock) {
    Machine machine = makeReplayMachine(sampleMachines().front().text, clock).machine.value_or(Machine());
    machine.source = std::make_shared<DemoSource>(std::move(machine.source), std::move(clock));
    return machine;
}

} // namespace kelvinbar
