#import "tests/macos-runtime/system/FakeAppKit.h"

#include "tests/macos-runtime/system/Runtime.h"

#import <CoreServices/CoreServices.h>
#include <algorithm>
#include <utility>

using kelvinbar::Rect;
using kelvinbar::fakes::FakeCocoa;
using kelvinbar::fakes::FakeMenu;
using kelvinbar::fakes::fakeMonitors;
using kelvinbar::fakes::FakeMonitors;
using kelvinbar::fakes::FakeProgram;
using kelvinbar::fakes::FakeScreen;
using kelvinbar::fakes::nsText;
using kelvinbar::fakes::onlyObject;
using kelvinbar::fakes::textOf;
using kelvinbar::objc::fail;

NSAttributedStringKey const NSFontAttributeName = @"font";
NSAttributedStringKey const NSForegroundColorAttributeName = @"foreground";
NSAttributedStringKey const NSBaselineOffsetAttributeName = @"baseline";
NSNotificationName const NSApplicationWillFinishLaunchingNotification = @"will finish launching";

void NSBeep() { ++FakeCocoa::shared().beeps; }

namespace {

FakeCocoa& cocoa() { return FakeCocoa::shared(); }

NSRect nsRect(const Rect& rect) { return NSMakeRect(rect.x, rect.y, rect.width, rect.height); }

/// Moves a rectangle by the origin of another.
NSRect moved(NSRect rect, NSPoint origin) {
    return NSMakeRect(rect.origin.x + origin.x, rect.origin.y + origin.y, rect.size.width, rect.size.height);
}

/// Where the button is in its window.
constexpr NSPoint buttonOrigin = {2, 1};

} // namespace

namespace kelvinbar::fakes {

FakeMonitors& fakeMonitors() {
    static FakeMonitors one;
    return one;
}

} // namespace kelvinbar::fakes

// Screens and windows

@implementation NSScreen {
    FakeScreen _screen;
}

+ (NSArray<NSScreen*>*)screens {
    FakeList* const list = [[FakeList alloc] init];
    for (const FakeScreen& each : cocoa().screens) [list add:[[NSScreen alloc] initWithScreen:each]];
    return list;
}

- (instancetype)initWithScreen:(const FakeScreen&)screen {
    _screen = screen;
    return self;
}

- (NSRect)frame {
    return nsRect(_screen.frame);
}

- (NSRect)visibleFrame {
    return nsRect(_screen.visibleFrame);
}

- (NSRect)auxiliaryTopLeftArea {
    if (cocoa().version < 12) fail("the areas beside the notch before macOS 12");
    return nsRect(_screen.leftOfNotch);
}

- (NSRect)auxiliaryTopRightArea {
    if (cocoa().version < 12) fail("the areas beside the notch before macOS 12");
    return nsRect(_screen.rightOfNotch);
}

@end

/// The window of the status item. FakeWindow is that of a view.
@implementation NSWindow

- (nullable NSScreen*)screen {
    const auto index = cocoa().itemScreen;
    return index ? [[NSScreen alloc] initWithScreen:cocoa().screens.at(*index)] : nil;
}

- (NSRect)convertRectToScreen:(NSRect)rect {
    return moved(rect, nsRect(*cocoa().itemWindow).origin);
}

- (void)invalidateShadow {
    ++_shadowUpdates;
}

@end

@implementation NSView

@dynamic bounds;

/// Views have coordinates of their own, which begin at (0, 0).
- (NSRect)bounds {
    const NSSize window = nsRect(*cocoa().itemWindow).size;
    return NSMakeRect(0, 0, window.width - 2 * buttonOrigin.x, window.height - 2 * buttonOrigin.y);
}

- (nullable NSWindow*)window {
    return cocoa().itemWindow ? onlyObject([NSWindow class]) : nil;
}

- (NSRect)convertRect:(NSRect)rect toView:(nullable NSView*)view {
    if (view != nil) fail("coordinates are converted to another view than the window's");
    return moved(rect, buttonOrigin);
}

@end

/// The window of a view that belongs to no status item.
@interface FakeWindow : NSWindow
@end

@implementation FakeWindow
@end

@implementation FakeWindowView

- (nullable NSWindow*)window {
    return onlyObject([FakeWindow class]);
}

@end

@implementation NSControl

- (instancetype)init {
    _actionMask = NSEventMaskLeftMouseUp;
    return self;
}

- (NSInteger)sendActionOn:(NSEventMask)mask {
    const NSEventMask former = _actionMask;
    _actionMask = mask;
    return static_cast<NSInteger>(former);
}

@end

@implementation NSButton

- (void)highlight:(BOOL)isHighlighted {
    _isHighlighted = isHighlighted;
}

@end

@implementation NSStatusBarButton
@end

// The status bar

@implementation NSStatusItem {
    CGFloat _length;
    NSStatusBarButton* _button;
}

- (instancetype)initWithLength:(CGFloat)length {
    _length = length;
    if (cocoa().givesButtons) _button = [[NSStatusBarButton alloc] init];
    return self;
}

- (CGFloat)length {
    return _length;
}

- (nullable NSStatusBarButton*)button {
    return _button;
}

@end

@implementation NSStatusBar {
    std::vector<NSStatusItem*> _items;
}

+ (NSStatusBar*)systemStatusBar {
    return onlyObject([NSStatusBar class]);
}

