#include "desktop/macos/CocoaStatusBar.h"

#include "desktop/macos/CocoaApplication.h"
#include "tests/macos-runtime/CocoaTest.h"

#include <memory>
#include <string>
#include <vector>

namespace kelvinbar::cocoa_status_bar_test {

namespace {

using fakes::FakeClick;
using fakes::FakePicture;
using fakes::FakePress;
using fakes::FakeTitle;
using testing::ElementsAre;
using testing::Optional;

class CocoaStatusBarTest : public CocoaTest {
  protected:
    CocoaStatusBarTest() {
        cocoa.symbols = {{"thermometer.medium", {20, 16}}};
        cocoa.pictures = {{"MenuBarIcon", {40, 40}}, {"fan.fill.png", {24, 24}}, {"fan", {24, 24}}};
        cocoa.screens = {{.frame = {0, 0, 1440, 900}, .visibleFrame = {0, 70, 1440, 805}},
                         {.frame = {1440, 100, 1000, 700}, .visibleFrame = {1440, 100, 1000, 675}}};
        cocoa.itemWindow = Rect{1200, 876, 64, 24};
        cocoa.itemScreen = 0;
    }

    static StatusImage imageNamed(const std::string& name) {
        StatusImage image;
        image.name = name;
        return image;
    }

    static StatusImage symbolNamed(const std::string& name, const std::string& description) {
        StatusImage image = imageNamed(name);
        image.source = StatusImage::Source::systemSymbol;
        image.accessibilityDescription = description;
        return image;
    }

    FakePicture pictureFor(const StatusImage& image) {
        const auto item = bar.makeItem();
        item->button()->setImageLeftOfTitle(image);
        return cocoa.button().picture.value_or(FakePicture{});
    }

    FakeTitle titleFor(const StatusTitle& title) {
        const auto item = bar.makeItem();
        item->button()->setTitle(title);
        return cocoa.button().title.value_or(FakeTitle{});
    }

