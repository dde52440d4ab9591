#include "store/ChangeAnnouncer.h"

#include <optional>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::change_announcer_test {

namespace {

/// An announcer, and an observer that keeps what is posted under one name.
template <typename Content>
struct Announcements : testing::Test {
    NotificationCenter center;
    ChangeAnnouncer announcer{center};
    std::vector<Content> posts;

    explicit Announcements(const NotificationName<Content>& name)
        : registration_(
              center.addObserver(name, {[this](const Content& content) { posts.push_back(content); }})) {}

  private:
    Registration registration_;
};

struct SamplingRateAnnouncements : Announcements<SMCSamplingRate> {
    SamplingRateAnnouncements() : Announcements(kelvinbarSamplingRateChanged) {}
};

struct MenuBarAnnouncements : Announcements<MenuBarReadingChange> {
    const MenuBarReadingChange warm{.title = " 48°", .toolTip = "CPU Proximity: 48 °C"};

    MenuBarAnnouncements() : Announcements(kelvinbarMenuBarReadingChanged) {}
};

struct DisplayModeAnnouncements : Announcements<DisplayModeChange> {
    DisplayModeAnnouncements() : Announcements(kelvinbarDisplayModeChanged) {}
};

struct ManualSizeAnnouncements : Announcements<ManualSizeChange> {
    ManualSizeAnnouncements() : Announcements(kelvinbarManualSizeChanged) {}
};

TEST_F(SamplingRateAnnouncements, EveryRateIsPosted) {
    announcer.samplingRateChanged(SMCSamplingRate::fast);
    announcer.samplingRateChanged(SMCSamplingRate::fast);
    announcer.samplingRateChanged(SMCSamplingRate::medium);
    EXPECT_EQ(posts, (std::vector{SMCSamplingRate::fast, SMCSamplingRate::fast, SMCSamplingRate::medium}));
}

TEST_F(MenuBarAnnouncements, AChangeIsPostedOnce) {
    announcer.menuBarReadingChanged(warm);
    announcer.menuBarReadingChanged(warm);
    EXPECT_EQ(posts, std::vector{warm});
}

TEST_F(MenuBarAnnouncements, EmptyTextsAreNoChangeAtFirst) {
    announcer.menuBarReadingChanged({.title = "", .toolTip = ""});
    EXPECT_EQ(posts.size(), 0U);
}

TEST_F(MenuBarAnnouncements, AbsentTextsAreNotEmptyOnes) {
    announcer.menuBarReadingChanged({.title = std::nullopt, .toolTip = std::nullopt});
    EXPECT_EQ(posts, std::vector{MenuBarReadingChange{}});
}

TEST_F(MenuBarAnnouncements, ADifferentTitleOrToolTipIsAChange) {
    announcer.menuBarReadingChanged(warm);
    MenuBarReadingChange next = warm;
    next.toolTip = "CPU Proximity: 48.1 °C";
    announcer.menuBarReadingChanged(next);
    next.title = " 49°";
    announcer.menuBarReadingChanged(next);
    EXPECT_EQ(posts.size(), 3U);
    EXPECT_EQ(posts.back(), next);
}

TEST_F(MenuBarAnnouncements, AFormerTextIsPostedAgain) {
    announcer.menuBarReadingChanged(warm);
    announcer.menuBarReadingChanged({.title = "", .toolTip = ""});
    announcer.menuBarReadingChanged(warm);
    EXPECT_EQ(posts.size(), 3U);
}

TEST_F(MenuBarAnnouncements, AnObserverThatAnnouncesTheSameChangeEndsThere) {
    const Registration again = center.addObserver(
        kelvinbarMenuBarReadingChanged,
        {[this](const MenuBarReadingChange& change) { announcer.menuBarReadingChanged(change); }});
    announcer.menuBarReadingChanged(warm);
    EXPECT_EQ(posts, std::vector{warm});
}

TEST_F(MenuBarAnnouncements, AnObserverMayAnnounceTheNextChange) {
    const MenuBarReadingChange next{.title = " 49°", .toolTip = "CPU Proximity: 49 °C"};
    const Registration another =
        center.addObserver(kelvinbarMenuBarReadingChanged,
                           {[&](const auto& /*change*/) { announcer.menuBarReadingChanged(next); }});
    announcer.menuBarReadingChanged(warm);
    EXPECT_EQ(posts, (std::vector{warm, next}));
    announcer.menuBarReadingChanged(next);
    EXPECT_EQ(posts.size(), 2U);
}

TEST_F(DisplayModeAnnouncements, TheFirstIsAlwaysPosted) {
    announcer.displayModeChanged({});
    EXPECT_EQ(posts, std::vector{DisplayModeChange{}});
}

TEST_F(DisplayModeAnnouncements, AModeAndACountArePostedOnce) {
    announcer.displayModeChanged({.mode = SMCWindowDisplayMode::dynamic, .visibleReadings = 3});
    announcer.displayModeChanged({.mode = SMCWindowDisplayMode::dynamic, .visibleReadings = 3});
    EXPECT_EQ(posts.size(), 1U);
    announcer.displayModeChanged({.mode = SMCWindowDisplayMode::dynamic, .visibleReadings = 4});
    announcer.displayModeChanged({.mode = SMCWindowDisplayMode::fixed, .visibleReadings = 4});
    EXPECT_EQ(posts.size(), 3U);
}

TEST_F(ManualSizeAnnouncements, AnUnchangedSizeIsPostedAgain) {
    announcer.manualSizeChanged({.width = 462, .height = 700});
    announcer.manualSizeChanged({.width = 462, .height = 700});
    EXPECT_EQ(posts, (std::vector{ManualSizeChange{462, 700}, ManualSizeChange{462, 700}}));
}

TEST_F(MenuBarAnnouncements, OtherAnnouncementsGoToTheirOwnObservers) {
    announcer.samplingRateChanged(SMCSamplingRate::fast);
    announcer.displayModeChanged({});
    announcer.manualSizeChanged({});
    EXPECT_EQ(posts.size(), 0U);
}

} // namespace
} // namespace kelvinbar::change_announcer_test
