#include "tools/Doctor.h"

#include "machines/Platform.h"
#include "tools/ProgramErrors.h"

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

int examineThisMachine(const DoctorOptions& options, Log& log) {
    return runDoctor(makePlatform(log), {.program = "kelvinbar-snapshot " KELVINBAR_VERSION,
                                         .options = options,
                                         .look = platformFindings,
                                         .lookAtSession = sessionOfConsole,
                                         .reportError = reportError});
}

} // namespace kelvinbar
