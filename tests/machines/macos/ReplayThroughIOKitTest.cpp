// Recorded machines behind the fake I/O Kit: all the way from its calls to a snapshot.

#include "machines/macos/IOKitRegistry.h"
#include "machines/macos/IOKitSMCDriver.h"
#include "machines/replay/ReplaySystemInformation.h"
#include "machines/replay/SnapshotParser.h"
#include "smc/SMCBridge.h"
#include "tests/FileContent.h"
#include "tests/fakes/RecordedSMCDriver.h"
#include "tests/machines/macos/FakeIOKit.h"
#include "tests/machines/replay/Exporting.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace kelvinbar::replay_through_io_kit_test {

namespace {

using fakes::FakeIOKit;
using fakes::FakeNumber;
using fakes::FakeSMCDriver;

class ReplayThroughIOKit : public testing::Test {
  protected:
    ReplayThroughIOKit() { fake.reset(); }

    void TearDown() override { EXPECT_EQ(fake.liveCount(), 0U) << "something was not released"; }

    /// Makes I/O Kit answer as the SMC's driver does.
    void serve(const std::shared_ptr<FakeSMCDriver>& controller) {
        fake.call = [controller, this](std::uint32_t selector, const void* input, std::size_t inputSize,
                                       void* output, std::size_t* outputSize) {
            if (++calls == failingCall) return static_cast<kern_return_t>(0xE00002BC);
            const std::span in(static_cast<const std::byte*>(input), inputSize);
            const std::span out(static_cast<std::byte*>(output), *outputSize);
            const ReturnCode code = controller->callStructMethod(1, selector, in, out, *outputSize);
            if (wrongOutputSize) *outputSize = *wrongOutputSize;
            return static_cast<kern_return_t>(code);
        };
    }

    /// The snapshot of a recorded machine whose SMC and registry are read through I/O Kit.
    std::string servedExport(std::string_view recording) {
        const RecordedMachine recorded = parseSnapshot(recording).machine;
        const auto controller = std::make_shared<FakeSMCDriver>();
        fakes::addRecordedKeys(*controller, recorded.keys);
        serve(controller);
        if (recorded.keys.empty()) fake.serviceClass.clear();
        const auto clock = std::make_shared<fakes::FakeMonotonicClock>();
        return exportedText(
            Machine{.source = std::make_shared<SMCBridge>(std::make_shared<IOKitSMCDriver>(),
                                                          std::make_shared<IOKitRegistry>(), clock),
                    .system = std::make_shared<ReplaySystemInformation>(recorded.facts),
                    .clock = clock});
    }

    /// The registry entry of a sensor driver with the fans of `fansAndKeys`.
    static fakes::FakeRegistryEntry fanEntry() {
        return {.className = "SMCSuperIO",
                .name = "chip",
                .properties = {{u"CPU Fan", FakeNumber(std::int64_t{900})},
                               {u"Fan 1", FakeNumber(std::int64_t{1450})}}};
    }

    FakeIOKit& fake = FakeIOKit::shared();
    std::size_t calls = 0;
    std::size_t failingCall = 0; ///< 0: none
    std::optional<std::size_t> wrongOutputSize;
};

constexpr std::string_view fansAndKeys = "TC0P\tsp78\tCPU\t45.5 °C\tRAW=2D80\n"
                                         "TG0P\tsp78\tGPU\t50.0 °C\tRAW=3200\n"
                                         "VP0R\tsp78\tRail\t12.0 V\tRAW=0C00\n"
                                         "FAN1\tioreg\tFan 1\t1450 RPM\tRAW=5AA\n"
                                         "FAN0\tioreg\tCPU Fan\t900 RPM\tRAW=384\n";

TEST_F(ReplayThroughIOKit, EveryRecordedMachineGivesTheSameSnapshotAsItsReplay) {
    std::size_t count = 0;
    for (const auto& file :
         std::filesystem::directory_iterator(std::filesystem::path(KELVINBAR_FIXTURES) / "smc/expected")) {
        const std::string recording = contentOf(file);
        EXPECT_EQ(servedExport(recording), exportedReplay(recording)) << file;
        fake.reset();
        ++count;
    }
    EXPECT_EQ(count, 12U);
}

TEST_F(ReplayThroughIOKit, FansOfTheRegistryAreTheSame) {
    const std::string expected = exportedReplay(fansAndKeys);
    EXPECT_NE(expected.find("FAN1"), std::string::npos);
    EXPECT_NE(expected.find("CPU Fan"), std::string::npos);
    fake.entries = {fanEntry()};
    EXPECT_EQ(servedExport(fansAndKeys), expected);
}

TEST_F(ReplayThroughIOKit, AWalkConvertsOnlyWhatMayBeAFan) {
    fake.entries.assign(1000, {.className = "IOPCIDevice",
                               .name = "device",
                               .properties = {{u"IOPowerManagement", std::vector<std::uint8_t>(64)},
                                              {u"CPU Fan", FakeNumber(std::int64_t{900})},
                                              {u"class-code", FakeNumber(std::int64_t{1})}}});
    fake.entries.push_back(fanEntry());
    EXPECT_EQ(servedExport(fansAndKeys), exportedReplay(fansAndKeys));
    EXPECT_EQ(fake.convertedValues, 2U);
}

TEST_F(ReplayThroughIOKit, AMachineWithoutAControllerShowsWhatItsSystemKnows) {
    const std::string recording = "NCOR\tnative\tActive CPU Cores\t8\tRAW=8.0\n";
    const std::string expected = exportedReplay(recording);
    EXPECT_NE(expected.find("NCOR"), std::string::npos);
    EXPECT_EQ(servedExport(recording), expected);
}

TEST_F(ReplayThroughIOKit, ACallThatFailsLosesNoMoreThanItsKey) {
    fake.entries = {fanEntry()};
    const std::string whole = servedExport(fansAndKeys);
    const std::size_t callsOfAPass = calls;
    ASSERT_GT(callsOfAPass, 3U);
    std::size_t changed = 0;
    for (std::size_t call = 1; call <= callsOfAPass; ++call) {
        fake.reset();
        fake.entries = {fanEntry()};
        calls = 0;
        failingCall = call;
        const std::string text = servedExport(fansAndKeys);
        EXPECT_GE(std::ranges::count(text, '\n') + 1, std::ranges::count(whole, '\n')) << call;
        EXPECT_NE(text.find("FAN1"), std::string::npos) << call;
        if (text != whole) ++changed;
    }
    EXPECT_GT(changed, 0U);
}

TEST_F(ReplayThroughIOKit, AnOutputOfAnotherSizeIsTakenAsItIs) {
    const std::string expected = exportedReplay(fansAndKeys);
    for (const std::size_t size : {0U, 40U, 81U, 4096U}) {
        fake.reset();
        fake.entries = {fanEntry()};
        wrongOutputSize = size;
        EXPECT_EQ(servedExport(fansAndKeys), expected) << size;
    }
}

TEST_F(ReplayThroughIOKit, ARefusedConnectionLeavesWhatTheSystemKnows) {
    fake.openCode = static_cast<kern_return_t>(0xE00002C1);
    const std::string text = servedExport("TC0P\tsp78\tCPU\t45.5 °C\tRAW=2D80\n"
                                          "NCOR\tnative\tActive CPU Cores\t8\tRAW=8.0\n");
    EXPECT_EQ(text.find("TC0P"), std::string::npos);
    EXPECT_NE(text.find("NCOR"), std::string::npos);
}

} // namespace
} // namespace kelvinbar::replay_through_io_kit_test
