#include "desktop/linux/session/OfferedReading.h"

#include <cmath>
#include <cstddef>
#include <optional>

#include <gtest/gtest.h>

namespace kelvinbar::offered_reading_test {

namespace {

const SMCReading reading{.key = "nvme-pci-0100/temp1",
                         .name = "NVMe Composite",
                         .category = SMCCategory::storage,
                         .type = "temp",
                         .value = "38.9",
                         .numericValue = 38.85,
                         .unit = "°C",
                         .raw = "38850",
                         .status = "OK"};

TEST(OfferedReading, HasTheFieldsOfTheReading) {
    const OfferedReading offered = offeredReadings({reading}).value(0);
    EXPECT_EQ(offered.key, "nvme-pci-0100/temp1");
    EXPECT_EQ(offered.name, "NVMe Composite");
    EXPECT_EQ(offered.category, "Storage");
    EXPECT_EQ(offered.type, "temp");
    EXPECT_EQ(offered.value, "38.9");
    EXPECT_EQ(offered.number, 38.85);
    EXPECT_EQ(offered.unit, "°C");
    EXPECT_EQ(offered.raw, "38850");
    EXPECT_EQ(offered.status, "OK");
}

TEST(OfferedReading, HasNotANumberWithoutANumber) {
    SMCReading text = reading;
    text.numericValue = std::nullopt;
    EXPECT_TRUE(std::isnan(offeredReadings({text}).value(0).number));
}

TEST(OfferedReading, OfTooManyTheFirstAreOffered) {
    const std::vector<SMCReading> many(mostOfferedReadings + 1, reading);
    EXPECT_EQ(offeredReadings(many).size(), static_cast<qsizetype>(mostOfferedReadings));
}

} // namespace
} // namespace kelvinbar::offered_reading_test
