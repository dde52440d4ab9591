#include "tools/doctor/Examination.h"

#include "base/Clock.h"
#include "base/Text.h"
#include "tests/fakes/FakeSensorSource.h"
#include "tests/fakes/FakeSystemInformation.h"
#include "tests/fakes/RecordingLog.h"

#include <algorithm>
#include <chrono>
#include <future>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::examination_test {

namespace {

using namespace std::chrono_literals;

using Sections = std::vector<FindingSection>;

class RunningClock final : public MonotonicClock {
  public:
    [[nodiscard]] std::chrono::nanoseconds now() const override {
        return std::chrono::steady_clock::now().time_since_epoch();
    }
};

class ExaminationTest : public testing::Test {
  protected:
    ExaminationTest() {
        source->add("chip-isa-0000/temp1", "40");
        source->readings[0].numericValue = 40;
        source->readings[0].name = "Chip";
        source->readings[0].category = "CPU";
        source->readings[0].unit = "°C";
    }

    [[nodiscard]] Machine machine() const {
        return {.source = source,
                .system = std::make_shared<fakes::FakeSystemInformation>(),
                .clock = std::make_shared<RunningClock>(),
                .watch = watch};
    }

    Sections examine(const Examination::Look& look = [](const Machine&) { return Sections(); }) {
        return examination.examine(machine(), look);
    }

    /// The finding on a subject, in any section.
    static Finding find(const Sections& sections, std::string_view subject) {
        for (const FindingSection& section : sections) {
            const auto found = std::ranges::find(section.findings, subject, &Finding::subject);
            if (found != section.findings.end()) return *found;
        }
        ADD_FAILURE() << "nothing is said of " << subject;
        return {};
    }

    fakes::RecordingLog log;
    std::shared_ptr<fakes::FakeSensorSource> source = std::make_shared<fakes::FakeSensorSource>();
    std::shared_ptr<ReadWatch> watch =
        std::make_shared<ReadWatch>(std::make_shared<RunningClock>(), log.log, 50ms);
    Examination examination;
};

TEST_F(ExaminationTest, TellsHowManyReadingsAreShown) {
    const Finding shown = find(examine(), "shown");
    EXPECT_EQ(shown.state, FindingState::good);
    EXPECT_TRUE(contains(shown.found, " readings; ") || shown.found.starts_with("1 reading; "))
        << shown.found;
}

TEST_F(ExaminationTest, AMachineWithoutASensorHasAProblem) {
    source->readings.clear();
    source->state = {.isAvailable = false, .message = "No sensors"};
    const Finding shown = find(examine(), "shown");
    EXPECT_EQ(shown.state, FindingState::problem);
    EXPECT_NE(shown.advice, "");
}

TEST_F(ExaminationTest, TellsWhatAPassCosts) {
    const Sections sections = examine();
    for (const char* const subject : {"first pass, which looks for devices", "pass"}) {
        const std::string found = find(sections, subject).found;
        EXPECT_TRUE(contains(found, " ms, of which ")) << found;
        EXPECT_TRUE(found.ends_with(" ms of processor time, 0 accesses to files and drivers")) << found;
    }
    EXPECT_EQ(source->requests.size(), 2U);
    EXPECT_EQ(examination.accessesOfLastPass(), 0U);
}

TEST_F(ExaminationTest, TellsWhatTheLookAtTheSourcesFoundInsideAPass) {
    bool isWatched = false;
    const Sections sections = examine([&](const Machine&) {
        isWatched = WatchedPass::current() != nullptr;
        return Sections{{.title = "Sources", .findings = {{.subject = "fakes", .found = "many"}}}};
    });
    EXPECT_EQ(find(sections, "fakes").found, "many");
    EXPECT_EQ(sections.back().title, "Sources");
    EXPECT_TRUE(isWatched);
}

TEST_F(ExaminationTest, ALookThatDoesNotComeBackIsDoneAgainWithoutTheDevice) {
    std::promise<void> release;
    const std::shared_future<void> released = release.get_future().share();
    const Sections sections = examine([released](const Machine&) {
        const DeviceVisit visit("stuck", LogCategory::sourceKernel);
        if (visit.isAllowed()) released.wait();
        return Sections{{.title = "Sources",
                         .findings = {{.subject = "stuck", .found = visit.isAllowed() ? "" : "silent"}}}};
    });
    EXPECT_EQ(find(sections, "stuck").found, "silent");
    release.set_value();
    EXPECT_TRUE(examination.finish());
}

TEST_F(ExaminationTest, ClosesTheSource) {
    examine();
    EXPECT_TRUE(examination.finish());
    EXPECT_EQ(source->closeCount, 1);
}

} // namespace

} // namespace kelvinbar::examination_test
