#include "sensors/WatchedSource.h"

#include "sensors/ReadWatch.h"
#include "tests/fakes/FakeClocks.h"
#include "tests/fakes/FakeSensorSource.h"
#include "tests/fakes/RecordingLog.h"

#include <chrono>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::watched_source_test {

namespace {

using namespace std::chrono_literals;
using Keys = std::vector<std::string>;

struct WatchedSourceTest : testing::Test {
    std::shared_ptr<fakes::FakeMonotonicClock> clock = std::make_shared<fakes::FakeMonotonicClock>();
    fakes::RecordingLog log;
    std::shared_ptr<ReadWatch> watch = std::make_shared<ReadWatch>(clock, log.log);
    std::shared_ptr<fakes::FakeSensorSource> inner = std::make_shared<fakes::FakeSensorSource>();
    WatchedSource source{inner, "controller", LogCategory::sourceSMC};
    const Keys keys{"TC0P", "TG0D", "TM0P"};

    WatchedSourceTest() {
        inner->add("TC0P", "40").add("TG0D", "50");
        inner->readings[0].type = "sp78";
        inner->readings[0].numericValue = 40;
        inner->readings[0].unit = "°C";
        RawReading& fan = inner->fans.emplace_back();
        fan.key = "FAN0";
        fan.value = "900";
    }

    /// Runs `work` in a pass while the source is set aside.
    template <typename Work>
    void whileSetAside(Work work) {
        std::promise<void> begun;
        std::promise<void> release;
        WatchedPass stuck(watch);
        std::thread thread([&] {
            const WatchedPass::Scope scope(stuck);
            const DeviceVisit visit("controller", LogCategory::sourceSMC);
            begun.set_value();
            release.get_future().wait();
        });
        begun.get_future().wait();
        clock->advance(2s);
        watch->setAsideSilentDevices();
        inPass(work);
        release.set_value();
        thread.join();
    }

    template <typename Work>
    void inPass(Work work) {
        WatchedPass pass(watch);
        const WatchedPass::Scope scope(pass);
        work();
    }
};

TEST_F(WatchedSourceTest, PassesEveryCallOn) {
    inPass([&] {
        EXPECT_EQ(source.status(), inner->state);
        EXPECT_EQ(source.discoverKeys({}), (Keys{"TC0P", "TG0D"}));
        EXPECT_EQ(source.readCandidateKeys(keys), inner->readings);
        EXPECT_EQ(source.readSMCSuperIOFans(), inner->fans);
        source.close();
    });
    EXPECT_EQ(inner->closeCount, 1);
}

TEST_F(WatchedSourceTest, ItsReadingsSayNoAnswerWhileItIsSetAside) {
    inPass([&] {
        source.status();
        source.discoverKeys({});
        source.readCandidateKeys(keys);
        source.readSMCSuperIOFans();
    });
    whileSetAside([&] {
        EXPECT_EQ(source.status(), inner->state);
        EXPECT_EQ(source.discoverKeys({}), (Keys{"TC0P", "TG0D"}));
        const auto readings = source.readCandidateKeys(keys);
        ASSERT_EQ(readings.size(), 2U); // nothing is said of a key that was never read
        EXPECT_EQ(readings[0].key, "TC0P");
        EXPECT_EQ(readings[0].type, "sp78");
        EXPECT_EQ(readings[0].value, "no answer");
        EXPECT_EQ(readings[0].raw, "no answer");
        EXPECT_EQ(readings[0].numericValue, std::nullopt);
        EXPECT_EQ(readings[0].unit, "");
        ASSERT_EQ(source.readSMCSuperIOFans().size(), 1U);
        EXPECT_EQ(source.readSMCSuperIOFans()[0].value, "no answer");
    });
    EXPECT_EQ(inner->statusCount, 1);
    EXPECT_EQ(inner->requests.size(), 1U);
}

TEST_F(WatchedSourceTest, IsNotAvailableIfItHasNeverAnswered) {
    whileSetAside([&] {
        EXPECT_EQ(source.status(), (SourceStatus{.isAvailable = false, .message = "no answer"}));
        EXPECT_TRUE(source.readCandidateKeys(keys).empty());
    });
    EXPECT_EQ(inner->statusCount, 0);
}

TEST_F(WatchedSourceTest, IsNotClosedWhileItIsSetAside) {
    whileSetAside([&] { source.close(); });
    EXPECT_EQ(inner->closeCount, 0);
}

TEST_F(WatchedSourceTest, IsReadAgainWhenItAnswers) {
    inPass([&] { source.readCandidateKeys(keys); });
    whileSetAside([] {});
    inPass([&] { EXPECT_EQ(source.readCandidateKeys(keys), inner->readings); });
}

TEST_F(WatchedSourceTest, AReportIsTheSourcesUnlessItIsSetAside) {
    inner->reports = {{.name = "a"}};
    EXPECT_EQ(source.report().size(), 1U);
    whileSetAside([&] { EXPECT_TRUE(source.report().empty()); });
}

} // namespace
} // namespace kelvinbar::watched_source_test
