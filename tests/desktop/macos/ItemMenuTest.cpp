#include "desktop/macos/ItemMenu.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::item_menu_test {

namespace {

class ItemMenuTest : public testing::Test {
  protected:
    ItemMenuTest() {
        handlers.pinnedReadings = [] {
            return std::vector{PinnedReading{"TC0P", "CPU Proximity", "40 °C", "40°"}};
        };
        handlers.openPanel = [this] { called.emplace_back("open"); };
        handlers.refresh = [this] { called.emplace_back("refresh"); };
        handlers.copy = [this] { called.emplace_back("copy"); };
        handlers.openAbout = [this] { called.emplace_back("about"); };
        handlers.quit = [this] { called.emplace_back("quit"); };
    }

    /// Chooses the entry with this text in the menu that was opened last.
    void choose(const std::string& text) const {
        for (const StatusMenuItem& item : menus.back()) {
            if (item.text == text) return chosen(item.command);
        }
        FAIL() << text;
    }

    DesktopHandlers handlers;
    std::vector<std::string> called;
    std::vector<std::vector<StatusMenuItem>> menus;
    std::function<void(StatusMenuCommand)> chosen;
    std::function<void()> whileOpen;
    std::function<void(Point)> press; ///< a secondary one; empty if nobody listens
    std::unique_ptr<ItemMenu> menu = std::make_unique<ItemMenu>(
        ItemMenu::Requests{.isOnItem = [](Point place) { return place.x > 1000; },
                           .watchSecondaryPresses =
                               [this](std::function<void(Point)> onPress) {
                                   press = std::move(onPress);
                                   return std::shared_ptr<void>(&press, [this](void*) { press = nullptr; });
                               },
                           .popUp =
                               [this](const std::vector<StatusMenuItem>& items, auto onChosen) {
                                   menus.push_back(items);
                                   chosen = std::move(onChosen);
                                   if (whileOpen) whileOpen();
                               }},
        handlers);
};

TEST_F(ItemMenuTest, ASecondaryClickThatTheButtonReportsOpensTheMenu) {
    menu->open();
    ASSERT_EQ(menus.size(), 1U);
    EXPECT_EQ(menus.back(), statusMenuItems(handlers.pinnedReadings()));
}

TEST_F(ItemMenuTest, ASecondaryPressOnTheItemThatComesAsAPressElsewhereOpensTheMenu) {
    press({1100, 10});
    EXPECT_EQ(menus.size(), 1U);
}

TEST_F(ItemMenuTest, ASecondaryPressElsewhereOpensNothing) {
    press({10, 10});
    EXPECT_EQ(menus.size(), 0U);
}

TEST_F(ItemMenuTest, AClickThatComesBothWaysOpensOneMenu) {
    whileOpen = [this] {
        whileOpen = nullptr;
        menu->open();
        press({1100, 10});
    };
    press({1100, 10});
    EXPECT_EQ(menus.size(), 1U);
    menu->open();
    EXPECT_EQ(menus.size(), 2U);
}

TEST_F(ItemMenuTest, EveryEntryDoesWhatItSays) {
    menu->open();
    for (const char* text : {"CPU Proximity: 40 °C", "Open Kelvinbar", "Refresh", "Copy", "About", "Quit"}) {
        choose(text);
    }
    chosen(StatusMenuCommand::none);
    EXPECT_EQ(called, (std::vector<std::string>{"open", "open", "refresh", "copy", "about", "quit"}));
}

TEST_F(ItemMenuTest, ThereIsNoMenuBeforeAndAfterTheProgramRuns) {
    handlers = {};
    press({1100, 10});
    menu->open();
    EXPECT_EQ(menus.size(), 0U);
}

TEST_F(ItemMenuTest, AnEntryThatIsChosenOnceTheHandlersHaveGoneDoesNothing) {
    menu->open();
    handlers = {};
    chosen(StatusMenuCommand::quit);
    EXPECT_EQ(called.size(), 0U);
}

TEST_F(ItemMenuTest, PressesAreNoLongerWatchedWithoutTheMenu) {
    EXPECT_TRUE(press);
    menu = nullptr;
    EXPECT_FALSE(press);
}

} // namespace
} // namespace kelvinbar::item_menu_test
