#include "desktop/macos/CocoaWindow.h"

#import <AppKit/AppKit.h>

namespace kelvinbar {

namespace {

NSWindow* windowOf(void* view) { return ((__bridge NSView*)view).window; }

} // namespace

void followActiveSpace(void* view) {
    @autoreleasepool {
        windowOf(view).collectionBehavior = NSWindowCollectionBehaviorMoveToActiveSpace |
                                            NSWindowCollectionBehaviorFullScreenAuxiliary |
                                            NSWindowCollectionBehaviorTransient;
    }
}

void updateShadow(void* view) {
    @autoreleasepool {
        [windowOf(view) invalidateShadow];
    }
}

} // namespace kelvinbar
