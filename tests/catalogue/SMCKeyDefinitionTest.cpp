#include "catalogue/SMCKeyDefinition.h"

#include <array>
#include <functional>

#include <gtest/gtest.h>

namespace kelvinbar::smc_key_definition_test {
namespace {

const SMCKeyDefinition cpuProximity{"TC0P", "CPU Proximity", SMCCategory::cpu, "°C"};

TEST(SMCKeyDefinition, IsEqualWhenAllFourFieldsAre) {
    const SMCKeyDefinition same{"TC0P", "CPU Proximity", SMCCategory::cpu, "°C"};
    EXPECT_EQ(same, cpuProximity);
    EXPECT_EQ(std::hash<SMCKeyDefinition>()(same), std::hash<SMCKeyDefinition>()(cpuProximity));
}

TEST(SMCKeyDefinition, DiffersInEqualityAndHashByEachField) {
    const std::array others{
        SMCKeyDefinition{"TC0p", "CPU Proximity", SMCCategory::cpu, "°C"},
        SMCKeyDefinition{"TC0P", "CPU Package", SMCCategory::cpu, "°C"},
        SMCKeyDefinition{"TC0P", "CPU Proximity", SMCCategory::gpu, "°C"},
        SMCKeyDefinition{"TC0P", "CPU Proximity", SMCCategory::cpu, ""},
    };
    for (const SMCKeyDefinition& other : others) {
        SCOPED_TRACE(other.key + ", " + other.name + ", " + other.unit);
        EXPECT_NE(other, cpuProximity);
        EXPECT_NE(std::hash<SMCKeyDefinition>()(other), std::hash<SMCKeyDefinition>()(cpuProximity));
    }
}

TEST(SMCKeyDefinition, HashesItsFieldsInTheirOrder) {
    const SMCKeyDefinition swapped{"CPU Proximity", "TC0P", SMCCategory::cpu, "°C"};
    EXPECT_NE(std::hash<SMCKeyDefinition>()(swapped), std::hash<SMCKeyDefinition>()(cpuProximity));
}

} // namespace
} // namespace kelvinbar::smc_key_definition_test
