#include "panel/RoundedFont.h"

#include <gtest/gtest.h>

namespace kelvinbar::rounded_font_test {

namespace {

TEST(RoundedFont, IsTheFirstOfTheWantedFamiliesThatIsInstalled) {
    EXPECT_EQ(firstInstalled({"Nunito", "Quicksand"}, {"DejaVu Sans", "Nunito", "Quicksand"}), "Nunito");
    EXPECT_EQ(firstInstalled({"Nunito", "Quicksand"}, {"DejaVu Sans", "Quicksand"}), "Quicksand");
    EXPECT_EQ(firstInstalled({"Nunito", "Quicksand"}, {"Quicksand", "Nunito"}), "Nunito");
}

TEST(RoundedFont, HasNoFamilyIfNoneIsInstalled) {
    EXPECT_EQ(firstInstalled({"Nunito"}, {"DejaVu Sans"}), "");
    EXPECT_EQ(firstInstalled({"Nunito"}, {}), "");
    EXPECT_EQ(firstInstalled({}, {"DejaVu Sans"}), "");
}

TEST(RoundedFont, IsFoundByItsWholeNameInAnyCase) {
    EXPECT_EQ(firstInstalled({"Nunito"}, {"Nunito Sans"}), "");
    EXPECT_EQ(firstInstalled({"Nunito"}, {"My Nunito"}), "");
    EXPECT_EQ(firstInstalled({"Nunito"}, {"nunito"}), "Nunito");
}

TEST(RoundedFont, IsFoundAmongSeveralMakersOfAFamily) {
    EXPECT_EQ(firstInstalled({"Nunito"}, {"Nunito [one]", "Nunito [two]"}), "Nunito");
}

TEST(RoundedFont, IsTakenFromTheListIfTheFileHasNone) {
    const QString usual = RoundedFont(QString()).family();
    EXPECT_EQ(RoundedFont("/no/such/file").family(), usual);
}

} // namespace
} // namespace kelvinbar::rounded_font_test
