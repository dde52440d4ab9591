#include "desktop/macos/CocoaWindow.h"

#include "tests/macos-runtime/CocoaTest.h"

namespace kelvinbar::cocoa_window_test {

namespace {

class CocoaWindowTest : public CocoaTest {};

TEST_F(CocoaWindowTest, AWindowMovesToTheActiveSpaceOverFullScreenWindowsForAWhile) {
    followActiveSpace(cocoa.windowView());
    EXPECT_EQ(cocoa.window().collectionBehavior, (1UL << 1) | (1UL << 3) | (1UL << 8)); // with these meanings
    EXPECT_EQ(cocoa.window().shadowUpdates, 0);
}

TEST_F(CocoaWindowTest, TheShadowIsComputedAnewForEveryUpdate) {
    updateShadow(cocoa.windowView());
    EXPECT_EQ(cocoa.window().shadowUpdates, 1);
    updateShadow(cocoa.windowView());
    EXPECT_EQ(cocoa.window().shadowUpdates, 2);
    EXPECT_EQ(cocoa.window().collectionBehavior, 0U);
}

} // namespace
} // namespace kelvinbar::cocoa_window_test
