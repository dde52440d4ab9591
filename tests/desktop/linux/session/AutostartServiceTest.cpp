#include "desktop/linux/session/AutostartService.h"

#include "tests/fakes/RecordingLog.h"
#include "tests/machines/linux/TemporaryTree.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <future>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::autostart_service_test {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using Texts = std::vector<std::string>;

struct AutostartServiceTest : testing::Test {
    fakes::TemporaryTree tree;
    fs::path folder = tree.root() / "autostart";
    fs::path program = tree.write("kelvinbar", "");
    Texts called;
    fakes::RecordingLog recording{"login=info"};

    AutostartServiceTest() { fs::permissions(program, fs::perms::owner_all); }

    [[nodiscard]] AutostartEntry entry(AutostartEntry::Report report) const {
        return {folder, "kelvinbar", {program.string()}, {.path = {}, .desktopNames = {}}, std::move(report)};
    }

    [[nodiscard]] AutostartService::Actions actions() {
        return {.openSettings = [this] { called.emplace_back("settings"); },
                .beep = [this] { called.emplace_back("beep"); }};
    }

    static constexpr AutostartService::Patience patient{.look = 20s, .change = 20s};
    static constexpr AutostartService::Patience impatient{.look = 20ms, .change = 20ms};

    [[nodiscard]] std::string silence() const {
        return "kelvinbar: the disk of the autostart entry " + entryPath() + " does not answer";
    }

    [[nodiscard]] std::string entryPath() const { return (folder / "kelvinbar.desktop").string(); }
};

TEST_F(AutostartServiceTest, RegistersAndUnregistersTheEntry) {
    AutostartService service([this](auto report) { return entry(std::move(report)); }, actions(), patient,
                             recording.log);
    EXPECT_TRUE(service.canRegister());
    EXPECT_FALSE(service.isRegistered());
    EXPECT_TRUE(service.registerItem());
    EXPECT_TRUE(service.isRegistered());
    EXPECT_TRUE(service.unregisterItem());
    EXPECT_FALSE(service.isRegistered());
    EXPECT_EQ(recording.lines(),
              (Texts{"kelvinbar: login info: the autostart entry " + entryPath() + " is written",
                     "kelvinbar: login info: the autostart entry " + entryPath() + " is removed"}));
}

TEST_F(AutostartServiceTest, AFailureIsLoggedAndReturned) {
    tree.write("autostart", "a file");
    AutostartService service([this](auto report) { return entry(std::move(report)); }, actions(), patient,
                             recording.log);
    EXPECT_FALSE(service.registerItem());
    EXPECT_EQ(recording.lines(),
              Texts{"kelvinbar: the autostart entry " + entryPath() + " cannot be written"});
}

TEST_F(AutostartServiceTest, RenewsTheEntryOfAProgramThatMoved) {
    tree.write("autostart/kelvinbar.desktop", "[Desktop Entry]\nExec=/gone/kelvinbar\n");
    AutostartService service([this](auto report) { return entry(std::move(report)); }, actions(), patient,
                             recording.log);
    EXPECT_FALSE(service.isRegistered());
    service.renew();
    EXPECT_TRUE(service.isRegistered()) << "which waits for the renewal";
}

TEST_F(AutostartServiceTest, SettingsAndSoundAreTheDesktops) {
    AutostartService service([this](auto report) { return entry(std::move(report)); }, actions(), patient,
                             recording.log);
    service.openLoginItemsSettings();
    EXPECT_EQ(called, Texts{"settings"});
    service.beep();
    EXPECT_EQ(called, (Texts{"settings", "beep"}));
}

// A disk that does not answer, for which the entry's report stands: it comes when the entry has been written.

class SlowDisk {
  public:
    /// A report that waits for `answer` before it goes on.
    [[nodiscard]] AutostartEntry::Report before(AutostartEntry::Report report) const {
        return [answered = answered_, report = std::move(report)](LogLevel level, const std::string& line) {
            answered.wait();
            report(level, line);
        };
    }

    void answer() { answer_.set_value(); }

  private:
    std::promise<void> answer_;
    std::shared_future<void> answered_ = answer_.get_future().share();
};

TEST_F(AutostartServiceTest, AChangeThatIsStillBeingMadeCountsAsMade) {
    SlowDisk disk;
    AutostartService service([&](auto report) { return entry(disk.before(std::move(report))); }, actions(),
                             impatient, recording.log);
    EXPECT_TRUE(service.registerItem());
    EXPECT_TRUE(service.isRegistered()) << "the call that changes it has not come back";
    EXPECT_EQ(recording.lines(), Texts{silence()}) << "once";
    disk.answer();
}

TEST_F(AutostartServiceTest, WhileADiskDoesNotAnswerNothingElseIsChanged) {
    SlowDisk disk;
    AutostartService service([&](auto report) { return entry(disk.before(std::move(report))); }, actions(),
                             impatient, recording.log);
    EXPECT_TRUE(service.registerItem());
    EXPECT_FALSE(service.unregisterItem());
    EXPECT_TRUE(service.isRegistered());
    disk.answer();
}

TEST_F(AutostartServiceTest, ADiskThatAnswersAgainTellsTheState) {
    SlowDisk disk;
    AutostartService service([&](auto report) { return entry(disk.before(std::move(report))); }, actions(),
                             {.look = patient.look, .change = impatient.change}, recording.log);
    EXPECT_TRUE(service.registerItem());
    tree.remove("autostart/kelvinbar.desktop");
    disk.answer();
    EXPECT_FALSE(service.isRegistered()) << "which the user has removed meanwhile";
}

TEST_F(AutostartServiceTest, WhatReturnsAfterTheEndLogsNothing) {
    SlowDisk disk;
    std::promise<void> end;
    const auto makeEntry = [&](AutostartEntry::Report report) {
        return entry(disk.before([&end, report = std::move(report)](LogLevel level, const std::string& line) {
            report(level, line);
            end.set_value();
        }));
    };
    {
        AutostartService service(makeEntry, actions(), impatient, recording.log);
        EXPECT_TRUE(service.registerItem());
    }
    disk.answer();
    end.get_future().wait();
    EXPECT_EQ(recording.lines(), Texts{silence()});
}

} // namespace

} // namespace kelvinbar::autostart_service_test
