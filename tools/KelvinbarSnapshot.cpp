// kelvinbar-snapshot: prints the readings of a machine on standard output.

#include "base/Log.h"
#include "base/OutOfMemory.h"
#include "process/StandardStreams.h"
#include "tools/ProgramErrors.h"
#include "tools/SnapshotCommandLine.h"
#include "tools/SnapshotTaker.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>
#include <string>
#include <vector>

namespace kelvinbar {

namespace {

void reportSilentDevices(const std::vector<SilentDevice>& silent) {
    for (const SilentDevice& each : silent) reportError("no answer from " + each.file);
}

Report reportOf(const SnapshotOptions& options, const Snapshot& snapshot) {
    return {.machine = options.machine.description(),
            .time = snapshot.time,
            .status = snapshot.status,
            .readings = snapshot.readings};
}

FormatSettings formatSettings() {
    const bool isTerminal = isStandardOutputTerminal();
    return {.isTerminal = isTerminal, .isColoured = isTerminal && wantsColours(), .isSeries = false};
}

/// Prints the snapshot and returns the exit status.
int print(const SnapshotOptions& options, const Snapshot& snapshot) {
    const ReportWriter write = options.format->makeWriter(formatSettings());
    const auto error = writeToStandardOutput(write(reportOf(options, snapshot)));
    reportSilentDevices(snapshot.silent);
    if (error) reportError("cannot write the snapshot");
    return !error && (snapshot.silent.empty() || snapshot.hasAnswers) ? 0 : inputErrorExit;
}

int printSnapshot(const SnapshotOptions& options) {
    StandardErrorSink standardError;
    Log log(standardError, logChoiceOfEnvironment(), options.verbosity);
    const auto machine = chosenMachine(options.machine, log);
    if (!machine) return inputErrorExit;
    SnapshotTaker taker;
    int status = inputErrorExit;
    if (!hasMemoryFor([&] { status = print(options, taker.take(*machine)); })) reportMissingMemory();
    // A thread that is stuck in a driver cannot be ended, and still uses the machine and the log.
    if (!taker.finish()) std::_Exit(status);
    return status;
}

int run(int argc, char** argv) {
    SnapshotCommandLine commandLine;
    if (const auto status = commandLine.parse(argc, argv)) return *status;
    return printSnapshot(commandLine.options());
}

} // namespace

} // namespace kelvinbar

int main(int argc, char** argv) {
    kelvinbar::openClosedStandardStreams();
    kelvinbar::ignoreClosedPipes();
    try {
        return kelvinbar::run(argc, argv);
    } catch (const std::bad_alloc&) {
        kelvinbar::reportMissingMemory();
        return kelvinbar::inputErrorExit;
    } catch (const std::exception& error) {
        static_cast<void>(std::fprintf(stderr, "kelvinbar-snapshot: %s\n", error.what()));
        return kelvinbar::inputErrorExit;
    }
}
