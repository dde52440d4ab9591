#include "catalogue/SMCCategory.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

#include <gtest/gtest.h>

namespace kelvinbar::smc_category_test {
namespace {

using enum SMCCategory;

struct TitledCategory {
    SMCCategory category;
    std::string_view title;
};

constexpr std::array titledCategories{
    TitledCategory{overview, "Overview"},
    TitledCategory{cpu, "CPU"},
    TitledCategory{gpu, "GPU / iGPU"},
    TitledCategory{memory, "Memory"},
    TitledCategory{fans, "Fans"},
    TitledCategory{battery, "Battery"},
    TitledCategory{power, "Power"},
    TitledCategory{voltages, "Voltages"},
    TitledCategory{currents, "Currents"},
    TitledCategory{storage, "Storage"},
    TitledCategory{thermal, "Thermal Zones"},
    TitledCategory{sensors, "Misc Sensors"},
    TitledCategory{unknown, "Other Keys"},
};

TEST(SMCCategory, IsStoredInOneByte) { EXPECT_EQ(sizeof(SMCCategory), 1U); }

TEST(SMCCategory, HasThirteenCasesInTheOrderOfTheSections) {
    ASSERT_EQ(allCategories.size(), titledCategories.size());
    for (std::size_t index = 0; index < allCategories.size(); ++index) {
        EXPECT_EQ(allCategories.at(index), titledCategories.at(index).category) << index;
    }
}

TEST(SMCCategory, HasItsTitleAsRawValue) {
    for (const auto& [category, title] : titledCategories) EXPECT_EQ(rawValue(category), title);
}

TEST(SMCCategory, IsFoundByItsTitle) {
    for (const auto& [category, title] : titledCategories)
        EXPECT_EQ(categoryFromRawValue(title), category) << title;
}

TEST(SMCCategory, IsFoundByTheTitleThermalZonesButNotByItsCaseName) {
    EXPECT_EQ(categoryFromRawValue("Thermal Zones"), thermal);
    EXPECT_EQ(categoryFromRawValue("thermal"), std::nullopt);
}

TEST(SMCCategory, IsNotFoundByAnyOtherText) {
    for (const std::string_view text : {"", "cpu", "Cpu", "CPU ", " CPU", "GPU", "GPU/iGPU", "thermal zones",
                                        "Thermal", "Sensors", "Unknown", "Other keys", "Fans\n"}) {
        EXPECT_EQ(categoryFromRawValue(text), std::nullopt) << text;
    }
}

} // namespace
} // namespace kelvinbar::smc_category_test
