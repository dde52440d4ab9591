#include "base/Calendar.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string_view>

#include <gtest/gtest.h>

namespace kelvinbar::calendar_test {
namespace {

using namespace std::chrono_literals;

std::chrono::system_clock::time_point unixTime(std::int64_t seconds) {
    return std::chrono::system_clock::time_point(std::chrono::seconds(seconds));
}

TEST(Calendar, PrintsAnInternetDateTimeInUtc) {
    EXPECT_EQ(iso8601Text(unixTime(1772373909)), "2026-03-01T14:05:09Z");
}

TEST(Calendar, PadsEveryFieldWithZeros) { EXPECT_EQ(iso8601Text(unixTime(0)), "1970-01-01T00:00:00Z"); }

TEST(Calendar, PrintsMillisecondsWhenAsked) {
    const auto text = [](auto fraction) {
        return iso8601Text(unixTime(1772373909) + fraction, TimePrecision::milliseconds);
    };
    EXPECT_EQ(text(0ms), "2026-03-01T14:05:09.000Z");
    EXPECT_EQ(text(7ms), "2026-03-01T14:05:09.007Z");
    EXPECT_EQ(text(999999us), "2026-03-01T14:05:09.999Z");
    EXPECT_EQ(text(-1us), "2026-03-01T14:05:08.999Z");
}

TEST(Calendar, KnowsTheLengthsOfYears) {
    EXPECT_EQ(iso8601Text(unixTime(1709251199)), "2024-02-29T23:59:59Z");
    EXPECT_EQ(iso8601Text(unixTime(1709251200)), "2024-03-01T00:00:00Z");
    EXPECT_EQ(iso8601Text(unixTime(951782400)), "2000-02-29T00:00:00Z");
    EXPECT_EQ(iso8601Text(unixTime(4107542399)), "2100-02-28T23:59:59Z");
    EXPECT_EQ(iso8601Text(unixTime(4107542400)), "2100-03-01T00:00:00Z");
    EXPECT_EQ(iso8601Text(unixTime(946684799)), "1999-12-31T23:59:59Z");
}

TEST(Calendar, GoesBeyondThirtyTwoBitSeconds) {
    EXPECT_EQ(iso8601Text(unixTime(2147483648)), "2038-01-19T03:14:08Z");
}

TEST(Calendar, DropsFractionsOfASecond) {
    EXPECT_EQ(iso8601Text(unixTime(1772373909) + 1ms), "2026-03-01T14:05:09Z");
    EXPECT_EQ(iso8601Text(unixTime(1772373909) + 999999us), "2026-03-01T14:05:09Z");
}

TEST(Calendar, CountsBackwardsBefore1970) {
    EXPECT_EQ(iso8601Text(unixTime(-1)), "1969-12-31T23:59:59Z");
    EXPECT_EQ(iso8601Text(unixTime(-2203891200)), "1900-03-01T00:00:00Z");
    EXPECT_EQ(iso8601Text(unixTime(-2203891201)), "1900-02-28T23:59:59Z");
}

TEST(Calendar, DropsFractionsTowardsThePastBefore1970) {
    EXPECT_EQ(iso8601Text(unixTime(0) - 1us), "1969-12-31T23:59:59Z");
    EXPECT_EQ(iso8601Text(unixTime(-1) - 500ms), "1969-12-31T23:59:58Z");
}

TEST(Calendar, ReadsTheTimesThatItPrints) {
    for (const std::int64_t seconds : {0, 951782400, 1709251199, 1772373909}) {
        EXPECT_EQ(timeOfIso8601Text(iso8601Text(unixTime(seconds))), unixTime(seconds));
    }
}

TEST(Calendar, ReadsNoOtherTexts) {
    for (const std::string_view text :
         {"", "TIME", "2026-03-01", "2026-03-01T14:05:09", "2026-03-01T14:05:09ZZ", "2026-03-01 14:05:09Z",
          "2026-3-01T14:05:09Z", "2026-13-01T14:05:09Z", "2026-02-29T14:05:09Z", "2026-03-01T24:05:09Z",
          "2026-03-01T14:05:60Z", "2026-03-01T14:05:09.000Z", "1969-12-31T23:59:59Z",
          "9999-03-01T14:05:09Z"}) {
        EXPECT_EQ(timeOfIso8601Text(text), std::nullopt) << text;
    }
}

} // namespace
} // namespace kelvinbar::calendar_test
