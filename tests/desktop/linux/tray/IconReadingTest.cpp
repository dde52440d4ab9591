#include "desktop/linux/tray/IconReading.h"

#include <gtest/gtest.h>

namespace kelvinbar::icon_reading_test {

namespace {

const PinnedReading cpu{"TC0P", "CPU", "49.8 °C", "49.80°"};
const PinnedReading fan{"F0Ac", "Fan", "1200 rpm", "1200rpm"};
const PinnedReading power{"PCPC", "Power", "5.6 W", "5.6W"};
const PinnedReading status{"BAT0/status", "Status", "Charging", "Charging"};

TEST(IconReading, IsTheFirst) { EXPECT_EQ(IconReading().text({cpu, fan}), "50°"); }

TEST(IconReading, IsTheFirstThatHasANumber) { EXPECT_EQ(IconReading().text({status, fan, cpu}), "1200"); }

TEST(IconReading, IsNothingWithoutANumber) {
    EXPECT_EQ(IconReading().text({status}), "");
    EXPECT_EQ(IconReading().text({}), "");
}

TEST(IconReading, GoesOnToTheNextWithANumberAndAroundAgain) {
    IconReading reading;
    const std::vector pinned{cpu, status, fan, power};
    reading.goOn(pinned);
    EXPECT_EQ(reading.text(pinned), "1200");
    reading.goOn(pinned);
    EXPECT_EQ(reading.text(pinned), "5.6");
    reading.goOn(pinned);
    EXPECT_EQ(reading.text(pinned), "50°");
}

TEST(IconReading, StaysWithItsReadingWhenOthersAreUnpinned) {
    IconReading reading;
    reading.goOn({cpu, fan, power});
    EXPECT_EQ(reading.text({fan, power}), "1200");
    reading.goOn({fan, power});
    EXPECT_EQ(reading.text({fan, power}), "5.6");
}

TEST(IconReading, IsTheFirstAgainWhenItsReadingIsUnpinned) {
    IconReading reading;
    reading.goOn({cpu, fan, power});
    EXPECT_EQ(reading.text({cpu, power}), "50°");
}

TEST(IconReading, StartsOver) {
    IconReading reading;
    reading.goOn({cpu, fan});
    reading.startOver();
    EXPECT_EQ(reading.text({cpu, fan}), "50°");
}

TEST(IconReading, SurvivesHavingNoChoice) {
    IconReading reading;
    reading.goOn({});
    reading.goOn({status});
    reading.goOn({fan});
    EXPECT_EQ(reading.text({fan}), "1200");
}

TEST(IconReading, CountsReadingsWithNumbers) {
    EXPECT_EQ(IconReading::choices({cpu, status, fan}), 2U);
    EXPECT_EQ(IconReading::choices({status}), 0U);
}

} // namespace
} // namespace kelvinbar::icon_reading_test
