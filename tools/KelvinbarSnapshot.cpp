// kelvinbar-snapshot: prints the readings of a machine on standard output.

#include "base/Log.h"
#include "base/OutOfMemory.h"
#include "process/StandardStreams.h"
#include "tools/ProgramErrors.h"
#include "tools/SnapshotCommandLine.h"
#include "tools/SnapshotPrinter.h"
#include "tools/SnapshotTaker.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>

namespace kelvinbar {

namespace {

int printSnapshot(const SnapshotOptions& options) {
    StandardErrorSink standardError;
    Log log(standardError, logChoiceOfEnvironment(), options.verbosity);
    const auto machine = chosenMachine(options.machine, log);
    if (!machine) return inputErrorExit;
    SnapshotTaker taker;
    int status = inputErrorExit;
    if (!hasMemoryFor([&] { status = SnapshotPrinter(options, *machine, taker).print(); })) {
        taker.end();
        reportMissingMemory();
    }
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
