#include "desktop/linux/tray/PanelCorner.h"

#include "shell/PopoverPlacement.h"
#include "store/InMemoryUserDefaults.h"

#include <cstddef>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::panel_corner_test {

namespace {

constexpr auto key = "KelvinbarPanelCorner";

constexpr Rect screen{100, 50, 1000, 800};

Rect panelIn(PanelCorner corner) {
    return placedPopover(cornerPlace(corner, screen), {200, 300}, {screen, screen});
}

TEST(PanelCorner, IsTopRightUnlessChosen) {
    InMemoryUserDefaults defaults;
    EXPECT_EQ(loadPanelCorner(defaults), PanelCorner::topRight);
    defaults.setText(key, "middle");
    EXPECT_EQ(loadPanelCorner(defaults), PanelCorner::topRight);
    defaults.setNumber(key, 2);
    EXPECT_EQ(loadPanelCorner(defaults), PanelCorner::topRight);
}

TEST(PanelCorner, IsTheOneThatWasChosen) {
    InMemoryUserDefaults defaults;
    for (const PanelCorner corner : allPanelCorners) {
        storePanelCorner(defaults, corner);
        EXPECT_EQ(loadPanelCorner(defaults), corner);
    }
}

TEST(PanelCorner, IsStoredByItsName) {
    InMemoryUserDefaults defaults;
    storePanelCorner(defaults, PanelCorner::bottomLeft);
    EXPECT_EQ(defaults.text(key), "bottom-left");
}

TEST(PanelCornerEntries, AreOnePerCornerOfWhichOneIsMarked) {
    std::vector<PanelCorner> choices;
    const auto entries =
        panelCornerEntries(PanelCorner::bottomRight, [&](PanelCorner corner) { choices.push_back(corner); });
    ASSERT_EQ(entries.size(), 5U);
    EXPECT_TRUE(entries[0].text.isEmpty());
    EXPECT_EQ(entries[2].text, "Panel at Top Left");
    EXPECT_EQ(entries[2].isChecked, false);
    EXPECT_EQ(entries[3].text, "Panel at Bottom Right");
    EXPECT_EQ(entries[3].isChecked, true);
    for (std::size_t entry = 1; entry < entries.size(); ++entry) entries[entry].action(0);
    EXPECT_EQ(choices, std::vector(allPanelCorners.begin(), allPanelCorners.end()));
}

TEST(CornerPlace, PutsThePanelIntoTheCorner) {
    EXPECT_EQ(panelIn(PanelCorner::topRight), (Rect{900, 50, 200, 300}));
    EXPECT_EQ(panelIn(PanelCorner::topLeft), (Rect{100, 50, 200, 300}));
    EXPECT_EQ(panelIn(PanelCorner::bottomRight), (Rect{900, 550, 200, 300}));
    EXPECT_EQ(panelIn(PanelCorner::bottomLeft), (Rect{100, 550, 200, 300}));
}

} // namespace
} // namespace kelvinbar::panel_corner_test
