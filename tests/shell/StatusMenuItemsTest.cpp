#include "shell/StatusMenuItems.h"

#include <algorithm>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::status_menu_items_test {

namespace {

using testing::ElementsAre;

const PinnedReading cpu{"TC0P", "CPU Proximity", "49.8 °C", "49.80°"};
const PinnedReading fan{"F0Ac", "Fan", "1200 rpm", "1200rpm"};

std::vector<std::string> texts(const std::vector<PinnedReading>& pinned) {
    std::vector<std::string> texts;
    for (const StatusMenuItem& item : statusMenuItems(pinned)) texts.push_back(item.text);
    return texts;
}

const StatusMenuItem& itemWithText(const std::vector<StatusMenuItem>& items, const std::string& text) {
    return *std::ranges::find(items, text, &StatusMenuItem::text);
}

TEST(StatusMenuItems, AreThePinnedReadingsAndWhatCanBeDone) {
    EXPECT_THAT(texts({cpu, fan}), ElementsAre("CPU Proximity: 49.8 °C", "Fan: 1200 rpm", "",
                                               "Open Kelvinbar", "Refresh", "Copy", "", "About", "Quit"));
}

TEST(StatusMenuItems, BeginWithOpenWhereNothingIsPinned) {
    EXPECT_THAT(texts({}), ElementsAre("Open Kelvinbar", "Refresh", "Copy", "", "About", "Quit"));
}

TEST(StatusMenuItems, HaveDistinctIdentities) {
    std::set<std::string> identities;
    // A key that is called like a command is no reason to confuse them.
    const auto items = statusMenuItems({cpu, fan, {"quit", "Odd", "1", "1"}});
    for (const StatusMenuItem& item : items) identities.insert(item.identity);
    EXPECT_EQ(identities.size(), items.size());
}

TEST(StatusMenuItems, KeepTheirIdentitiesWhenTheValueOrTheOtherPinsChange) {
    const auto before = statusMenuItems({fan, cpu});
    PinnedReading warmer = cpu;
    warmer.value = "51 °C";
    const auto after = statusMenuItems({warmer});
    EXPECT_EQ(itemWithText(before, "CPU Proximity: 49.8 °C").identity,
              itemWithText(after, "CPU Proximity: 51 °C").identity);
    EXPECT_EQ(itemWithText(before, "Quit"), itemWithText(after, "Quit"));
}

TEST(StatusMenuItems, HaveACommandUnlessTheyAreSeparators) {
    for (const StatusMenuItem& item : statusMenuItems({cpu})) {
        EXPECT_EQ(item.command == StatusMenuCommand::none, item.text.empty()) << item.identity;
    }
}

TEST(StatusMenuItems, OpenThePanelForAReading) {
    EXPECT_EQ(statusMenuItems({cpu}).front().command, StatusMenuCommand::openPanel);
}

TEST(StatusMenuItems, ANameFromRightToLeftDoesNotReorderItsValue) {
    const auto items = statusMenuItems({{"TC0P", "מעבד 1", "48 °C", "48°"}});
    EXPECT_EQ(items.front().text, "\u2068מעבד 1\u2069: 48 °C");
}

} // namespace
} // namespace kelvinbar::status_menu_items_test
