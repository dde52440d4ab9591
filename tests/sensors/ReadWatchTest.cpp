#include "sensors/ReadWatch.h"

#include "base/Text.h"
#include "tests/fakes/FakeClocks.h"
#include "tests/fakes/RecordingLog.h"

#include <algorithm>
#include <chrono>
#include <future>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::read_watch_test {

namespace {

using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

/// A pass on a thread of its own that stays in one file of a device until it is released.
class StuckPass {
  public:
    StuckPass(const std::shared_ptr<ReadWatch>& watch, std::string device, std::string file)
        : pass_(watch), thread_([this, device = std::move(device), file = std::move(file)] {
            const WatchedPass::Scope scope(pass_);
            const DeviceVisit visit(device, LogCategory::sourceKernel);
            wasAllowed_ = visit.isAllowed();
            const NotedRead noted(file);
            begun_.set_value();
            release_.get_future().wait();
            const NotedRead next("the next file");
            mayReadOn_ = next.isAllowed();
        }) {
        begun_.get_future().wait();
    }

    StuckPass(const StuckPass&) = delete;
    StuckPass& operator=(const StuckPass&) = delete;

    ~StuckPass() { comeBack(); }

    void comeBack() {
        if (!thread_.joinable()) return;
        release_.set_value();
        thread_.join();
    }

    [[nodiscard]] const WatchedPass& pass() const { return pass_; }

    /// After it came back.
    [[nodiscard]] bool wasAllowed() const { return wasAllowed_; }

    [[nodiscard]] bool mayReadOn() const { return mayReadOn_; }

  private:
    WatchedPass pass_;
    std::promise<void> begun_;
    std::promise<void> release_;
    bool wasAllowed_ = false;
    bool mayReadOn_ = false;
    std::thread thread_;
};

struct ReadWatchTest : testing::Test {
    std::shared_ptr<fakes::FakeMonotonicClock> clock = std::make_shared<fakes::FakeMonotonicClock>();
    fakes::RecordingLog log{"info"};
    std::shared_ptr<ReadWatch> watch = std::make_shared<ReadWatch>(clock, log.log);

    /// Whether a fresh pass may enter the device; what it is told is silent is stored in `silent`.
    bool mayEnter(std::string_view device) {
        WatchedPass pass(watch);
        const WatchedPass::Scope scope(pass);
        const bool isAllowed = DeviceVisit(device, LogCategory::sourceKernel).isAllowed();
        silent = pass.silentDevices();
        return isAllowed;
    }

