#include "tools/Identification.h"

#include "tools/PrintedText.h"
#include "tools/WatchLoop.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kelvinbar {

namespace {

std::string secondsText(std::chrono::nanoseconds time) {
    return shortestText(std::chrono::duration<double>(time).count()) + " s";
}

} // namespace

bool IdentificationRecord::hasResponses() const {
    return std::ranges::any_of(recording.phases, [](LoadPhase phase) { return phase != LoadPhase::rest; });
}

Identifier::Identifier(const IdentificationPlan& plan, const MonotonicClock& clock,
                       const IdentificationActions& actions)
    : plan_(plan)
    , clock_(clock)
    , actions_(actions)
    , beginning_(clock.now())
    , busyUntil_(IdentificationPlan::restTime + plan.time) {}

IdentificationRecord Identifier::record() {
    actions_.say("Leave the machine alone for " + secondsText(IdentificationPlan::restTime) + ".");
    watch(IdentificationPlan::readingInterval, clock_,
          {.tick = [this] { return tick(); }, .isEndedWithin = [this](auto time) { return waitFor(time); }});
    actions_.endLoad();
    return std::move(record_);
}

/// Returns whether it goes on.
bool Identifier::tick() {
    const auto time = clock_.now() - beginning_;
    if (!enter(phaseAt(time)) || isOverAt(time)) return false;
    addReadings(actions_.read());
    if (phase_ == LoadPhase::byHand) sayWhatMoved();
    keepBelowLimits();
    return true;
}

/// Returns whether the user ends it. Limits are checked more often than readings are read.
bool Identifier::waitFor(std::chrono::nanoseconds time) {
    while (time > std::chrono::nanoseconds(0)) {
        const bool isLimited = phase_ == LoadPhase::load;
        const auto part =
            isLimited ? std::min<std::chrono::nanoseconds>(time, IdentificationPlan::limitInterval) : time;
        if (actions_.isEndedWithin(part)) {
            record_.end = IdentificationEnd::interrupted;
            return true;
        }
        time -= part;
        keepBelowLimits();
    }
    return false;
}

bool Identifier::isOverAt(std::chrono::nanoseconds time) const {
    const auto rest = plan_.isByHand ? std::chrono::seconds(0) : IdentificationPlan::coolingTime;
    return time >= busyUntil_ + rest;
}

LoadPhase Identifier::phaseAt(std::chrono::nanoseconds time) const {
    if (time < IdentificationPlan::restTime) return LoadPhase::rest;
    if (plan_.isByHand) return LoadPhase::byHand;
    return time < busyUntil_ ? LoadPhase::load : LoadPhase::cooling;
}

/// Does what the phase begins with; returns whether it can begin.
bool Identifier::enter(LoadPhase phase) {
    if (std::exchange(phase_, phase) == phase) return true;
    if (phase == LoadPhase::load) return beginLoad();
    actions_.endLoad();
    actions_.say(phase == LoadPhase::byHand
                     ? "Now do something, such as blowing at a fan or copying a file, for " +
                           secondsText(plan_.time) + "; Ctrl+C ends."
                     : "The load has ended. Cooling for " + secondsText(IdentificationPlan::coolingTime) +
                           ".");
    return true;
}

bool Identifier::beginLoad() {
    if (!isSafeToLoad()) return false;
    if (!actions_.beginLoad(plan_.time)) {
        record_.end = IdentificationEnd::noLoad;
        return false;
    }
    actions_.say("Loading all processors for " + secondsText(plan_.time) + "; Ctrl+C ends.");
    return true;
}

/// Notes why if it is not.
bool Identifier::isSafeToLoad() {
    const auto [nearest, hasAnswer] = actions_.checkLimits();
    if (!hasAnswer) {
        record_.end = IdentificationEnd::silentSensor;
        return false;
    }
    if (!nearest || nearest->degrees > IdentificationPlan::safetyMargin) return true;
    record_.end = IdentificationEnd::nearLimit;
    record_.limitedSensor = nearest->sensor;
    return false;
}

/// Ends the load if a sensor is near its limit, or if that cannot be known.
void Identifier::keepBelowLimits() {
    if (phase_ != LoadPhase::load || isSafeToLoad()) return;
    busyUntil_ = clock_.now() - beginning_;
    actions_.say(record_.end == IdentificationEnd::nearLimit
                     ? record_.limitedSensor + " is near its critical limit."
                     : "A sensor with a critical limit does not answer.");
    static_cast<void>(enter(LoadPhase::cooling));
}

void Identifier::addReadings(const std::vector<SMCReading>& readings) {
    const std::size_t count = record_.recording.phases.size();
    record_.recording.phases.push_back(phase_);
    auto& series = record_.recording.series;
    for (ReadingSeries& each : series) each.values.emplace_back();
    for (const SMCReading& reading : readings) {
        const bool isNumber = reading.numericValue && std::isfinite(*reading.numericValue);
        if (!isNumber || reading.type == nativeType) continue;
        const auto [place, isNew] = places_.try_emplace(reading.key, series.size());
        if (isNew)
            series.push_back({.key = reading.key, .values = std::vector<std::optional<double>>(count + 1)});
        series[place->second].values.back() = reading.numericValue;
        record_.readings.insert_or_assign(reading.key, reading);
    }
}

/// Each reading when it leaves its rest.
void Identifier::sayWhatMoved() {
    const ResponseRecording& recording = record_.recording;
    for (const ReadingSeries& series : recording.series) {
        if (!isAwayFromRest(recording.phases, series)) {
            moved_.erase(series.key);
        } else if (moved_.insert(series.key).second) {
            const SMCReading& reading = record_.readings.at(series.key);
            actions_.say(printableText("Moved: " + reading.name + ", now " + reading.displayValue() + " (" +
                                       reading.key + ")"));
        }
    }
}

} // namespace kelvinbar
