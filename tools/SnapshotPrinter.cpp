#include "tools/SnapshotPrinter.h"

#include "machines/Platform.h"
#include "process/EndSignals.h"
#include "process/StandardStreams.h"
#include "process/TrayProgram.h"
#include "tools/OwnReadings.h"
#include "tools/PrintedText.h"
#include "tools/ProgramErrors.h"
#include "tools/TerminalPage.h"
#include "tools/WatchLoop.h"

#include <chrono>
#include <memory>
#include <system_error>
#include <utility>
#include <vector>

namespace kelvinbar {

namespace {

/// For the tray program's answer.
constexpr std::chrono::seconds longestWait{1};

TimePrecision precisionFor(const SnapshotOptions& options) {
    const auto interval = options.interval.value_or(std::chrono::seconds(0));
    return interval % std::chrono::seconds(1) == interval.zero() ? TimePrecision::seconds
                                                                 : TimePrecision::milliseconds;
}

FormatSettings settingsFor(const SnapshotOptions& options) {
    const bool isTerminal = isStandardOutputTerminal();
    return {.isTerminal = isTerminal,
            .isColoured = isTerminal && wantsColours(),
            .isSeries = options.interval.has_value(),
            .isOrdered = options.isPinned || options.selection.isOrdered(),
            .precision = precisionFor(options)};
}

} // namespace

SnapshotPrinter::SnapshotPrinter(const SnapshotOptions& options, const Machine& machine, SnapshotTaker& taker)
    : options_(options)
    , machine_(machine)
    , taker_(taker)
    , selection_(options.selection)
    , settings_(settingsFor(options)) {
    if (options.hasOwnCost) costMeter_.emplace();
}

int SnapshotPrinter::print() {
    Dictionary preferences;
    if (options_.isPinned) {
        auto stored = storedPreferenceLists();
        if (!stored) {
            reportError("the pins can be read by the desktop program only; name their keys with --key");
            return inputErrorExit;
        }
        preferences = *std::move(stored);
    }
    const Snapshot first = withOwnCost(taker_.begin(machine_, preferences));
    const int status = !learnSelection(first) ? inputErrorExit
                       : options_.interval    ? printUntilEnded(first)
                                              : printOnce(first);
    taker_.end();
    return status;
}

/// Returns whether there is something to print; says why not.
bool SnapshotPrinter::learnSelection(const Snapshot& snapshot) {
    if (options_.isPinned && snapshot.pinned.empty()) {
        reportError("nothing is pinned");
        return false;
    }
    if (options_.isPinned) selection_.keys = snapshot.pinned;
    return reportSelection(snapshot.readings, selection_);
}

/// The snapshot with what the program itself costs, if that is asked for.
Snapshot SnapshotPrinter::withOwnCost(Snapshot snapshot) {
    if (!options_.hasOwnCost) return snapshot;
    for (SMCReading& reading : ownCost(snapshot)) snapshot.readings.push_back(std::move(reading));
    return snapshot;
}

/// Of the tray program, or of this one from the first time on that the other does not answer.
std::vector<SMCReading> SnapshotPrinter::ownCost(const Snapshot& snapshot) {
    if (asksTrayProgram_) {
        if (const auto cost = costOfTrayProgram(longestWait)) return ownReadings(*cost, "tray program");
        asksTrayProgram_ = false;
    }
    ProgramCost own = programCost(costMeter_.value().cost());
    own.accessesOfLastPass = snapshot.accesses;
    return ownReadings(own, "console program");
}

Report SnapshotPrinter::reportOf(const Snapshot& snapshot) const {
    const bool isNewSnapshot = options_.format->name == "text";
    std::vector<SMCReading> readings = selectedReadings(snapshot.readings, selection_);
    if (!isNewSnapshot) dropSignsOfZero(readings); // the text has the values as the panel does
    return {.machine = options_.machine.description(),
            .time = isNewSnapshot ? snapshot.time : machine_.recordedAt.value_or(snapshot.time),
            .status = snapshot.status,
            .readings = std::move(readings)};
}

int SnapshotPrinter::printOnce(const Snapshot& snapshot) {
    const ReportWriter write = options_.format->makeWriter(settings_);
    const auto error = writeToStandardOutput(write(reportOf(snapshot)));
    silence_.report(snapshot.silent);
    if (error) reportError("cannot write the snapshot");
    return !error && (snapshot.silent.empty() || snapshot.hasAnswers) ? 0 : inputErrorExit;
}

/// A page over the one before; on anything but a terminal, a page after the one before.
std::string SnapshotPrinter::onScreen(const std::string& page) const {
    if (options_.format->repetition != Repetition::pages) return page;
    return settings_.isTerminal ? pageInPlace(page, standardOutputSize()) : page + "\n";
}

int SnapshotPrinter::printUntilEnded(const Snapshot& first) {
    const EndSignals signals;
    const ReportWriter write = options_.format->makeWriter(settings_);
    std::shared_ptr<const KeySet> keys = keysToRead(first.readings, selection_);
    Snapshot snapshot = first;
    bool isFirst = true;
    std::error_code error;
    const auto printNext = [&] {
        if (!std::exchange(isFirst, false)) snapshot = withOwnCost(taker_.next(keys));
        silence_.report(snapshot.silent);
        error = writeToStandardOutput(onScreen(write(reportOf(snapshot))));
        return !error;
    };
    watch(*options_.interval, *machine_.clock,
          {.tick = printNext, .isEndedWithin = [&](auto time) { return signals.comeWithin(time); }});
    if (!error || error == std::errc::broken_pipe) return 0;
    reportError("cannot write the readings: " + error.message());
    return inputErrorExit;
}

} // namespace kelvinbar
