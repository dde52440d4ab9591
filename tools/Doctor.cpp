#include "tools/Doctor.h"

#include "machines/Platform.h"
#include "tools/ProgramErrors.h"
#include "tools/doctor/DoctorRun.h"

#include <vector>

namespace kelvinbar {

namespace {

std::vector<FindingSection> sessionOfConsole() {
    return {{.title = "Tray",
             .findings = {{.subject = "tray",
                           .state = FindingState::note,
                           .found = "not examined: a console program does not know the desktop",
                           .advice = "Run \"kelvinbar --doctor\" in the session of the desktop"}}}};
}

} // namespace

int examineThisMachine(bool isJson, Log& log) {
    return runDoctor(makePlatform(log), {.program = "kelvinbar-snapshot " KELVINBAR_VERSION,
                                         .isJson = isJson,
                                         .look = platformFindings,
                                         .lookAtSession = sessionOfConsole,
                                         .reportError = reportError});
}

} // namespace kelvinbar
