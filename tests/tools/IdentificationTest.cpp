#include "tools/Identification.h"

#include "tests/fakes/FakeClocks.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::identification_test {

namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

SMCReading temperature(double degrees) {
    return {.key = "chip-isa-0000/temp1",
            .name = "Chip",
            .category = SMCCategory::sensors,
            .type = "chip",
            .value = std::to_string(static_cast<int>(degrees)),
            .numericValue = degrees,
            .unit = "°C",
            .raw = {},
            .status = "OK"};
}

/// A machine whose clock moves only while the identifier waits, and a load that a test sees.
class IdentifierTest : public testing::Test {
  protected:
    IdentificationRecord record(const IdentificationPlan& plan) {
        const IdentificationActions actions{
            .read = [this] { return read(); },
            .isEndedWithin = [this](auto time) { return isEndedWithin(time); },
            .beginLoad = [this](auto longest) { return beginLoad(longest); },
            .endLoad = [this] { endLoad(); },
            .checkLimits = [this]() -> LimitCheck {
                return {.nearest = margin(elapsed()), .hasAnswer = elapsed() < silentAt};
            },
            .say = [this](const std::string& sentence) { said.push_back(sentence); }};
        return Identifier(plan, clock, actions).record();
    }

    [[nodiscard]] std::chrono::nanoseconds elapsed() const { return clock.now() - beginning; }

    bool isEndedWithin(std::chrono::nanoseconds time) {
        if (elapsed() + time >= interruptedAt) return true;
        clock.advance(time);
        return false;
    }

    bool beginLoad(std::chrono::nanoseconds longest) {
        if (!hasLoad) return false;
        loadBegan = elapsed();
        longestLoad = longest;
        isLoaded = true;
        return true;
    }

    void endLoad() {
        if (isLoaded) loadEnded = elapsed();
        isLoaded = false;
    }

    fakes::FakeMonotonicClock clock;
    std::chrono::nanoseconds beginning = clock.now();
    std::chrono::nanoseconds interruptedAt = 1h;
    std::chrono::nanoseconds silentAt = 1h; ///< sensors with a limit
    bool hasLoad = true;
    bool isLoaded = false;
    std::optional<std::chrono::nanoseconds> loadBegan;
    std::optional<std::chrono::nanoseconds> loadEnded;
    std::chrono::nanoseconds longestLoad{0};
    std::vector<std::string> said;
    std::function<std::vector<SMCReading>()> read = [this] {
        return std::vector{temperature(isLoaded ? 70 : 40)};
    };
    std::function<std::optional<CriticalMargin>(std::chrono::nanoseconds)> margin = [](auto) {
        return std::nullopt;
    };
};

constexpr IdentificationPlan loadPlan{.isByHand = false, .time = 20s};
constexpr IdentificationPlan handPlan{.isByHand = true, .time = 30s};

TEST_F(IdentifierTest, ReadsAtRestUnderTheLoadAndWhileItCools) {
    const IdentificationRecord done = record(loadPlan);
    EXPECT_EQ(done.end, IdentificationEnd::planned);
    EXPECT_EQ(loadBegan, 6s);
    EXPECT_EQ(loadEnded, 26s);
    EXPECT_EQ(longestLoad, 20s);
    EXPECT_EQ(elapsed(), 34s);
    const auto& phases = done.recording.phases;
    EXPECT_EQ(std::ranges::count(phases, LoadPhase::rest), 6);
    EXPECT_EQ(std::ranges::count(phases, LoadPhase::load), 20);
    EXPECT_EQ(std::ranges::count(phases, LoadPhase::cooling), 8);
    ASSERT_EQ(done.recording.series.size(), 1U);
    for (std::size_t index = 0; index < phases.size(); ++index) {
        EXPECT_EQ(done.recording.series.front().values.at(index), phases[index] == LoadPhase::load ? 70 : 40);
    }
}

TEST_F(IdentifierTest, EndsTheLoadFiveDegreesBelowACriticalLimit) {
    margin = [](auto time) {
        return CriticalMargin{.sensor = "chip/temp1", .degrees = time < 10s + 250ms ? 5.1 : 5};
    };
    const IdentificationRecord done = record(loadPlan);
    EXPECT_EQ(done.end, IdentificationEnd::nearLimit);
    EXPECT_EQ(done.limitedSensor, "chip/temp1");
    EXPECT_EQ(loadEnded, 10s + 250ms); // between two reads
    EXPECT_EQ(elapsed(), 19s);         // the first read after the time for cooling
    EXPECT_TRUE(done.hasResponses());
    EXPECT_THAT(said, Contains("chip/temp1 is near its critical limit."));
}

