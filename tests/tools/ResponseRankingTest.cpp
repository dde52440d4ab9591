#include "tools/ResponseRanking.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::response_ranking_test {

namespace {

constexpr std::size_t restTimes = 6;
constexpr std::size_t loadTimes = 20;
constexpr std::size_t coolingTimes = 8;

/// What a reading shows at a time, counted from the begin of the load.
using Course = std::function<std::optional<double>(int time)>;

/// Rest, load and cooling.
std::vector<LoadPhase> phasesOfARun() {
    std::vector<LoadPhase> phases(restTimes, LoadPhase::rest);
    phases.insert(phases.end(), loadTimes, LoadPhase::load);
    phases.insert(phases.end(), coolingTimes, LoadPhase::cooling);
    return phases;
}

std::vector<LoadPhase> phasesByHand() {
    std::vector<LoadPhase> phases(restTimes, LoadPhase::rest);
    phases.insert(phases.end(), loadTimes + coolingTimes, LoadPhase::byHand);
    return phases;
}

ReadingSeries series(std::string key, const Course& course) {
    ReadingSeries made{.key = std::move(key), .values = {}};
    for (int time = -static_cast<int>(restTimes); time < static_cast<int>(loadTimes + coolingTimes); ++time) {
        made.values.push_back(course(time));
    }
    return made;
}

/// Of the only reading; no value if it is left out.
std::optional<Response> responseTo(std::vector<LoadPhase> phases, const Course& course) {
    const auto ranked = rankedResponses({.phases = std::move(phases), .series = {series("reading", course)}});
    EXPECT_LE(ranked.size(), 1U);
    return ranked.empty() ? std::nullopt : std::optional(ranked.front());
}

std::optional<Response> responseTo(const Course& course) { return responseTo(phasesOfARun(), course); }

double scoreOf(const Course& course) {
    const auto response = responseTo(course);
    return response ? response->score : 0;
}

bool isLoaded(int time) { return time >= 0 && time < static_cast<int>(loadTimes); }

/// Between -1 and 1, without a pattern that has to do with the load.
double noise(int time) { return std::sin(7.3 * time * time + 1.1 * time); }

/// From 0 to 1: heats and cools within `times`.
double heat(int time, double times) {
    if (time < 0) return 0;
    const int loaded = std::min(time, static_cast<int>(loadTimes));
    const double reached = 1 - std::exp(-loaded / times);
    return isLoaded(time) ? reached : reached * std::exp(-(time - static_cast<int>(loadTimes)) / times);
}

TEST(RankedResponses, LeaveOutAFlatReading) {
    EXPECT_EQ(responseTo([](int) { return 40; }), std::nullopt);
}

/// The mean of some numbers and the same numbers differ in their last binary digit.
TEST(RankedResponses, LeaveOutWhatOnlyRoundingChanges) {
    for (const double number : {0.1, 1.1, 12.3, 1e-7}) {
        const Course flat = [number](int) { return number; };
        EXPECT_EQ(responseTo(flat), std::nullopt) << number;
        EXPECT_FALSE(isAwayFromRest(phasesByHand(), series("reading", flat))) << number;
    }
    EXPECT_NE(responseTo([](int time) { return isLoaded(time) ? 1.00000001 : 1; }), std::nullopt);
}

TEST(RankedResponses, RateAReadingThatFollowsAtOnceHigh) {
    const auto response = responseTo([](int time) { return isLoaded(time) ? 65 : 15; });
    ASSERT_TRUE(response);
    EXPECT_DOUBLE_EQ(response->rest, 15);
    EXPECT_DOUBLE_EQ(response->change, 50);
    EXPECT_NEAR(response->noise, 50 / std::sqrt(12), 0.1); // of rounding to the only step that it makes
    EXPECT_NEAR(response->correlation.value(), 1, 1e-9);
    EXPECT_GT(response->score, likelyScore);
}

TEST(RankedResponses, RateAWarmingReadingHigh) {
    EXPECT_GT(scoreOf([](int time) { return 40 + 30 * heat(time, 5) + 0.3 * noise(time); }), 0.9);
}

TEST(RankedResponses, RateAReadingThatFollowsLateAboveTheLimit) {
    EXPECT_GT(scoreOf([](int time) { return 40 + 30 * heat(time, 25) + 0.3 * noise(time); }), 0.8);
    EXPECT_GT(scoreOf([](int time) { return (time >= 6 ? 1400 : 900) + 5 * noise(time); }), likelyScore);
}

TEST(RankedResponses, RateAReadingThatFallsLikeOneThatRises) {
    const auto response = responseTo([](int time) { return 4500 - 700 * heat(time, 2) + 10 * noise(time); });
    ASSERT_TRUE(response);
    EXPECT_NEAR(response->change, -700, 20);
    EXPECT_LT(response->correlation.value(), -0.9);
    EXPECT_GT(response->score, 0.85);
}

TEST(RankedResponses, RateANoisyReadingLow) {
    for (const double size : {0.01, 1.0, 500.0}) {
        EXPECT_LT(scoreOf([size](int time) { return 12 + size * noise(time); }), 0.3) << size;
    }
}

TEST(RankedResponses, RateASingleStepOfACoarseReadingLow) {
    EXPECT_LT(scoreOf([](int time) { return time > 2 && time < 9 ? 41 : 40; }), likelyScore);
}

TEST(RankedResponses, RateAChangeThatDoesNotFollowTheLoadLow) {
    EXPECT_LT(scoreOf([](int time) { return time >= 24 ? 60 + noise(time) : 40 + noise(time); }),
              likelyScore);
}

TEST(RankedResponses, IgnoreValuesThatAreMissing) {
    const Course whole = [](int time) { return 40 + 30 * heat(time, 5) + 0.3 * noise(time); };
    const auto response = responseTo([&](int time) { return time % 3 == 0 ? std::nullopt : whole(time); });
    ASSERT_TRUE(response);
    EXPECT_GT(response->score, 0.9);
}

TEST(RankedResponses, LeaveOutWhatWasReadTooRarely) {
    EXPECT_EQ(responseTo([](int time) { return time == 3 ? std::optional(50.0) : std::nullopt; }),
              std::nullopt);
    EXPECT_EQ(responseTo([](int time) {
                  return time <= -6 || time >= 0 ? std::optional(50.0 + time) : std::nullopt;
              }),
              std::nullopt);
    EXPECT_EQ(responseTo([](int time) { return time < 2 ? std::optional(50.0 + time) : std::nullopt; }),
              std::nullopt);
    EXPECT_NE(responseTo([](int time) { return time < 3 ? std::optional(50.0 + time) : std::nullopt; }),
              std::nullopt);
}

TEST(RankedResponses, AreNoneWithoutAnyValue) {
    EXPECT_TRUE(rankedResponses({.phases = {}, .series = {{.key = "reading", .values = {}}}}).empty());
    EXPECT_EQ(responseTo([](int) { return std::nullopt; }), std::nullopt);
}

TEST(RankedResponses, HaveTheHighestScoreFirstAndEqualOnesByKey) {
    const Course warming = [](int time) { return 40 + 30 * heat(time, 5) + 0.3 * noise(time); };
    const auto ranked = rankedResponses(
        {.phases = phasesOfARun(),
         .series = {series("chip/temp10", warming), series("noise", noise), series("chip/temp9", warming)}});
    ASSERT_EQ(ranked.size(), 3U);
    EXPECT_EQ(ranked[0].key, "chip/temp9");
    EXPECT_EQ(ranked[1].key, "chip/temp10");
    EXPECT_EQ(ranked[2].key, "noise");
}

TEST(RankedResponses, ByHandAskOnlyHowMuchAReadingMoved) {
    const auto moved = [](int time) { return 900 + 5 * noise(time) - (time > 9 && time < 14 ? 300 : 0); };
    const auto response = responseTo(phasesByHand(), moved);
    ASSERT_TRUE(response);
    EXPECT_EQ(response->correlation, std::nullopt);
    EXPECT_NEAR(response->change, -300, 10);
    EXPECT_GT(response->score, 0.9);
    EXPECT_LT(responseTo(phasesByHand(), noise)->score, likelyScore);
}

} // namespace
} // namespace kelvinbar::response_ranking_test
