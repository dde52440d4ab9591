#include "app/Doctor.h"

#include "desktop/Desktop.h"
#include "machines/Platform.h"

#include <iostream>

namespace kelvinbar {

int examine(const std::string& name, const DoctorOptions& options, const Machine& machine, Log& log) {
    return runDoctor(
        machine,
        {.program = name + " " KELVINBAR_VERSION,
         .options = options,
         .look = platformFindings,
         .lookAtSession = [&] { return desktopFindings(name, log); },
         .reportError = [&](const std::string& message) { std::cerr << name + ": " + message + "\n"; }});
}

} // namespace kelvinbar
