#include "machines/macos/MacSystemInformation.h"

#include "tests/macos-runtime/CocoaTest.h"

#include <cstring>
#include <string_view>
#include <sys/sysctl.h>

namespace {

constexpr std::string_view modelName = "Mac14,2";

} // namespace

/// A kernel with one entry.
extern "C" int sysctlbyname(const char* name, void* value, size_t* size, void* /*newValue*/,
                            size_t /*newSize*/) {
    if (std::string_view(name) != "hw.model") return -1;
    if (value != nullptr) std::memcpy(value, modelName.data(), modelName.size());
    *size = modelName.size();
    return 0;
}

namespace kelvinbar::mac_system_information_test {

namespace {

using testing::Optional;

class MacSystemInformationTest : public CocoaTest {
  protected:
    MacSystemInformation information;
};

TEST_F(MacSystemInformationTest, AnEntryIsTheKernels) {
    EXPECT_THAT(information.systemBytes("hw.model"), Optional(std::string(modelName)));
    EXPECT_EQ(information.systemBytes("hw.nothing"), std::nullopt);
}

TEST_F(MacSystemInformationTest, ProcessorsAndMemoryAreTheSystems) {
    cocoa.activeProcessors = 12;
    cocoa.physicalMemory = 68'719'476'736;
    EXPECT_EQ(information.activeProcessorCount(), 12);
    EXPECT_EQ(information.physicalMemory(), 68'719'476'736U);
}

TEST_F(MacSystemInformationTest, TheThermalStateIsTheSystemsNumber) {
    for (const int state : {0, 1, 2, 3}) {
        cocoa.thermalState = state;
        EXPECT_THAT(information.thermalState(), Optional(state));
    }
    EXPECT_EQ(information.thermalStateName(), "macOS Thermal State");
}

TEST_F(MacSystemInformationTest, TheLowPowerModeIsTheSystemsFromMacOS12On) {
    cocoa.version = 12;
    EXPECT_FALSE(information.isLowPowerModeEnabled());
    cocoa.hasLowPowerMode = true;
    EXPECT_TRUE(information.isLowPowerModeEnabled());
    cocoa.version = 11.7;
    EXPECT_FALSE(information.isLowPowerModeEnabled());
}

TEST_F(MacSystemInformationTest, TheArchitectureIsNamed) {
    EXPECT_EQ(information.architecture(), "Apple Silicon");
}

} // namespace
} // namespace kelvinbar::mac_system_information_test
