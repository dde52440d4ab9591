// kelvinbar-demo: the same program with the readings of an invented machine.

#include "app/KelvinbarApp.h"
#include "machines/Platform.h"
#include "machines/demo/DemoMachine.h"

#include <string>
#include <string_view>

namespace {

kelvinbar::Machine makeMachine(std::string_view name, kelvinbar::Log& log) {
    log.write(kelvinbar::LogCategory::keys, kelvinbar::LogLevel::info,
              [name] { return "reading the sample " + std::string(name); });
    return kelvinbar::makeDemoMachine(name, kelvinbar::makePlatform(log));
}

} // namespace

int main(int argc, char** argv) {
    return kelvinbar::KelvinbarApp::run(argc, argv,
                                        {.name = "kelvinbar-demo",
                                         .machineNames = kelvinbar::demoMachineNames(),
                                         .usualMachineName = kelvinbar::usualDemoMachine()},
                                        makeMachine);
}
