#include "machines/Platform.h"
#include "machines/linux/BootTimeClock.h"
#include "machines/linux/LinuxMachine.h"
#include "machines/linux/StoredPreferences.h"
#include "machines/linux/doctor/ConfigurationFindings.h"
#include "machines/linux/doctor/DriverFindings.h"
#include "machines/linux/doctor/SourceFindings.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

namespace kelvinbar {

Machine makePlatform(Log& log) { return makeLinuxMachine("/", std::make_shared<BootTimeClock>(), log); }

std::vector<FindingSection> platformFindings(const Machine& machine) {
    const std::vector<SourceReport> reports = machine.source->report();
    std::vector<Finding> sources = sourceFindings(reports);
    std::ranges::move(controllerFindings("/"), std::back_inserter(sources));
    return {{.title = "Sources", .findings = std::move(sources)},
            {.title = "Drivers", .findings = driverFindings("/")},
            {.title = "Configuration", .findings = configurationFindings(reports, preferencesFile())}};
}

std::string_view usualDemoMachine() { return "linux-pc"; }

} // namespace kelvinbar
