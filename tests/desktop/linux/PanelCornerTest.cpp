#include "desktop/linux/PanelCorner.h"

#include "shell/PopoverPlacement.h"
#include "store/InMemoryUserDefaults.h"

#include <gtest/gtest.h>

namespace kelvinbar {

namespace {

constexpr auto key = "KelvinbarPanelCorner";

constexpr Rect screen{100, 50, 1000, 800};

Rect panelIn(PanelCorner corner) {
    return placedPopover(cornerPlace(corner, screen), {200, 300}, {screen, screen});
}

} // namespace

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

TEST(CornerPlace, PutsThePanelIntoTheCorner) {
    EXPECT_EQ(panelIn(PanelCorner::topRight), (Rect{900, 50, 200, 300}));
    EXPECT_EQ(panelIn(PanelCorner::topLeft), (Rect{100, 50, 200, 300}));
    EXPECT_EQ(panelIn(PanelCorner::bottomRight), (Rect{900, 550, 200, 300}));
    EXPECT_EQ(panelIn(PanelCorner::bottomLeft), (Rect{100, 550, 200, 300}));
}

} // namespace kelvinbar
