#include "desktop/macos/RoundedFontFile.h"

#include "tests/macos-runtime/CocoaTest.h"

namespace kelvinbar::rounded_font_file_test {

namespace {

class RoundedFontFileTest : public CocoaTest {};

TEST_F(RoundedFontFileTest, IsTheFileOfTheRoundedDesign) {
    cocoa.fontFiles = {{"", "/fonts/usual.ttf"}, {fakes::fakeRoundedDesign, "/fonts/round.ttf"}};
    EXPECT_EQ(roundedFontFile(), "/fonts/round.ttf");
}

TEST_F(RoundedFontFileTest, IsEmptyIfTheSystemHasNoSuchDesign) {
    cocoa.fontFiles = {{"", "/fonts/usual.ttf"}};
    EXPECT_EQ(roundedFontFile(), "");
}

TEST_F(RoundedFontFileTest, IsEmptyIfTheDesignIsInNoFile) {
    cocoa.fontFiles = {{fakes::fakeRoundedDesign, ""}};
    EXPECT_EQ(roundedFontFile(), "");
}

} // namespace
} // namespace kelvinbar::rounded_font_file_test
