#include "tools/ResponseRanking.h"

#include "base/NaturalOrder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>
#include <utility>

namespace kelvinbar {

namespace {

using Numbers = std::vector<double>;

/// A change of this many times the noise has half of the score.
constexpr double clearChange = 3;

/// A single value this many times the noise away is more than noise. Two values of a hundred are three times
/// away, and the noise is known from a few values only.
constexpr double certainChange = 6;

/// Of the greatest value. Means of equal values differ by less.
constexpr double leastChange = 1e-9;

/// Values in a row whose mean counts.
constexpr std::size_t meanWindow = 3;

/// The standard deviation of what rounding to steps of 1 takes away: 1 / sqrt(12).
constexpr double roundingNoise = 0.2887;

/// How long a heated body takes to follow, in times between two values.
constexpr std::array<double, 5> followingTimes{0, 1, 3, 8, 20};

double meanOf(const double* values, std::size_t count) {
    return std::accumulate(values, values + count, 0.0) / static_cast<double>(count);
}

double meanOf(const Numbers& values) { return meanOf(values.data(), values.size()); }

double deviationOf(const Numbers& values) {
    const double mean = meanOf(values);
    double squares = 0;
    for (const double value : values) squares += (value - mean) * (value - mean);
    return std::sqrt(squares / static_cast<double>(values.size() - 1));
}

/// Between two different values; 0 if all are equal.
double smallestStep(Numbers values) {
    std::ranges::sort(values);
    double smallest = std::numeric_limits<double>::infinity();
    for (std::size_t index = 1; index < values.size(); ++index) {
        const double step = values[index] - values[index - 1];
        if (step > 0) smallest = std::min(smallest, step);
    }
    return std::isinf(smallest) ? 0 : smallest;
}

/// The largest distance from `rest` that the mean of three values in a row has.
double largestChange(const Numbers& values, double rest) {
    double largest = 0;
    for (std::size_t index = 0; index + meanWindow <= values.size(); ++index) {
        const double change = meanOf(values.data() + index, meanWindow) - rest;
        if (std::fabs(change) > std::fabs(largest)) largest = change;
    }
    return largest;
}

/// The load at each time as a body shows it that takes `followingTime` to follow.
Numbers smoothedLoad(const std::vector<LoadPhase>& phases, double followingTime) {
    Numbers load;
    double level = 0;
    for (const LoadPhase phase : phases) {
        level += ((phase == LoadPhase::load ? 1 : 0) - level) / (followingTime + 1);
        load.push_back(level);
    }
    return load;
}

/// Pearson's; 0 if one of the two does not vary.
double correlationOf(const Numbers& left, const Numbers& right) {
    const double leftMean = meanOf(left);
    const double rightMean = meanOf(right);
    double common = 0;
    double leftSquares = 0;
    double rightSquares = 0;
    for (std::size_t index = 0; index < left.size(); ++index) {
        common += (left[index] - leftMean) * (right[index] - rightMean);
        leftSquares += (left[index] - leftMean) * (left[index] - leftMean);
        rightSquares += (right[index] - rightMean) * (right[index] - rightMean);
    }
    const double product = std::sqrt(leftSquares * rightSquares);
    return product > 0 ? common / product : 0;
}

/// The load as fast and slow bodies show it; empty without a load.
std::vector<Numbers> smoothedLoads(const std::vector<LoadPhase>& phases) {
    std::vector<Numbers> loads;
    if (std::ranges::find(phases, LoadPhase::load) == phases.end()) return loads;
    for (const double followingTime : followingTimes) loads.push_back(smoothedLoad(phases, followingTime));
    return loads;
}

/// The correlation with one of the loads that is the strongest in the direction of `change`.
double correlationWithLoad(const std::vector<Numbers>& loads, const ReadingSeries& series, double change) {
    const double direction = change < 0 ? -1 : 1;
    double best = -1;
    for (const Numbers& load : loads) {
        Numbers loadThen;
        Numbers values;
        for (std::size_t index = 0; index < load.size(); ++index) {
            if (!series.values[index]) continue;
            loadThen.push_back(load[index]);
            values.push_back(*series.values[index]);
        }
        best = std::max(best, direction * correlationOf(loadThen, values));
    }
    return direction * best;
}

double scoreOf(const Response& response) {
    const double size = std::fabs(response.change);
    const double clearness = size / (size + clearChange * response.noise);
    if (!response.correlation) return clearness;
    const double agreement = response.change < 0 ? -*response.correlation : *response.correlation;
    return std::max(agreement, 0.0) * clearness;
}

/// The values of a series.
struct SeriesValues {
    Numbers atRest;
    Numbers later;
};

SeriesValues valuesOf(const std::vector<LoadPhase>& phases, const ReadingSeries& series) {
    SeriesValues values;
    for (std::size_t index = 0; index < phases.size(); ++index) {
        if (!series.values[index]) continue;
        (phases[index] == LoadPhase::rest ? values.atRest : values.later).push_back(*series.values[index]);
    }
    return values;
}

/// Whether `change` is more than what computing with the values rounds away.
bool isChange(double change, const SeriesValues& values) {
    double greatest = 0;
    for (const double value : values.atRest) greatest = std::max(greatest, std::fabs(value));
    for (const double value : values.later) greatest = std::max(greatest, std::fabs(value));
    return std::fabs(change) > leastChange * greatest;
}

/// At least two are at rest.
double noiseOf(const SeriesValues& values) {
    Numbers all = values.atRest;
    all.insert(all.end(), values.later.begin(), values.later.end());
    return std::max(deviationOf(values.atRest), smallestStep(std::move(all)) * roundingNoise);
}

/// No value if the reading did not change or was read too rarely.
std::optional<Response> responseOf(const std::vector<LoadPhase>& phases, const std::vector<Numbers>& loads,
                                   const ReadingSeries& series) {
    const SeriesValues values = valuesOf(phases, series);
    if (values.atRest.size() < 2 || values.later.size() < meanWindow) return std::nullopt;
    Response response{.key = series.key, .rest = meanOf(values.atRest), .correlation = {}};
    response.change = largestChange(values.later, response.rest);
    if (!isChange(response.change, values)) return std::nullopt;
    response.noise = noiseOf(values);
    if (!loads.empty()) response.correlation = correlationWithLoad(loads, series, response.change);
    response.score = scoreOf(response);
    return response;
}

bool isLikelier(const Response& left, const Response& right) {
    if (left.score != right.score) return left.score > right.score;
    return comesBeforeNaturally(left.key, right.key);
}

} // namespace

std::vector<Response> rankedResponses(const ResponseRecording& recording) {
    const std::vector<Numbers> loads = smoothedLoads(recording.phases);
    std::vector<Response> responses;
    for (const ReadingSeries& series : recording.series) {
        if (auto response = responseOf(recording.phases, loads, series)) {
            responses.push_back(*std::move(response));
        }
    }
    std::ranges::sort(responses, isLikelier);
    return responses;
}

bool isAwayFromRest(const std::vector<LoadPhase>& phases, const ReadingSeries& series) {
    const SeriesValues values = valuesOf(phases, series);
    if (values.atRest.size() < 2 || !series.values.back()) return false;
    const double change = *series.values.back() - meanOf(values.atRest);
    return isChange(change, values) && std::fabs(change) > certainChange * noiseOf(values);
}

} // namespace kelvinbar