    std::vector<SilentDevice> silent;
};

TEST_F(ReadWatchTest, CountsTheAccessesOfAPass) {
    WatchedPass pass(watch);
    {
        const WatchedPass::Scope scope(pass);
        const NotedRead outsideOfDevices("passwd");
        EXPECT_EQ(pass.accesses(), 0U);
        const DeviceVisit visit("chip", LogCategory::sourceKernel);
        for (const std::string_view file : {"temp1", "temp2"}) {
            const NotedRead read(file);
            const NotedRead within("its folder");
        }
    }
    EXPECT_EQ(pass.accesses(), 2U);
}

TEST_F(ReadWatchTest, ADeviceIsSetAsideOnceItsReadHasTakenTwoSeconds) {
    StuckPass stuck(watch, "chip", "temp1");
    clock->advance(1999ms);
    EXPECT_EQ(watch->setAsideSilentDevices(), 1ms);
    EXPECT_FALSE(stuck.pass().isAbandoned());
    clock->advance(1ms);
    EXPECT_EQ(watch->setAsideSilentDevices(), 2000ms);
    EXPECT_TRUE(stuck.pass().isAbandoned());
    EXPECT_FALSE(mayEnter("chip"));
    EXPECT_EQ(silent, (std::vector<SilentDevice>{{.device = "chip", .file = "temp1"}}));
    EXPECT_TRUE(mayEnter("another chip"));
    EXPECT_TRUE(silent.empty());
}

TEST_F(ReadWatchTest, TheTimeCountsFromTheLastReadThatBegan) {
    WatchedPass pass(watch);
    const WatchedPass::Scope scope(pass);
    const DeviceVisit visit("chip", LogCategory::sourceKernel);
    for (int file = 0; file < 5; ++file) {
        clock->advance(1500ms);
        const NotedRead noted("temp");
        EXPECT_TRUE(noted.isAllowed());
        EXPECT_EQ(watch->setAsideSilentDevices(), 2000ms);
    }
    EXPECT_FALSE(pass.isAbandoned());
}

TEST_F(ReadWatchTest, ADeviceIsUsedAgainWhenItsReadReturns) {
    StuckPass stuck(watch, "chip", "temp1");
    clock->advance(2s);
    watch->setAsideSilentDevices();
    EXPECT_FALSE(mayEnter("chip"));
    stuck.comeBack();
    EXPECT_TRUE(mayEnter("chip"));
    EXPECT_TRUE(stuck.wasAllowed());
    EXPECT_FALSE(stuck.mayReadOn());
}

TEST_F(ReadWatchTest, TheLogNamesTheFile) {
    StuckPass stuck(watch, "chip", "chip/temp1_input");
    clock->advance(2s);
    watch->setAsideSilentDevices();
    watch->setAsideSilentDevices();
    stuck.comeBack();
    EXPECT_EQ(log.lines(), (Lines{"kelvinbar: no answer from chip/temp1_input in 2 s; "
                                  "chip is set aside until it answers",
                                  "kelvinbar: source.kernel info: chip answers again"}));
}

TEST_F(ReadWatchTest, AFileThatStallsAgainAndAgainDoesNotFloodTheLog) {
    for (int time = 0; time < 3; ++time) {
        const StuckPass stuck(watch, "chip", "temp1");
        clock->advance(2s);
        watch->setAsideSilentDevices();
    }
    const auto warnings = std::ranges::count_if(
        log.lines(), [](const std::string& line) { return contains(line, "no answer"); });
    EXPECT_EQ(warnings, 1);
}

TEST_F(ReadWatchTest, ASecondPassWaitsForTheDeviceUntilItIsSetAside) {
    const StuckPass stuck(watch, "chip", "temp1");
    auto second = std::async(std::launch::async, [this] { return mayEnter("chip"); });
    EXPECT_EQ(second.wait_for(10ms), std::future_status::timeout);
    clock->advance(2s);
    watch->setAsideSilentDevices();
    EXPECT_FALSE(second.get());
}

TEST_F(ReadWatchTest, ASecondPassEntersTheDeviceWhenTheFirstLeavesIt) {
    StuckPass first(watch, "chip", "temp1");
    auto second = std::async(std::launch::async, [this] { return mayEnter("chip"); });
    first.comeBack();
    EXPECT_TRUE(second.get());
}

TEST_F(ReadWatchTest, WithFourDevicesSetAsideNoOtherIsRead) {
    std::list<StuckPass> stuck;
    for (const char* const device : {"one", "two", "three", "four"}) {
        EXPECT_TRUE(mayEnter("five"));
        stuck.emplace_back(watch, device, device);
        clock->advance(2s);
        watch->setAsideSilentDevices();
    }
    EXPECT_FALSE(mayEnter("five"));
    EXPECT_EQ(silent, (std::vector<SilentDevice>{{.device = "five", .file = "five"}}));
    stuck.front().comeBack();
    EXPECT_TRUE(mayEnter("five"));
}

/// Otherwise both could get stuck, and five threads in all.
TEST_F(ReadWatchTest, WithThreeDevicesSetAsideOneIsReadAtATime) {
    std::list<StuckPass> stuck;
    for (const char* const device : {"one", "two", "three"}) {
        stuck.emplace_back(watch, device, device);
        clock->advance(2s);
        watch->setAsideSilentDevices();
    }
    StuckPass reading(watch, "four", "four");
    auto other = std::async(std::launch::async, [this] { return mayEnter("five"); });
    EXPECT_EQ(other.wait_for(10ms), std::future_status::timeout);
    reading.comeBack();
    EXPECT_TRUE(other.get());
}

TEST_F(ReadWatchTest, AFileThatStalledForAnotherDeviceIsNotReadForItsOwn) {
    const StuckPass stuck(watch, "controller", "hwmon1/name");
    clock->advance(2s);
    watch->setAsideSilentDevices();
    EXPECT_FALSE(mayEnter("hwmon1"));
    EXPECT_TRUE(mayEnter("hwmon10"));
}

TEST_F(ReadWatchTest, OutsideAPassEverythingIsAllowed) {
    const StuckPass stuck(watch, "chip", "temp1");
    clock->advance(2s);
    watch->setAsideSilentDevices();
    EXPECT_TRUE(DeviceVisit("chip", LogCategory::sourceKernel).isAllowed());
    EXPECT_TRUE(NotedRead("temp1").isAllowed());
    EXPECT_EQ(WatchedPass::current(), nullptr);
}

TEST_F(ReadWatchTest, APassWithoutAWatchWatchesNothing) {
    WatchedPass pass(nullptr);
    const WatchedPass::Scope scope(pass);
    EXPECT_TRUE(DeviceVisit("chip", LogCategory::sourceKernel).isAllowed());
    EXPECT_FALSE(pass.isAbandoned());
}

} // namespace
} // namespace kelvinbar::read_watch_test
