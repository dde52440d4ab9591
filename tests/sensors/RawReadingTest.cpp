#include "sensors/RawReading.h"

#include <string_view>

#include <gtest/gtest.h>

namespace kelvinbar::raw_reading_test {
namespace {

TEST(RawReading, AKeyWithASlashIsSelfNamedUnlessItHasFourCharacters) {
    for (const std::string_view key : {"k10temp-pci-00c3/temp1", "a/b", "chip/fan1", "/long", "long/", "/"}) {
        SCOPED_TRACE(key);
        EXPECT_TRUE(isSelfNamedKey(key));
    }
    for (const std::string_view key : {"TC/P", "/C0P", "TC0/", "////"}) {
        SCOPED_TRACE(key);
        EXPECT_FALSE(isSelfNamedKey(key));
    }
}

TEST(RawReading, AKeyWithoutASlashIsNeverSelfNamed) {
    for (const std::string_view key : {"", "TC0", "TC0P", "TC0PP", "k10temp-pci-00c3", "a\\b.c"}) {
        SCOPED_TRACE(key);
        EXPECT_FALSE(isSelfNamedKey(key));
    }
}

TEST(RawReading, IsAReadValueWithoutANumberOrWordsOfItsOwnUnlessTheSourceFillsThemIn) {
    const RawReading reading;
    EXPECT_EQ(reading.status, "OK");
    EXPECT_EQ(reading.size, 0U);
    EXPECT_FALSE(reading.numericValue.has_value());
    EXPECT_FALSE(reading.name.has_value());
    EXPECT_FALSE(reading.category.has_value());
    EXPECT_FALSE(reading.unit.has_value());
}

} // namespace
} // namespace kelvinbar::raw_reading_test
