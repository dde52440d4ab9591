#include "desktop/macos/LoginRefusal.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::login_refusal_test {

namespace {

using testing::HasSubstr;
using testing::Not;

TEST(LoginRefusal, OfATemporaryCopySaysToMoveTheProgram) {
    EXPECT_THAT(
        std::string(whyLoginIsRefused(
            "/private/var/folders/x1/T/AppTranslocation/0A1B/d/Kelvinbar.app/Contents/MacOS/Kelvinbar")),
        HasSubstr("move it to the Applications folder"));
}

TEST(LoginRefusal, OfAnInstalledProgramSaysNothingOfMoving) {
    EXPECT_THAT(std::string(whyLoginIsRefused("/Applications/Kelvinbar.app/Contents/MacOS/Kelvinbar")),
                Not(HasSubstr("move")));
}

} // namespace
} // namespace kelvinbar::login_refusal_test