TEST_F(IdentifierTest, EndsTheLoadWhenASensorWithALimitDoesNotAnswer) {
    silentAt = 10s;
    const IdentificationRecord done = record(loadPlan);
    EXPECT_EQ(done.end, IdentificationEnd::silentSensor);
    EXPECT_EQ(loadEnded, 10s);
    EXPECT_TRUE(done.hasResponses());
    EXPECT_THAT(said, Contains("A sensor with a critical limit does not answer."));
}

TEST_F(IdentifierTest, BeginsNoLoadWhereASensorWithALimitDoesNotAnswer) {
    silentAt = 0s;
    const IdentificationRecord done = record(loadPlan);
    EXPECT_EQ(done.end, IdentificationEnd::silentSensor);
    EXPECT_EQ(loadBegan, std::nullopt);
    EXPECT_FALSE(done.hasResponses());
}

TEST_F(IdentifierTest, BeginsNoLoadNearALimit) {
    margin = [](auto) { return CriticalMargin{.sensor = "chip/temp1", .degrees = -3}; };
    const IdentificationRecord done = record(loadPlan);
    EXPECT_EQ(done.end, IdentificationEnd::nearLimit);
    EXPECT_EQ(loadBegan, std::nullopt);
    EXPECT_FALSE(done.hasResponses());
    EXPECT_EQ(elapsed(), 6s);
}

TEST_F(IdentifierTest, EndsTheLoadAtOnceWhenTheUserEnds) {
    interruptedAt = 9s + 600ms;
    const IdentificationRecord done = record(loadPlan);
    EXPECT_EQ(done.end, IdentificationEnd::interrupted);
    EXPECT_FALSE(isLoaded);
    EXPECT_EQ(loadEnded, 9s + 500ms); // where the wait began that ended
    EXPECT_TRUE(done.hasResponses());
}

TEST_F(IdentifierTest, HasNothingToRankWhenTheUserEndsAtRest) {
    interruptedAt = 3s;
    const IdentificationRecord done = record(loadPlan);
    EXPECT_EQ(done.end, IdentificationEnd::interrupted);
    EXPECT_EQ(loadBegan, std::nullopt);
    EXPECT_FALSE(done.hasResponses());
}

TEST_F(IdentifierTest, EndsWithoutALoad) {
    hasLoad = false;
    const IdentificationRecord done = record(loadPlan);
    EXPECT_EQ(done.end, IdentificationEnd::noLoad);
    EXPECT_FALSE(done.hasResponses());
}

TEST_F(IdentifierTest, ByHandOnlyWatches) {
    const IdentificationRecord done = record(handPlan);
    EXPECT_EQ(done.end, IdentificationEnd::planned);
    EXPECT_EQ(loadBegan, std::nullopt);
    EXPECT_EQ(elapsed(), 36s);
    EXPECT_EQ(std::ranges::count(done.recording.phases, LoadPhase::byHand), 30);
}

TEST_F(IdentifierTest, ByHandSaysOnceWhatMovedAndAgainAfterItCameBack) {
    read = [this] {
        const bool isBlownAt = (elapsed() >= 10s && elapsed() < 13s) || elapsed() == 20s;
        const double wobble = elapsed() / 1s % 2 == 0 ? 0.5 : 0;
        return std::vector{temperature((isBlownAt ? 30 : 40) + wobble)};
    };
    record(handPlan);
    EXPECT_EQ(std::ranges::count(said, "Moved: Chip, now 30 °C (chip-isa-0000/temp1)"), 2);
    EXPECT_THAT(said, testing::SizeIs(4));
    EXPECT_THAT(said.front(), HasSubstr("Leave the machine alone for 6 s."));
}

TEST_F(IdentifierTest, KeepsPlacesOfValuesThatAreMissing) {
    read = [this] {
        const bool isHere = elapsed() >= 2s && elapsed() != 4s;
        SMCReading text = temperature(1);
        text.key = "chip-isa-0000/in0";
        text.numericValue.reset();
        SMCReading fact = temperature(1);
        fact.key = "NFAC";
        fact.type = nativeType;
        return isHere ? std::vector{temperature(40), text, fact} : std::vector<SMCReading>();
    };
    interruptedAt = 6s;
    const IdentificationRecord done = record(handPlan);
    ASSERT_EQ(done.recording.series.size(), 1U);
    EXPECT_THAT(done.recording.series.front().values,
                ElementsAre(std::nullopt, std::nullopt, 40, 40, std::nullopt, 40));
}

} // namespace
} // namespace kelvinbar::identification_test
