#include "desktop/macos/MainAppLoginItem.h"

#import <AppKit/AppKit.h>
#import <ServiceManagement/ServiceManagement.h>
#include <utility>

namespace kelvinbar {

namespace {

/// The page with the login items in the settings of macOS 11 and 12.
NSString* const loginItemsSettings =
    @"x-apple.systempreferences:com.apple.preferences.users?startupItemsPref";

} // namespace

MainAppLoginItem::MainAppLoginItem(std::function<void()> onRefusal) : onRefusal_(std::move(onRefusal)) {}

bool MainAppLoginItem::canRegister() const {
    if (@available(macOS 13.0, *)) return true;
    return false;
}

bool MainAppLoginItem::isRegistered() const {
    if (@available(macOS 13.0, *)) {
        static_assert(SMAppServiceStatusEnabled == 1);
        @autoreleasepool {
            return SMAppService.mainAppService.status == SMAppServiceStatusEnabled;
        }
    }
    return false;
}

bool MainAppLoginItem::registerItem() {
    if (@available(macOS 13.0, *)) {
        @autoreleasepool {
            if ([SMAppService.mainAppService registerAndReturnError:nil]) return true;
            onRefusal_();
        }
    }
    return false;
}

bool MainAppLoginItem::unregisterItem() {
    if (@available(macOS 13.0, *)) {
        @autoreleasepool {
            if ([SMAppService.mainAppService unregisterAndReturnError:nil]) return true;
            onRefusal_();
        }
    }
    return false;
}

void MainAppLoginItem::openLoginItemsSettings() {
    @autoreleasepool {
        NSURL* const address = [NSURL URLWithString:loginItemsSettings];
        if (address != nil) [NSWorkspace.sharedWorkspace openURL:address];
    }
}

void MainAppLoginItem::beep() { NSBeep(); }

} // namespace kelvinbar
