#include "tools/doctor/DoctorRun.h"

#include "base/OutOfMemory.h"
#include "process/CostMeter.h"
#include "process/StandardStreams.h"
#include "process/TrayProgram.h"
#include "tools/cost/OwnCost.h"
#include "tools/doctor/Examination.h"
#include "tools/doctor/FindingsText.h"
#include "tools/doctor/OwnCostFindings.h"
#include "tools/doctor/PersonalPaths.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <system_error>
#include <utility>

namespace kelvinbar {

namespace {

std::error_code printFindings(std::vector<FindingSection> sections, const DoctorRun& run) {
    hidePerson(sections, personalPaths());
    const FindingsReport report{.program = run.program, .sections = sections};
    return writeToStandardOutput(run.options.isJson ? findingsJson(report) : findingsText(report));
}

} // namespace

int runDoctor(const Machine& machine, const DoctorRun& run) {
    const CostMeter costMeter;
    Examination examination;
    auto error = std::make_error_code(std::errc::not_enough_memory);
    static_cast<void>(hasMemoryFor([&] {
        auto sections = examination.examine(machine, run.look);
        std::ranges::move(run.lookAtSession(), std::back_inserter(sections));
        if (run.options.hasOwnCost) {
            sections.push_back(
                ownCostFindings(askTrayProgram(longestWaitForTray),
                                costOfThisProgram(costMeter, examination.accessesOfLastPass())));
        }
        error = printFindings(std::move(sections), run);
    }));
    if (error) run.reportError(writeFailure("what was found", error));
    const int status = error ? EXIT_FAILURE : EXIT_SUCCESS;
    // A thread that is stuck in a driver cannot be ended, and still uses the machine and the log.
    if (!examination.finish()) std::_Exit(status);
    return status;
}

} // namespace kelvinbar
