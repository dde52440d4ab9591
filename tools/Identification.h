#pragma once

#include "base/Clock.h"
#include "catalogue/SMCReading.h"
#include "sensors/CriticalLimits.h"
#include "tools/ResponseRanking.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kelvinbar {

/// How sensors are to be identified.
struct IdentificationPlan {
    static constexpr std::chrono::seconds restTime{6};
    static constexpr std::chrono::seconds coolingTime{8};
    static constexpr std::chrono::seconds readingInterval{1};
    static constexpr std::chrono::milliseconds limitInterval{250}; ///< how often limits are checked
    static constexpr double safetyMargin = 5; ///< below a critical limit at which a load ends, in °C

    bool isByHand = false;            ///< the user does something instead of a load
    std::chrono::nanoseconds time{0}; ///< of the load, or for the user
};

/// How near the machine is to a critical limit.
struct LimitCheck {
    std::optional<CriticalMargin> nearest; ///< no value without limits
    bool hasAnswer = true;                 ///< of all sensors with a limit
};

/// What an identification does with the rest of the program. Called on the thread that identifies.
struct IdentificationActions {
    std::function<std::vector<SMCReading>()> read;
    std::function<bool(std::chrono::nanoseconds time)> isEndedWithin; ///< waits; true: end
    std::function<bool(std::chrono::nanoseconds longest)> beginLoad;  ///< false: there is none
    std::function<void()> endLoad;                                    ///< whether or not there is one
    std::function<LimitCheck()> checkLimits;
    std::function<void(const std::string& sentence)> say; ///< how it goes, for people
};

enum class IdentificationEnd : std::uint8_t {
    planned,      ///< all was done
    interrupted,  ///< by the user
    nearLimit,    ///< the load ended early, or did not begin
    silentSensor, ///< the same, since a sensor with a limit did not answer
    noLoad,       ///< no thread could be started
};

/// What was recorded.
struct IdentificationRecord {
    ResponseRecording recording;
    std::map<std::string, SMCReading> readings; ///< by key, the last of each
    IdentificationEnd end = IdentificationEnd::planned;
    std::string limitedSensor; ///< that came near its limit; empty for none

    /// Whether there was anything that readings could follow.
    [[nodiscard]] bool hasResponses() const;
};

/// Records how the readings of a machine respond: at rest, then under a load or while the user does
/// something, then, after a load, while it cools. One use; one thread.
class Identifier {
  public:
    /// The arguments outlive the object.
    Identifier(const IdentificationPlan& plan, const MonotonicClock& clock,
               const IdentificationActions& actions);

    /// Blocks for as long as the plan says, or until an action ends it. The load has ended when it returns.
    IdentificationRecord record();

  private:
    [[nodiscard]] bool tick();
    [[nodiscard]] bool waitFor(std::chrono::nanoseconds time);
    [[nodiscard]] bool isOverAt(std::chrono::nanoseconds time) const;
    [[nodiscard]] LoadPhase phaseAt(std::chrono::nanoseconds time) const;
    [[nodiscard]] bool enter(LoadPhase phase);
    [[nodiscard]] bool beginLoad();
    [[nodiscard]] bool isSafeToLoad();
    void keepBelowLimits();
    void addReadings(const std::vector<SMCReading>& readings);
    void sayWhatMoved();

    const IdentificationPlan& plan_;
    const MonotonicClock& clock_;
    const IdentificationActions& actions_;
    std::chrono::nanoseconds beginning_;
    std::chrono::nanoseconds busyUntil_; ///< from the beginning: when load or watching ends
    LoadPhase phase_ = LoadPhase::rest;
    IdentificationRecord record_;
    std::map<std::string, std::size_t> places_; ///< of keys among the series
    std::set<std::string> moved_;               ///< keys of readings that are away from their rest
};

} // namespace kelvinbar