- (NSStatusItem*)statusItemWithLength:(CGFloat)length {
    _items.push_back([[NSStatusItem alloc] initWithLength:length]);
    return _items.back();
}

- (void)removeStatusItem:(NSStatusItem*)item {
    if (std::erase(_items, item) != 1) fail("a status item is removed that is not in the bar");
}

- (const std::vector<NSStatusItem*>&)items {
    return _items;
}

@end

// Menus

@implementation NSMenuItem

+ (NSMenuItem*)separatorItem {
    NSMenuItem* const item = [[NSMenuItem alloc] init];
    item.isSeparator = true;
    return item;
}

- (instancetype)initWithTitle:(NSString*)title
                       action:(nullable SEL)action
                keyEquivalent:(NSString*)keyEquivalent {
    if (title == nil || keyEquivalent == nil) fail("an entry of a menu without title or key equivalent");
    _title = textOf(title);
    _action = action;
    return self;
}

- (void)choose {
    NSObject* const target = self.target;
    if (target == nil || ![target respondsToSelector:_action]) fail("an entry of a menu without a target");
    kelvinbar::fakes::perform(target, _action, self);
}

@end

@implementation NSMenu {
    std::vector<NSMenuItem*> _items;
}

- (void)addItem:(NSMenuItem*)item {
    _items.push_back(item);
}

/// Returns when the user has chosen an entry or dismissed the menu.
- (BOOL)popUpMenuPositioningItem:(nullable NSMenuItem*)__unused item
                      atLocation:(NSPoint)location
                          inView:(nullable NSView*)view {
    if (view != nil) fail("a menu at a place in a view");
    FakeMenu shown{.entries = {},
                   .place = {location.x, location.y},
                   .isItemHighlighted = cocoa().button().isHighlighted};
    for (NSMenuItem* each : _items) shown.entries.push_back(each.title);
    cocoa().menus.push_back(shown);
    const auto choice = cocoa().menuChoice;
    const auto chosen = std::find_if(_items.begin(), _items.end(), [&](NSMenuItem* each) {
        return !each.isSeparator && each.title == choice;
    });
    if (chosen == _items.end()) return NO;
    [*chosen choose];
    return YES;
}

@end

// The application

@implementation NSApplication

+ (NSApplication*)sharedApplication {
    return onlyObject([NSApplication class]);
}

- (nullable NSEvent*)currentEvent {
    return _event;
}

- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy {
    cocoa().activationPolicy = static_cast<int>(policy);
    return YES;
}

/// Windows of a hidden program would not appear.
- (void)activateIgnoringOtherApps:(BOOL)ignoresOthers {
    if (ignoresOthers && !cocoa().isHidden) ++cocoa().activations;
}

- (BOOL)isHidden {
    return cocoa().isHidden;
}

- (void)hide:(nullable id)__unused sender {
    ++cocoa().hidings;
    cocoa().isHidden = true;
}

- (void)unhideWithoutActivation {
    cocoa().isHidden = false;
}

@end

@implementation NSRunningApplication {
    FakeProgram _program;
}

+ (NSRunningApplication*)currentApplication {
    return [[NSRunningApplication alloc] initWithProgram:cocoa().program];
}

+ (NSArray<NSRunningApplication*>*)runningApplicationsWithBundleIdentifier:(NSString*)identifier {
    if (identifier == nil) fail("programs without an identifier are asked for");
    FakeList* const list = [[FakeList alloc] init];
    for (const FakeProgram& each : cocoa().programs) {
        if (each.bundleIdentifier == textOf(identifier)) {
            [list add:[[NSRunningApplication alloc] initWithProgram:each]];
        }
    }
    return list;
}

- (instancetype)initWithProgram:(const FakeProgram&)program {
    _program = program;
    return self;
}

- (nullable NSString*)bundleIdentifier {
    return _program.bundleIdentifier ? nsText(*_program.bundleIdentifier) : nil;
}

- (nullable NSDate*)launchDate {
    return _program.launch ? [[FakeDate alloc] initWithSeconds:*_program.launch] : nil;
}

- (pid_t)processIdentifier {
    return _program.identifier;
}

@end

@implementation NSWorkspace

+ (NSWorkspace*)sharedWorkspace {
    return onlyObject([NSWorkspace class]);
}

- (BOOL)accessibilityDisplayShouldReduceMotion {
    return cocoa().reducesMotion;
}

- (BOOL)accessibilityDisplayShouldIncreaseContrast {
    return cocoa().increasesContrast;
}

- (BOOL)openURL:(NSURL*)address {
    if (address == nil) fail("no address is opened");
    cocoa().openedAddresses.push_back(textOf([address text]));
    return YES;
}

@end

@implementation NSEvent

+ (NSPoint)mouseLocation {
    return {cocoa().mousePlace.x, cocoa().mousePlace.y};
}

+ (nullable id)addGlobalMonitorForEventsMatchingMask:(NSEventMask)mask handler:(void (^)(NSEvent*))block {
    if (!cocoa().allowsMonitors) return nil;
    NSObject* const token = [[NSObject alloc] init];
    fakeMonitors().installed.push_back({token, mask, block});
    return token;
}

+ (void)removeMonitor:(id)monitor {
    const auto removed = std::erase_if(
        fakeMonitors().installed, [&](const FakeMonitors::Monitor& each) { return each.token == monitor; });
    if (removed != 1) fail("a monitor is removed that is not installed");
}

@end
