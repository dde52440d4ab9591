// The status item's menu: CocoaStatusBar shows what ItemMenu's requests say.
#include "desktop/macos/CocoaStatusBar.h"
#include "tests/macos-runtime/CocoaTest.h"

#include <memory>
#include <string>
#include <vector>

namespace kelvinbar::cocoa_menu_test {

namespace {

using fakes::FakeClick;
using testing::ElementsAre;
using testing::IsEmpty;

class CocoaMenuTest : public CocoaTest {
  protected:
    CocoaMenuTest() {
        cocoa.screens = {{.frame = {0, 0, 1440, 900}, .visibleFrame = {0, 70, 1440, 805}}};
        cocoa.itemWindow = Rect{1200, 876, 64, 24};
        cocoa.itemScreen = 0;
        item->button()->setAction([] {});
    }

    void TearDown() override {
        item.reset();
        CocoaTest::TearDown();
    }

    void openMenu() {
        bar.popUpMenu(
            statusMenuItems({{.key = "TC0P", .name = "CPU", .value = "52 °C", .compactValue = "52°"}}),
            [this](StatusMenuCommand command) { chosen.push_back(command); });
    }

    std::vector<StatusMenuCommand> chosen;
    CocoaStatusBar bar{[this] { openMenu(); }};
    std::unique_ptr<StatusItem> item = bar.makeItem();
};

TEST_F(CocoaMenuTest, AMenuShowsTheEntriesInTheirOrder) {
    openMenu();
    ASSERT_EQ(cocoa.menus.size(), 1U);
    std::vector<std::string> texts;
    for (const StatusMenuItem& each :
         statusMenuItems({{.key = "TC0P", .name = "CPU", .value = "52 °C", .compactValue = "52°"}})) {
        texts.push_back(each.text);
    }
    EXPECT_EQ(cocoa.menus[0].entries, texts);
}

TEST_F(CocoaMenuTest, AMenuHangsFromTheLeftEndOfTheItem) {
    openMenu();
    ASSERT_EQ(cocoa.menus.size(), 1U);
    EXPECT_EQ(cocoa.menus[0].place, (Point{1202, 877})); // the button's bottom left corner
}

TEST_F(CocoaMenuTest, ARightClickAndAControlClickOpenOneMenuEach) {
    cocoa.clickItem(FakeClick::right);
    EXPECT_EQ(cocoa.menus.size(), 1U);
    cocoa.clickItem(FakeClick::leftWithControl);
    EXPECT_EQ(cocoa.menus.size(), 2U);
    cocoa.clickItem();
    EXPECT_EQ(cocoa.menus.size(), 2U);
}

TEST_F(CocoaMenuTest, TheChosenEntryIsReportedOnce) {
    cocoa.menuChoice = "Refresh";
    openMenu();
    EXPECT_THAT(chosen, ElementsAre(StatusMenuCommand::refresh));
}

TEST_F(CocoaMenuTest, ADismissedMenuReportsNothing) {
    openMenu();
    EXPECT_THAT(chosen, IsEmpty());
}

TEST_F(CocoaMenuTest, TheItemIsHighlightedWhileItsMenuIsOpen) {
    openMenu();
    ASSERT_EQ(cocoa.menus.size(), 1U);
    EXPECT_TRUE(cocoa.menus[0].isItemHighlighted);
    EXPECT_FALSE(cocoa.button().isHighlighted);
}

TEST_F(CocoaMenuTest, TheItemOfAnOpenPanelStaysHighlightedAfterItsMenu) {
    bar.setItemHighlighted(true);
    openMenu();
    EXPECT_TRUE(cocoa.button().isHighlighted);
}

TEST_F(CocoaMenuTest, WithoutAnItemThereIsNoMenu) {
    item.reset();
    openMenu();
    EXPECT_THAT(cocoa.menus, IsEmpty());
}

} // namespace
} // namespace kelvinbar::cocoa_menu_test
