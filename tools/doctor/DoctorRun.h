#pragma once

#include "base/Finding.h"
#include "sensors/Machine.h"

#include <functional>
#include <string>
#include <vector>

namespace kelvinbar {

/// What the user asked the doctor for.
struct DoctorOptions {
    bool isJson = false;
    bool hasOwnCost = false; ///< what the program itself costs is told, too
};

/// What a program lets the doctor examine, and how it prints.
struct DoctorRun {
    std::string program; ///< its name with the version
    DoctorOptions options;
    std::function<std::vector<FindingSection>(const Machine&)> look; ///< as in Examination
    /// What is found of the session; called on the main thread.
    std::function<std::vector<FindingSection>()> lookAtSession;
    std::function<void(const std::string& message)> reportError;
};

/// Examines the machine and the session, and prints what was found on standard output at once, without what
/// could tell whose it is. Returns the exit status: 0, or 1 if nothing could be printed. Ends the process
/// with it if a thread is stuck in a driver. Main thread.
int runDoctor(const Machine& machine, const DoctorRun& run);

} // namespace kelvinbar
