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

    [[nodiscard]] std::string entryPath() const { return (folder / "kelvinbar.desktop").string(); }
};

TEST_F(AutostartServiceTest, RegistersAndUnregistersTheEntry) {
    AutostartService service([this](auto report) { return entry(std::move(report)); }, actions(),
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
    AutostartService service([this](auto report) { return entry(std::move(report)); }, actions(),
                             recording.log);
    EXPECT_FALSE(service.registerItem());
    EXPECT_EQ(recording.lines(),
              Texts{"kelvinbar: the autostart entry " + entryPath() + " cannot be written"});
}

TEST_F(AutostartServiceTest, RenewsTheEntryOfAProgramThatMoved) {
    tree.write("autostart/kelvinbar.desktop", "[Desktop Entry]\nExec=/gone/kelvinbar\n");
    AutostartService service([this](auto report) { return entry(std::move(report)); }, actions(),
                             recording.log);
    EXPECT_FALSE(service.isRegistered());
    service.renew();
    EXPECT_TRUE(service.isRegistered()) << "which waits for the renewal";
}

TEST_F(AutostartServiceTest, SettingsAndSoundAreTheDesktops) {
    AutostartService service([this](auto report) { return entry(std::move(report)); }, actions(),
                             recording.log);
    service.openLoginItemsSettings();
    EXPECT_EQ(called, Texts{"settings"});
    service.beep();
    EXPECT_EQ(called, (Texts{"settings", "beep"}));
}

// A disk that does not answer, for which the entry's report stands: it comes when the entry is written.

TEST_F(AutostartServiceTest, ADiskThatDoesNotAnswerDelaysTheProgramForAMomentOnly) {
    std::promise<void> answer;
    std::shared_future<void> answered = answer.get_future().share();
    const auto stuckEntry = [&](AutostartEntry::Report report) {
        return entry([answered, report = std::move(report)](LogLevel level, const std::string& line) {
            answered.wait();
            report(level, line);
        });
    };
    AutostartService service(stuckEntry, actions(), recording.log);
    EXPECT_FALSE(service.registerItem());
    EXPECT_EQ(recording.lines(), Texts{"kelvinbar: the autostart entry " + entryPath() + " does not answer"});
    EXPECT_FALSE(service.isRegistered()) << "the earlier call has not come back";
    answer.set_value();
    EXPECT_TRUE(service.isRegistered());
}

TEST_F(AutostartServiceTest, WhatReturnsAfterTheEndLogsNothing) {
    std::promise<void> answer;
    std::promise<void> end;
    const auto stuckEntry = [&](AutostartEntry::Report report) {
        return entry([answered = answer.get_future().share(), &end,
                      report = std::move(report)](LogLevel level, const std::string& line) {
            answered.wait();
            report(level, line);
            end.set_value();
        });
    };
    {
        AutostartService service(stuckEntry, actions(), recording.log);
        EXPECT_FALSE(service.registerItem());
    }
    const Texts before = recording.lines();
    answer.set_value();
    end.get_future().wait();
    EXPECT_EQ(recording.lines(), before);
}

} // namespace

} // namespace kelvinbar::autostart_service_test
