#include "catalogue/Settings.h"

#include <optional>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::settings_test {
namespace {

using testing::ElementsAre;

TEST(SMCSamplingRate, HasTheCasesMediumAndFastInThisOrder) {
    EXPECT_THAT(allSamplingRates, ElementsAre(SMCSamplingRate::medium, SMCSamplingRate::fast));
}

TEST(SMCSamplingRate, HasAStoredForm) {
    EXPECT_EQ(rawValue(SMCSamplingRate::medium), "medium");
    EXPECT_EQ(rawValue(SMCSamplingRate::fast), "fast");
}

TEST(SMCSamplingRate, IsReadFromExactlyItsStoredForm) {
    EXPECT_EQ(samplingRateFromRawValue("medium"), SMCSamplingRate::medium);
    EXPECT_EQ(samplingRateFromRawValue("fast"), SMCSamplingRate::fast);
    for (const std::string_view text :
         {"", "Medium", "FAST", "fast ", " fast", "slow", "fixed", "mediumfast"}) {
        EXPECT_EQ(samplingRateFromRawValue(text), std::nullopt) << text;
    }
}

TEST(SMCWindowDisplayMode, HasTheCasesFixedAndDynamicInThisOrder) {
    EXPECT_THAT(allWindowDisplayModes,
                ElementsAre(SMCWindowDisplayMode::fixed, SMCWindowDisplayMode::dynamic));
}

TEST(SMCWindowDisplayMode, HasAStoredForm) {
    EXPECT_EQ(rawValue(SMCWindowDisplayMode::fixed), "fixed");
    EXPECT_EQ(rawValue(SMCWindowDisplayMode::dynamic), "dynamic");
}

TEST(SMCWindowDisplayMode, IsReadFromExactlyItsStoredForm) {
    EXPECT_EQ(windowDisplayModeFromRawValue("fixed"), SMCWindowDisplayMode::fixed);
    EXPECT_EQ(windowDisplayModeFromRawValue("dynamic"), SMCWindowDisplayMode::dynamic);
    for (const std::string_view text : {"", "Fixed", "DYNAMIC", "fixed ", "\tdynamic", "manual", "fast"}) {
        EXPECT_EQ(windowDisplayModeFromRawValue(text), std::nullopt) << text;
    }
}

} // namespace
} // namespace kelvinbar::settings_test
