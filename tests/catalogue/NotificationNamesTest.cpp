#include "catalogue/NotificationNames.h"

#include <gtest/gtest.h>

namespace kelvinbar {
namespace {

TEST(NotificationNames, CarryThePrefixOfTheProgram) {
    EXPECT_EQ(kelvinbarSamplingRateChanged, "KelvinbarSamplingRateChanged");
    EXPECT_EQ(kelvinbarMenuBarReadingChanged, "KelvinbarMenuBarReadingChanged");
    EXPECT_EQ(kelvinbarDisplayModeChanged, "KelvinbarDisplayModeChanged");
    EXPECT_EQ(kelvinbarManualSizeChanged, "KelvinbarManualSizeChanged");
}

} // namespace
} // namespace kelvinbar
