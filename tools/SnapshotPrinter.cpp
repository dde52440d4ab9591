#include "tools/SnapshotPrinter.h"

#include "base/Text.h"
#include "process/EndSignals.h"
#include "process/StandardStreams.h"
#include "process/TrayProgram.h"
#include "store/LoadPass.h"
#include "tools/PrintedText.h"
#include "tools/ProgramErrors.h"
#include "tools/TerminalPage.h"
#include "tools/WatchLoop.h"
#include "tools/cost/OwnReadings.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <system_error>
#include <utility>

namespace kelvinbar {

namespace {

ReadingSelection selectionOf(const SnapshotOptions& options) {
    ReadingSelection selection = options.selection;
    selection.isPinned = options.isPinned;
    return selection;
}

TimePrecision precisionFor(const SnapshotOptions& options) {
    const auto interval = options.interval.value_or(std::chrono::seconds(0));
    const bool isWhole = interval % std::chrono::seconds(1) == std::chrono::seconds(0);
    return isWhole ? TimePrecision::seconds : TimePrecision::milliseconds;
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
    , reader_(taker, selectionOf(options))
    , settings_(settingsFor(options))
    , isDrawnInPlace_(settings_.isTerminal && takesControlSequences()) {
    if (options.hasOwnCost) ownCost_.emplace([] { return askTrayProgram(longestWaitForTray); }, reportError);
}

int SnapshotPrinter::print() {
    std::optional<Dictionary> preferences = Dictionary();
    if (options_.isPinned) preferences = preferences_.read();
    if (!preferences) {
        reportError("the pins can be read by the desktop program only; name their keys with --key");
        return inputErrorExit;
    }
    const Snapshot first = withOwnCost(reader_.begin(machine_, *preferences));
    const int status = !reportWhatIsMissing(first) ? inputErrorExit
                       : options_.interval         ? printUntilEnded(first)
                                                   : printOnce(first);
    taker_.end();
    return status;
}

/// Returns whether there is something to print, or may be later: pins come and go while they are watched.
bool SnapshotPrinter::reportWhatIsMissing(const Snapshot& snapshot) const {
    if (options_.isPinned && options_.interval) {
        reportMissingKeys(snapshot.readings, reader_.selection());
        return true;
    }
    if (options_.isPinned && snapshot.pinned.empty()) {
        reportError("nothing is pinned");
        return false;
    }
    return reportSelection(snapshot.readings, reader_.selection());
}

/// With the pins of now.
Snapshot SnapshotPrinter::nextSnapshot() {
    const auto preferences = options_.isPinned ? preferences_.changed() : std::nullopt;
    if (preferences) reader_.followPins(*preferences);
    return withOwnCost(reader_.next());
}

/// The snapshot with what the program itself costs, if that is asked for.
Snapshot SnapshotPrinter::withOwnCost(Snapshot snapshot) {
    if (!ownCost_) return snapshot;
    std::ranges::move(ownCost_->readings(snapshot.accesses), std::back_inserter(snapshot.readings));
    return snapshot;
}

/// Counts what is printed: of a selection, the first snapshot has all readings, and later ones may have more
/// than are selected. None is no failure of sensors: pins come and go.
std::string SnapshotPrinter::statusOf(const Snapshot& snapshot,
                                      const std::vector<SMCReading>& selected) const {
    if (!snapshot.isLoaded || reader_.selection().isEverything()) return snapshot.status;
    const auto ownCount = std::ranges::count_if(selected, isOwnReading);
    return loadedText(selected.size() - static_cast<std::size_t>(ownCount), machine_.texts);
}

Report SnapshotPrinter::reportOf(const Snapshot& snapshot) const {
    const bool isNewSnapshot = options_.format->name == "text";
    std::vector<SMCReading> readings = reader_.selected(snapshot);
    if (!isNewSnapshot) dropSignsOfZero(readings); // the text has the values as the panel does
    std::string status = statusOf(snapshot, readings);
    return {.machine = options_.machine.description(),
            .time = isNewSnapshot ? snapshot.time : machine_.recordedAt.value_or(snapshot.time),
            .status = std::move(status),
            .readings = std::move(readings)};
}

int SnapshotPrinter::printOnce(const Snapshot& snapshot) {
    const ReportWriter write = options_.format->makeWriter(settings_);
    const auto error = writeToStandardOutput(write(reportOf(snapshot)));
    silence_.report(snapshot.silent);
    if (error) reportError(writeFailure("the snapshot", error));
    return !error && (snapshot.silent.empty() || snapshot.hasAnswers) ? 0 : inputErrorExit;
}

/// A page over the one before, or after it in a file or on a terminal that only prints.
std::string SnapshotPrinter::onScreen(const std::string& page) const {
    if (options_.format->repetition != Repetition::pages) return page;
    return isDrawnInPlace_ ? pageInPlace(page, standardOutputSize()) : page + "\n";
}

int SnapshotPrinter::printUntilEnded(const Snapshot& first) {
    const EndSignals signals;
    const ReportWriter write = options_.format->makeWriter(settings_);
    Snapshot snapshot = first;
    bool isFirst = true;
    std::error_code error;
    const auto printNext = [&] {
        if (!std::exchange(isFirst, false)) snapshot = nextSnapshot();
        silence_.report(snapshot.silent);
        error = writeToStandardOutput(onScreen(write(reportOf(snapshot))));
        return !error;
    };
    watch(*options_.interval, *machine_.clock,
          {.tick = printNext, .isEndedWithin = [&](auto time) { return signals.comeWithin(time); }});
    if (!error || error == std::errc::broken_pipe) return 0;
    reportError(writeFailure("the readings", error));
    return inputErrorExit;
}

} // namespace kelvinbar
