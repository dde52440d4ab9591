#include "machines/demo/DemoMachine.h"

#include "machines/demo/DemoSource.h"
#include "machines/replay/ReplayMachine.h"
#include "resources/SampleMachines.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace kelvinbar {

std::vector<std::string_view> demoMachineNames() {
    std::vector<std::string_view> names;
    for (const SampleMachine& sample : sampleMachines()) names.push_back(sample.name);
    return names;
}

Machine makeDemoMachine(std::string_view name, const Machine& host) {
    const auto sample = std::ranges::find(sampleMachines(), name, &SampleMachine::name);
    if (sample == sampleMachines().end()) return {};
    Machine machine = makeReplayMachine(sample->text, host.clock).machine.value_or(Machine());
    machine.source = std::make_shared<DemoSource>(std::move(machine.source), host.clock);
    machine.texts = host.texts;
    return machine;
}

} // namespace kelvinbar
