// kelvinbar-snapshot: prints the readings of a machine on standard output.

#include "base/Log.h"
#include "base/OutOfMemory.h"
#include "process/StandardErrorSink.h"
#include "process/StandardStreams.h"
#include "store/SnapshotExport.h"
#include "tools/Doctor.h"
#include "tools/IdentificationPrinter.h"
#include "tools/PrintedText.h"
#include "tools/ProgramErrors.h"
#include "tools/ReadingSelection.h"
#include "tools/SnapshotCommandLine.h"
#include "tools/SnapshotDiff.h"
#include "tools/SnapshotPrinter.h"
#include "tools/SnapshotTaker.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>
#include <vector>

namespace kelvinbar {

namespace {

/// Runs `print`, which returns the exit status, and ends the taker. The status is `failure` if memory runs
/// out.
template <typename Print>
int statusOf(SnapshotTaker& taker, int failure, Print print) {
    int status = failure;
    if (!hasMemoryFor([&] { status = print(); })) {
        taker.end();
        reportMissingMemory();
    }
    // A thread that is stuck in a driver cannot be ended, and still uses the machine and the log.
    if (!taker.finish()) std::_Exit(status);
    return status;
}

int printIdentified(const SnapshotOptions& options, const Machine& machine, SnapshotTaker& taker) {
    return printIdentification({.plan = *options.identification,
                                .selection = options.selection,
                                .isJson = options.format->name == "json"},
                               machine, taker);
}

int printSnapshot(const SnapshotOptions& options) {
    StandardErrorSink standardError;
    Log log(standardError, logChoiceOfEnvironment(), options.verbosity);
    const auto machine = chosenMachine(options.machine, log);
    if (!machine) return inputErrorExit;
    SnapshotTaker taker;
    return statusOf(taker, inputErrorExit, [&] {
        return options.identification ? printIdentified(options, *machine, taker)
                                      : SnapshotPrinter(options, *machine, taker).print();
    });
}

std::vector<SMCReading> comparedReadings(const SnapshotOptions& options, const Machine& machine,
                                         SnapshotTaker& taker) {
    Snapshot snapshot = taker.take(machine);
    for (const SilentDevice& device : snapshot.silent) reportError("no answer from " + device.file);
    maskAddresses(snapshot.readings); // as in the file of the other one
    dropSignsOfZero(snapshot.readings);
    return selectedReadings(snapshot.readings, options.selection);
}

/// Prints what the machines differ in; returns the exit status.
int printDifferences(const SnapshotOptions& options, const Machine& before, const Machine& after,
                     SnapshotTaker& taker) {
    const auto earlier = comparedReadings(options, before, taker);
    const auto later = comparedReadings(options, after, taker);
    if (earlier.empty() && later.empty()) {
        reportError("no reading is selected");
        return diffErrorExit;
    }
    const SnapshotDiff diff = diffOf(earlier, later, options.tolerance);
    const bool isJson = options.format->name == "json";
    if (const auto error = writeToStandardOutput(isJson ? diffJson(diff) : diffText(diff))) {
        reportError(writeFailure("the differences", error));
        return diffErrorExit;
    }
    return diff.isEmpty() ? 0 : differentExit;
}

int printDiff(const SnapshotOptions& options) {
    StandardErrorSink standardError;
    Log log(standardError, logChoiceOfEnvironment(), options.verbosity);
    MachineChoice later;
    if (options.compared.size() > 1) later.replayFile = options.compared.back();
    const auto before = chosenMachine({.replayFile = options.compared.front(), .sampleName = {}}, log);
    if (!before) return diffErrorExit;
    const auto after = chosenMachine(later, log);
    if (!after) return diffErrorExit;
    SnapshotTaker taker;
    return statusOf(taker, diffErrorExit, [&] { return printDifferences(options, *before, *after, taker); });
}

int printDoctor(const SnapshotOptions& options) {
    StandardErrorSink standardError;
    Log log(standardError, logChoiceOfEnvironment(), options.verbosity);
    return examineThisMachine({.isJson = options.format->name == "json", .hasOwnCost = options.hasOwnCost},
                              log);
}

int run(int argc, char** argv) {
    SnapshotCommandLine commandLine;
    if (const auto status = commandLine.parse(argc, argv)) return *status;
    const SnapshotOptions& options = commandLine.options();
    if (options.isDoctor) return printDoctor(options);
    return options.compared.empty() ? printSnapshot(options) : printDiff(options);
}

} // namespace

} // namespace kelvinbar

int main(int argc, char** argv) {
    kelvinbar::openClosedStandardStreams();
    kelvinbar::letWritesFail();
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
