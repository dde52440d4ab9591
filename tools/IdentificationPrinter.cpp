#include "tools/IdentificationPrinter.h"

#include "process/EndSignals.h"
#include "process/ProcessorLoad.h"
#include "process/StandardStreams.h"
#include "tools/IdentificationReport.h"
#include "tools/ProgramErrors.h"
#include "tools/SnapshotWarnings.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kelvinbar {

namespace {

void sayOnStandardError(const std::string& sentence) { std::cerr << sentence + "\n"; }

/// Whether something other than the system's own facts is selected; says so if not.
bool reportSensors(const std::vector<SMCReading>& readings, const ReadingSelection& selection) {
    if (!reportSelection(readings, selection)) return false;
    const bool hasSensor =
        std::ranges::any_of(selectedReadings(readings, selection),
                            [](const SMCReading& reading) { return reading.type != nativeType; });
    if (!hasSensor) reportError("there is no sensor that could be identified");
    return hasSensor;
}

/// Reads again what is selected.
class SelectedReader {
  public:
    SelectedReader(const ReadingSelection& selection, SnapshotTaker& taker, Snapshot first)
        : selection_(selection)
        , taker_(taker)
        , keys_(keysToRead(first.readings, selection))
        , snapshot_(std::move(first)) {}

    std::vector<SMCReading> read() {
        if (!std::exchange(isFirst_, false)) snapshot_ = taker_.next(keys_);
        silence_.report(snapshot_.silent);
        return selectedReadings(snapshot_.readings, selection_);
    }

    [[nodiscard]] const std::vector<SilentDevice>& silent() const { return snapshot_.silent; }

  private:
    const ReadingSelection& selection_;
    SnapshotTaker& taker_;
    std::shared_ptr<const KeySet> keys_;
    Snapshot snapshot_;
    SilenceReport silence_;
    bool isFirst_ = true;
};

IdentificationRecord recordOf(const IdentificationPlan& plan, const Machine& machine,
                              SelectedReader& reader) {
    const EndSignals signals;
    ProcessorLoad load;
    const IdentificationActions actions{
        .read = [&] { return reader.read(); },
        .isEndedWithin = [&](auto time) { return signals.comeWithin(time); },
        .beginLoad = [&](auto longest) { return load.begin(longest) > 0; },
        .endLoad = [&] { load.end(); },
        .margin =
            [&] { return machine.limits ? machine.limits->smallestMargin(reader.silent()) : std::nullopt; },
        .say = sayOnStandardError};
    return Identifier(plan, *machine.clock, actions).record();
}

/// Why there is nothing to rank.
std::string reasonFor(const IdentificationRecord& record) {
    switch (record.end) {
    case IdentificationEnd::nearLimit:
        return record.limitedSensor + " is within 5 degrees of its critical limit at rest; try --by-hand";
    case IdentificationEnd::noLoad:
        return "the system starts no more threads";
    default:
        return "ended before anything could respond";
    }
}

} // namespace

int printIdentification(const IdentificationRequest& request, const Machine& machine, SnapshotTaker& taker) {
    Snapshot first = taker.begin(machine);
    if (!reportSensors(first.readings, request.selection)) {
        taker.end();
        return inputErrorExit;
    }
    SelectedReader reader(request.selection, taker, std::move(first));
    const IdentificationRecord record = recordOf(request.plan, machine, reader);
    taker.end();
    if (!record.hasResponses()) {
        reportError(reasonFor(record));
        return inputErrorExit;
    }
    if (!writeToStandardOutput(request.isJson ? identificationJson(record) : identificationText(record)))
        return 0;
    reportError("cannot write what responded");
    return inputErrorExit;
}

} // namespace kelvinbar
