#include "tools/IdentificationPrinter.h"

#include "process/EndSignals.h"
#include "process/ProcessorLoad.h"
#include "process/StandardStreams.h"
#include "tools/IdentificationReport.h"
#include "tools/ProgramErrors.h"
#include "tools/SelectionReader.h"
#include "tools/SnapshotWarnings.h"

#include <algorithm>
#include <iostream>
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

/// The readings of the machine that is identified, from a snapshot that has been taken on.
class ReadingSeriesReader {
  public:
    ReadingSeriesReader(SelectionReader& reader, Snapshot first)
        : reader_(reader), snapshot_(std::move(first)) {}

    std::vector<SMCReading> read() {
        if (!std::exchange(isFirst_, false)) snapshot_ = reader_.next();
        silence_.report(snapshot_.silent);
        return reader_.selected(snapshot_);
    }

  private:
    SelectionReader& reader_;
    Snapshot snapshot_;
    SilenceReport silence_;
    bool isFirst_ = true;
};

LimitCheck checkLimits(const Machine& machine, SnapshotTaker& taker) {
    if (machine.limits == nullptr) return {};
    const auto found = taker.look(machine, [limits = machine.limits] { return limits->smallestMargin(); });
    return {.nearest = found.value_or(std::nullopt), .hasAnswer = found.has_value()};
}

IdentificationRecord recordOf(const IdentificationPlan& plan, const Machine& machine,
                              ReadingSeriesReader& reader, SnapshotTaker& taker) {
    const EndSignals signals;
    ProcessorLoad load;
    const IdentificationActions actions{.read = [&] { return reader.read(); },
                                        .isEndedWithin = [&](auto time) { return signals.comeWithin(time); },
                                        .beginLoad = [&](auto longest) { return load.begin(longest) > 0; },
                                        .endLoad = [&] { load.end(); },
                                        .checkLimits = [&] { return checkLimits(machine, taker); },
                                        .say = sayOnStandardError};
    return Identifier(plan, *machine.clock, actions).record();
}

/// Why there is nothing to rank.
std::string reasonFor(const IdentificationRecord& record) {
    switch (record.end) {
    case IdentificationEnd::nearLimit:
        return record.limitedSensor + " is within 5 degrees of its critical limit at rest; try --by-hand";
    case IdentificationEnd::silentSensor:
        return "a sensor with a critical limit does not answer; try --by-hand";
    case IdentificationEnd::noLoad:
        return "the system starts no more threads";
    default:
        return "ended before anything could respond";
    }
}

} // namespace

int printIdentification(const IdentificationRequest& request, const Machine& machine, SnapshotTaker& taker) {
    SelectionReader selected(taker, request.selection);
    Snapshot first = selected.begin(machine);
    if (!reportSensors(first.readings, selected.selection())) {
        taker.end();
        return inputErrorExit;
    }
    ReadingSeriesReader reader(selected, std::move(first));
    const IdentificationRecord record = recordOf(request.plan, machine, reader, taker);
    taker.end();
    if (!record.hasResponses()) {
        reportError(reasonFor(record));
        return inputErrorExit;
    }
    const auto error =
        writeToStandardOutput(request.isJson ? identificationJson(record) : identificationText(record));
    if (!error) return 0;
    reportError(writeFailure("what responded", error));
    return inputErrorExit;
}

} // namespace kelvinbar
