#include "smc/Machine.h"

#include "smc/NativeMacSupport.h"
#include "smc/RegistryFans.h"
#include "smc/SMCConnection.h"

namespace kelvinbar {

void useMachine(const Machine& machine) {
    useDriver(machine.driver);
    useRegistry(machine.registry, machine.clock);
    NativeMacSupport::useSystem(machine.system);
}

} // namespace kelvinbar
