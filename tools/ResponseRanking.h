#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Which readings followed a load, or moved at all. Pure functions; any thread.
///
/// The score of a reading is between 0 and 1, the product of two factors:
/// - how much it changed: |change| / (|change| + 3 * noise). The change is that of the highest or lowest mean
///   of three values in a row against the mean at rest. The noise is the standard deviation at rest, at least
///   that of rounding to the smallest step that the reading makes: a coarse sensor shows no noise.
/// - how well it followed: the correlation with the load, in the direction of the change. Heat comes late, so
///   the load is smoothed as a body smooths it that is heated, and the best of five degrees of smoothing
///   counts. Where nothing tells when the load was on, this factor is 1.
///
/// Limits: what happens to change during the load, too, cannot be told from what the load caused. A second
/// run can.
namespace kelvinbar {

/// What the machine was doing when values were read.
enum class LoadPhase : std::uint8_t {
    rest,    ///< nothing, as far as we know
    load,    ///< all processors computed
    cooling, ///< nothing, after a load
    byHand,  ///< somebody did something at times of his own
};

/// The values of one reading, one for each phase entry of its recording; no value where it had no number.
struct ReadingSeries {
    std::string key;
    std::vector<std::optional<double>> values;
};

/// What was read at equal distances.
struct ResponseRecording {
    std::vector<LoadPhase> phases;     ///< of each time
    std::vector<ReadingSeries> series; ///< each as long as `phases`
};

/// How one reading responded, in its unit.
struct Response {
    std::string key;
    double rest = 0;   ///< mean at rest
    double change = 0; ///< against `rest`; negative if it fell
    double noise = 0;  ///< at rest
    /// With the load, from -1 to 1; no value without a load.
    std::optional<double> correlation;
    double score = 0; ///< from 0 to 1

    friend bool operator==(const Response&, const Response&) = default;
};

/// The score from which on a reading counts as one that responded.
inline constexpr double likelyScore = 0.5;

/// The readings that changed at all, the highest score first. Readings with fewer than two values at rest or
/// fewer than three after it are left out.
std::vector<Response> rankedResponses(const ResponseRecording& recording);

/// Whether the last value of a series is so far from those at rest that it is more than noise. False without
/// a last value, and with fewer than two at rest.
bool isAwayFromRest(const std::vector<LoadPhase>& phases, const ReadingSeries& series);

} // namespace kelvinbar
