#include "tests/macos-runtime/system/FakeCocoa.h"

#import "tests/macos-runtime/system/FakeAppKit.h"
#import "tests/macos-runtime/system/FakeFoundation.h"
#include "tests/macos-runtime/system/Runtime.h"

#import <CoreServices/CoreServices.h>
#include <array>

namespace kelvinbar::fakes {

namespace {

NSStatusBar* statusBar() { return madeObject([NSStatusBar class]); }

NSStatusItem* onlyItem() {
    const auto& items = [statusBar() items];
    if (items.size() != 1) objc::fail("there is not exactly one status item");
    return items.front();
}

std::optional<FakePicture> pictureOf(NSImage* image) {
    if (image == nil) return std::nullopt;
    return FakePicture{.name = image.name,
                       .isSystemSymbol = image.isSystemSymbol,
                       .size = {image.size.width, image.size.height},
                       .isTemplate = image.isTemplate,
                       .description = textOf(image.accessibilityDescription)};
}

std::optional<FakeTitle> titleOf(NSAttributedString* title) {
    if (title == nil) return std::nullopt;
    NSFont* const font = [[title attributes] valueFor:NSFontAttributeName];
    NSColor* const color = [[title attributes] valueFor:NSForegroundColorAttributeName];
    FakeNumber* const baseline = [[title attributes] valueFor:NSBaselineOffsetAttributeName];
    return FakeTitle{.text = [[title text] text],
                     .pointSize = font.pointSize,
                     .weight = font.weight,
                     .hasMonospacedDigits = font.hasMonospacedDigits,
                     .color = color.name,
                     .baselineOffset = [baseline number]};
}

NSEventMask maskOf(FakePress press) {
    switch (press) {
    case FakePress::left:
        return NSEventMaskLeftMouseDown;
    case FakePress::right:
        return NSEventMaskRightMouseDown;
    case FakePress::other:
        return NSEventMaskOtherMouseDown;
    }
}

NSEvent* eventOf(FakeClick click) {
    NSEvent* const event = [[NSEvent alloc] init];
    event.type = click == FakeClick::right ? NSEventTypeRightMouseUp : NSEventTypeLeftMouseUp;
    if (click == FakeClick::leftWithControl) event.modifierFlags = NSEventModifierFlagControl;
    return event;
}

/// Classes whose documentation demands the main thread, and the main run loop's.
constexpr std::array mainThreadClasses = {"NSAppleEventManager", "NSApplication", "NSEvent",  "NSMenu",
                                          "NSMenuItem",          "NSRunLoop",     "NSScreen", "NSStatusBar",
                                          "NSStatusItem",        "NSTimer",       "NSView",   "NSWindow"};

void addLeftovers(std::vector<std::string>& leftovers, const char* what, std::size_t count) {
    if (count > 0) leftovers.push_back(std::to_string(count) + " " + what);
}

} // namespace

FakeCocoa& FakeCocoa::shared() {
    static FakeCocoa one;
    return one;
}

void FakeCocoa::start() {
    *this = FakeCocoa();
    for (const char* each : mainThreadClasses) objc::restrictToThisThread(each);
}

std::vector<std::string> FakeCocoa::leftovers() const {
    std::vector<std::string> leftovers;
    @autoreleasepool {
        NSNotificationCenter* const center = madeObject([NSNotificationCenter class]);
        NSNotificationCenter* const distributed = madeObject([NSDistributedNotificationCenter class]);
        NSAppleEventManager* const events = madeObject([NSAppleEventManager class]);
        addLeftovers(leftovers, "status items", itemCount());
        addLeftovers(leftovers, "monitors", monitorCount());
        addLeftovers(leftovers, "activities", activityCount());
        addLeftovers(leftovers, "timers", timers().size());
        addLeftovers(leftovers, "saved graphics states", savedGraphicsStates);
        addLeftovers(leftovers, "observers", [center observerCount]);
        addLeftovers(leftovers, "observers of other programs", [distributed observerCount]);
        addLeftovers(leftovers, "handlers of events", [events hasHandler] ? 1 : 0);
    }
    return leftovers;
}

std::vector<std::string> FakeCocoa::end() {
    auto all = leftovers();
    fakeMonitors().installed.clear();
    releaseOnlyObjects();
    for (const std::string& each : objc::liveObjects()) all.push_back(each);
    objc::forgetReleasedObjects();
    return all;
}

std::size_t FakeCocoa::itemCount() const {
    @autoreleasepool {
        return statusBar() == nil ? 0 : [statusBar() items].size();
    }
}

FakeButton FakeCocoa::button() const {
    @autoreleasepool {
        NSStatusItem* const item = onlyItem();
        NSStatusBarButton* const button = item.button;
        return {.picture = pictureOf(button.image),
                .isPictureLeftOfTitle = button.imagePosition == NSImageLeft,
                .title = titleOf(button.attributedTitle),
                .toolTip = textOf(button.toolTip),
                .itemLength = [item length],
                .isHighlighted = button.isHighlighted};
    }
}

std::size_t FakeCocoa::monitorCount() const { return fakeMonitors().installed.size(); }

std::size_t FakeCocoa::activityCount() const {
    @autoreleasepool {
        NSProcessInfo* const process = madeObject([NSProcessInfo class]);
        return process == nil ? 0 : [process activities].size();
    }
}

std::vector<FakeTimer> FakeCocoa::timers() const {
    std::vector<FakeTimer> timers;
    @autoreleasepool {
        NSRunLoop* const loop = madeObject([NSRunLoop class]);
        if (loop == nil) return timers;
        for (NSTimer* each : [loop timers]) {
            timers.push_back({each.interval, each.tolerance, static_cast<bool>(each.repeats)});
        }
    }
    return timers;
}

void* FakeCocoa::windowView() const {
    @autoreleasepool {
        return (__bridge void*)onlyObject([FakeWindowView class]);
    }
}

FakeWindowState FakeCocoa::window() const {
    @autoreleasepool {
        NSWindow* const window = ((__bridge NSView*)windowView()).window;
        return {.collectionBehavior = window.collectionBehavior, .shadowUpdates = window.shadowUpdates};
    }
}

bool FakeCocoa::clickItem(FakeClick click) {
    void* target = nullptr; // not retained
    SEL action = nullptr;
    @autoreleasepool {
        NSStatusBarButton* const button = onlyItem().button;
        NSEvent* const event = eventOf(click);
        if ((button.actionMask & (NSEventMask{1} << event.type)) == 0) return false;
        ((NSApplication*)NSApplication.sharedApplication).event = event;
        target = (__bridge void*)button.target;
        action = button.action;
    }
    if (target == nullptr || action == nullptr) return false;
    @autoreleasepool { // the event loop's
        perform((__bridge id)target, action, nil);
    }
    return true;
}

void FakeCocoa::pressElsewhere(FakePress press) {
    @autoreleasepool {
        std::vector<void*> handlers; // none of which is retained
        for (const auto& each : fakeMonitors().installed) {
            if ((each.mask & maskOf(press)) != 0) handlers.push_back((__bridge void*)each.handler);
        }
        NSEvent* const event = [[NSEvent alloc] init];
        for (void* const handler : handlers) objc::callBlock(handler, (__bridge void*)event);
    }
}

void FakeCocoa::fireTimers() {
    @autoreleasepool {
        NSRunLoop* const loop = NSRunLoop.mainRunLoop;
        const auto timers = [loop timers]; // which may be invalidated during a call
        for (NSTimer* each : timers) {
            void* const block = (__bridge void*)each.block; // not retained
            if (block != nullptr) objc::callBlock(block, (__bridge void*)each);
        }
    }
}

void FakeCocoa::launch() {
    @autoreleasepool {
        [NSAppleEventManager.sharedAppleEventManager removeEventHandlerForEventClass:kCoreEventClass
                                                                          andEventID:kAEReopenApplication];
        [NSNotificationCenter.defaultCenter post:NSApplicationWillFinishLaunchingNotification];
    }
}

bool FakeCocoa::reopen() {
    @autoreleasepool {
        return [NSAppleEventManager.sharedAppleEventManager handle:kCoreEventClass
                                                             event:kAEReopenApplication];
    }
}

void FakeCocoa::receive(const std::string& name) {
    @autoreleasepool {
        [NSDistributedNotificationCenter.defaultCenter post:nsText(name)];
    }
}

} // namespace kelvinbar::fakes
