// Recorded machines behind the fake I/O Kit: the whole way from its calls to a snapshot.

#include "machines/macos/IOKitRegistry.h"
#include "machines/macos/IOKitSMCDriver.h"
#include "tests/FileContent.h"
#include "tests/machines/macos/FakeIOKit.h"
#include "tests/machines/replay/Exporting.h"

#include <filesystem>
#include <utility>
#include <variant>

#include <gtest/gtest.h>

namespace kelvinbar {

namespace {

using fakes::FakeIOKit;
using fakes::FakeNumber;
using fakes::FakeValue;

/// The properties of recorded machines are ASCII.
std::u16string wideText(const std::string& text) { return {text.begin(), text.end()}; }

FakeValue fakeValue(const Value& value) {
    if (const auto* whole = std::get_if<std::int64_t>(&value)) return FakeNumber(*whole);
    if (const auto* real = std::get_if<double>(&value)) return FakeNumber(*real);
    if (const auto* text = std::get_if<std::string>(&value)) return wideText(*text);
    if (const auto* data = std::get_if<Data>(&value)) return *data;
    ADD_FAILURE() << "a property of another type";
    return fakes::OtherObject{};
}

fakes::FakeRegistryEntry fakeEntry(const IORegistryEntry& entry) {
    fakes::FakeRegistryEntry fake{.className = entry.className(), .name = entry.name(), .properties = {}};
    const auto properties = entry.properties();
    for (const auto& [name, value] : *properties) {
        fake.properties.emplace_back(wideText(name), fakeValue(value));
    }
    return fake;
}

class ReplayThroughIOKit : public testing::Test {
  protected:
    ReplayThroughIOKit() { fake.reset(); }

    void TearDown() override { EXPECT_EQ(fake.liveCount(), 0U) << "something was not released"; }

    /// The machine, served by I/O Kit.
    Machine served(const Machine& machine) {
        if (!machine.driver->findService("AppleSMC")) fake.serviceClass.clear();
        fake.call = [driver = machine.driver, this](std::uint32_t selector, const void* input,
                                                    std::size_t inputSize, void* output,
                                                    std::size_t* outputSize) {
            if (++calls == failingCall) return static_cast<kern_return_t>(0xE00002BC);
            const std::span in(static_cast<const std::byte*>(input), inputSize);
            const std::span out(static_cast<std::byte*>(output), *outputSize);
            const ReturnCode code = driver->callStructMethod(1, selector, in, out, *outputSize);
            if (wrongOutputSize) *outputSize = *wrongOutputSize;
            return static_cast<kern_return_t>(code);
        };
        const auto walk = machine.registry->iterateRecursively("IOService");
        while (const IORegistryEntry* const entry = walk->next()) fake.entries.push_back(fakeEntry(*entry));
        return {.driver = std::make_shared<IOKitSMCDriver>(),
                .registry = std::make_shared<IOKitRegistry>(),
                .system = machine.system,
                .clock = machine.clock};
    }

    std::string servedExport(std::string_view recording) {
        const ReplayResult replay = replayed(recording);
        return exportedText(served(replay.machine.value()));
    }

    FakeIOKit& fake = FakeIOKit::shared();
    std::size_t calls = 0;
    std::size_t failingCall = 0; ///< none
    std::optional<std::size_t> wrongOutputSize;
};

constexpr std::string_view fansAndKeys = "TC0P\tsp78\tCPU\t45.5 °C\tRAW=2D80\n"
                                         "TG0P\tsp78\tGPU\t50.0 °C\tRAW=3200\n"
                                         "VP0R\tsp78\tRail\t12.0 V\tRAW=0C00\n"
                                         "FAN1\tioreg\tFan 1\t1450 RPM\tRAW=5AA\n"
                                         "FAN0\tioreg\tCPU Fan\t900 RPM\tRAW=384\n";

TEST_F(ReplayThroughIOKit, EveryRecordedMachineGivesTheSameSnapshotAsThroughTheReplayPort) {
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
    EXPECT_EQ(servedExport(fansAndKeys), expected);
}

TEST_F(ReplayThroughIOKit, AMachineWithoutAControllerShowsWhatItsSystemKnows) {
    const std::string recording = "NCOR\tnative\tActive CPU Cores\t8\tRAW=8.0\n";
    const std::string expected = exportedReplay(recording);
    EXPECT_NE(expected.find("NCOR"), std::string::npos);
    EXPECT_EQ(servedExport(recording), expected);
}

TEST_F(ReplayThroughIOKit, ACallThatFailsLosesNoMoreThanItsKey) {
    const std::string whole = servedExport(fansAndKeys);
    const std::size_t callsOfAPass = calls;
    ASSERT_GT(callsOfAPass, 3U);
    std::size_t changed = 0;
    for (std::size_t call = 1; call <= callsOfAPass; ++call) {
        fake.reset();
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

} // namespace kelvinbar