    int secondaryClicks = 0;
    CocoaStatusBar bar{[this] { ++secondaryClicks; }};
};

TEST_F(CocoaStatusBarTest, AnItemIsInTheBarWhileItLives) {
    auto item = bar.makeItem();
    EXPECT_EQ(cocoa.itemCount(), 1U);
    item.reset();
    EXPECT_EQ(cocoa.itemCount(), 0U);
}

TEST_F(CocoaStatusBarTest, AnItemIsAsWideAsItsContent) {
    const auto item = bar.makeItem();
    EXPECT_EQ(cocoa.button().itemLength, -1); // the number with that meaning
}

TEST_F(CocoaStatusBarTest, AnItemWithoutButtonHasNone) {
    cocoa.givesButtons = false;
    EXPECT_EQ(bar.makeItem()->button(), nullptr);
}

TEST_F(CocoaStatusBarTest, ATitleHasItsTextFontColourAndBaseline) {
    const FakeTitle title = titleFor({.text = "52 °C", .style = {}});
    EXPECT_EQ(title, (FakeTitle{.text = "52 °C",
                                .pointSize = 10.5,
                                .weight = fakes::fakeSemiboldWeight,
                                .hasMonospacedDigits = true,
                                .color = "label",
                                .baselineOffset = -0.5}));
}

TEST_F(CocoaStatusBarTest, ATitleCanHaveARegularFontWithProportionalDigits) {
    const FakeTitle title = titleFor(
        {.text = "…",
         .style = {.pointSize = 12, .isSemibold = false, .hasMonospacedDigits = false, .baselineOffset = 0}});
    EXPECT_EQ(title.weight, fakes::fakeRegularWeight);
    EXPECT_FALSE(title.hasMonospacedDigits);
    EXPECT_EQ(title.pointSize, 12);
    EXPECT_EQ(title.baselineOffset, 0);
}

TEST_F(CocoaStatusBarTest, ATitleReplacesTheFormerOne) {
    const auto item = bar.makeItem();
    for (const std::string text : {"51 °C", "52 °C"}) {
        item->button()->setTitle({.text = text, .style = {}});
        EXPECT_EQ(cocoa.button().title.value_or(FakeTitle{}).text, text);
    }
}

TEST_F(CocoaStatusBarTest, ATitleThatIsNotUTF8IsEmpty) {
    EXPECT_EQ(titleFor({.text = "52 \xB0"
                                "C",
                        .style = {}})
                  .text,
              "");
}

TEST_F(CocoaStatusBarTest, AToolTipReachesTheButton) {
    const auto item = bar.makeItem();
    item->button()->setToolTip("CPU: 52 °C");
    EXPECT_EQ(cocoa.button().toolTip, "CPU: 52 °C");
}

TEST_F(CocoaStatusBarTest, AnImageOfTheProgramIsLeftOfTheTitleInItsSize) {
    const auto item = bar.makeItem();
    StatusImage image = imageNamed("MenuBarIcon");
    image.size = Size{18, 18};
    item->button()->setImageLeftOfTitle(image);
    EXPECT_TRUE(cocoa.button().isPictureLeftOfTitle);
    EXPECT_EQ(cocoa.button().picture.value_or(FakePicture{}).name, "MenuBarIcon");
    EXPECT_EQ(cocoa.button().picture.value_or(FakePicture{}).size, (Size{18, 18}));
}

TEST_F(CocoaStatusBarTest, AnImageWithoutSizeKeepsItsOwn) {
    EXPECT_EQ(pictureFor(imageNamed("MenuBarIcon")).size, (Size{40, 40}));
}

TEST_F(CocoaStatusBarTest, OnlyATemplateIsDrawnInTheColourOfTheBar) {
    StatusImage image = imageNamed("fan");
    EXPECT_FALSE(pictureFor(image).isTemplate);
    image.isTemplate = true;
    EXPECT_TRUE(pictureFor(image).isTemplate);
}

TEST_F(CocoaStatusBarTest, ASymbolIsTheSystemsWithItsDescription) {
    const FakePicture picture = pictureFor(symbolNamed("thermometer.medium", "Kelvinbar"));
    EXPECT_EQ(picture.name, "thermometer.medium");
    EXPECT_TRUE(picture.isSystemSymbol);
    EXPECT_EQ(picture.description, "Kelvinbar");
}

TEST_F(CocoaStatusBarTest, ASymbolThatTheSystemLacksIsTheProgramsPicture) {
    const FakePicture picture = pictureFor(symbolNamed("fan.fill", "Fan"));
    EXPECT_EQ(picture.name, "fan.fill.png");
    EXPECT_FALSE(picture.isSystemSymbol);
    EXPECT_EQ(picture.description, "Fan");
}

TEST_F(CocoaStatusBarTest, WithoutAnyImageTheButtonHasNone) {
    const auto item = bar.makeItem();
    item->button()->setImageLeftOfTitle(imageNamed("MenuBarIcon"));
    item->button()->setImageLeftOfTitle(symbolNamed("nothing", ""));
    EXPECT_EQ(cocoa.button().picture, std::nullopt);
}

TEST_F(CocoaStatusBarTest, AnImageOfTheProgramIsKnownByItsName) {
    EXPECT_TRUE(bar.hasImageResource("MenuBarIcon"));
    EXPECT_FALSE(bar.hasImageResource("nothing"));
}

TEST_F(CocoaStatusBarTest, AClickIsReportedOnce) {
    const auto item = bar.makeItem();
    int clicks = 0;
    item->button()->setAction([&] { ++clicks; });
    EXPECT_TRUE(cocoa.clickItem());
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(secondaryClicks, 0);
}

TEST_F(CocoaStatusBarTest, ARightClickIsReportedAsASecondaryOne) {
    const auto item = bar.makeItem();
    int clicks = 0;
    item->button()->setAction([&] { ++clicks; });
    EXPECT_TRUE(cocoa.clickItem(FakeClick::right));
    EXPECT_EQ(secondaryClicks, 1);
    EXPECT_EQ(clicks, 0);
}

TEST_F(CocoaStatusBarTest, AControlClickIsReportedAsASecondaryOne) {
    const auto item = bar.makeItem();
    int clicks = 0;
    item->button()->setAction([&] { ++clicks; });
    EXPECT_TRUE(cocoa.clickItem(FakeClick::leftWithControl));
    EXPECT_EQ(secondaryClicks, 1);
    EXPECT_EQ(clicks, 0);
}

TEST_F(CocoaStatusBarTest, AnActionReplacesTheFormerOne) {
    const auto item = bar.makeItem();
    int former = 0;
    int latter = 0;
    item->button()->setAction([&] { ++former; });
    item->button()->setAction([&] { ++latter; });
    cocoa.clickItem();
    EXPECT_EQ(former, 0);
    EXPECT_EQ(latter, 1);
}

TEST_F(CocoaStatusBarTest, AnItemWithoutActionIgnoresClicks) {
    const auto item = bar.makeItem();
    EXPECT_FALSE(cocoa.clickItem());
    item->button()->setAction(nullptr);
    EXPECT_TRUE(cocoa.clickItem());
}

TEST_F(CocoaStatusBarTest, TheActionsStateEndsWithTheItem) {
    const auto state = std::make_shared<int>();
    auto item = bar.makeItem();
    item->button()->setAction([state] {});
    item.reset();
    EXPECT_EQ(state.use_count(), 1);
}

TEST_F(CocoaStatusBarTest, TheFrameIsThatOfTheButtonFromTheTopOfTheMainScreen) {
    const auto item = bar.makeItem();
    // The button is 2 points from the left of its window and 1 from the bottom; y grows downwards from 900.
    EXPECT_THAT(item->button()->frameOnScreen(), Optional(Rect{1202, 1, 60, 22}));
}

TEST_F(CocoaStatusBarTest, TheVisibleFrameIsThatOfTheItemsScreen) {
    const auto item = bar.makeItem();
    EXPECT_THAT(item->button()->visibleFrameOfScreen(), Optional(Rect{0, 25, 1440, 805}));
    cocoa.itemScreen = 1;
    EXPECT_THAT(item->button()->visibleFrameOfScreen(), Optional(Rect{1440, 125, 1000, 675}));
}

TEST_F(CocoaStatusBarTest, AnItemWithoutWindowHasNoFrame) {
    cocoa.itemWindow = std::nullopt;
    const auto item = bar.makeItem();
    EXPECT_EQ(item->button()->frameOnScreen(), std::nullopt);
    EXPECT_EQ(item->button()->visibleFrameOfScreen(), std::nullopt);
}

TEST_F(CocoaStatusBarTest, AnItemOnNoScreenHasNoVisibleFrame) {
    cocoa.itemScreen = std::nullopt;
    const auto item = bar.makeItem();
    EXPECT_EQ(item->button()->visibleFrameOfScreen(), std::nullopt);
}

TEST_F(CocoaStatusBarTest, WithoutScreensThereIsNoFrame) {
    cocoa.screens.clear();
    cocoa.itemScreen = std::nullopt;
    const auto item = bar.makeItem();
    EXPECT_EQ(item->button()->frameOnScreen(), std::nullopt);
}

TEST_F(CocoaStatusBarTest, AnItemThatWaitsOutsideTheBarHasNoFrame) {
    cocoa.itemWindow = Rect{1200, -40, 64, 24};
    const auto item = bar.makeItem();
    EXPECT_EQ(item->button()->frameOnScreen(), std::nullopt);
    EXPECT_EQ(bar.itemSight(), ItemSight::notInBar);
}

TEST_F(CocoaStatusBarTest, AnItemInTheBarIsSeenAsLongAsItLives) {
    EXPECT_EQ(bar.itemSight(), ItemSight::notInBar);
    auto item = bar.makeItem();
    EXPECT_EQ(bar.itemSight(), ItemSight::inBar);
    item.reset();
    EXPECT_EQ(bar.itemSight(), ItemSight::notInBar);
}

TEST_F(CocoaStatusBarTest, AnItemMayLieBehindTheNotch) {
    cocoa.screens[0].leftOfNotch = {0, 875, 1150, 25};
    cocoa.screens[0].rightOfNotch = {1300, 875, 140, 25};
    const auto item = bar.makeItem();
    EXPECT_EQ(bar.itemSight(), ItemSight::behindNotch);
    cocoa.version = 11;
    EXPECT_EQ(bar.itemSight(), ItemSight::inBar);
}

TEST_F(CocoaStatusBarTest, APressOnTheItemIsKnownByItsPlace) {
    EXPECT_FALSE(bar.isOnItem({1230, 10}));
    const auto item = bar.makeItem();
    EXPECT_TRUE(bar.isOnItem({1230, 10}));
    EXPECT_FALSE(bar.isOnItem({1190, 10}));
}

TEST_F(CocoaStatusBarTest, APressThatTheSystemReportsAsElsewhereIsKnownToBeOnTheItem) {
    const auto item = bar.makeItem();
    std::vector<bool> areOnItem;
    const auto watch = watchPressesInOtherPrograms(
        MouseButtons::all, [&](Point place) { areOnItem.push_back(bar.isOnItem(place)); });
    for (const Point place : {Point{1230, 899}, Point{1230, 100}}) {
        cocoa.mousePlace = place;
        cocoa.pressElsewhere(FakePress::left);
    }
    EXPECT_THAT(areOnItem, ElementsAre(true, false));
}

TEST_F(CocoaStatusBarTest, AnItemIsHighlightedOnRequest) {
    bar.setItemHighlighted(true); // without an item, nothing happens
    const auto item = bar.makeItem();
    EXPECT_FALSE(cocoa.button().isHighlighted);
    bar.setItemHighlighted(true);
    EXPECT_TRUE(cocoa.button().isHighlighted);
    bar.setItemHighlighted(false);
    EXPECT_FALSE(cocoa.button().isHighlighted);
}

} // namespace
} // namespace kelvinbar::cocoa_status_bar_test
