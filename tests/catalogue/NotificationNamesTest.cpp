#include "catalogue/NotificationNames.h"

#include <gtest/gtest.h>

namespace kelvinbar::notification_names_test {
namespace {

TEST(NotificationNames, CarryThePrefixOfTheProgram) {
    EXPECT_EQ(kelvinbarSamplingRateChanged.name, "KelvinbarSamplingRateChanged");
    EXPECT_EQ(kelvinbarMenuBarReadingChanged.name, "KelvinbarMenuBarReadingChanged");
    EXPECT_EQ(kelvinbarDisplayModeChanged.name, "KelvinbarDisplayModeChanged");
    EXPECT_EQ(kelvinbarManualSizeChanged.name, "KelvinbarManualSizeChanged");
}

} // namespace
} // namespace kelvinbar::notification_names_test
