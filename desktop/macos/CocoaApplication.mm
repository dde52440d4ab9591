#include "desktop/macos/CocoaApplication.h"

#include "desktop/macos/CocoaPlace.h"

#import <AppKit/AppKit.h>
#import <CoreServices/CoreServices.h>
#include <utility>

/// AppKit calls methods of Objective-C objects only.
@interface KelvinbarReopenTarget : NSObject
@property(nonatomic) std::function<void()> onReopen;
- (void)applicationWillFinishLaunching:(NSNotification*)notification;
- (void)handleReopenEvent:(NSAppleEventDescriptor*)event withReplyEvent:(NSAppleEventDescriptor*)reply;
- (void)handleHandOver:(NSNotification*)notification;
@end

@implementation KelvinbarReopenTarget

/// Installs the handler. Earlier, the application would replace it by its own.
- (void)applicationWillFinishLaunching:(NSNotification*)__unused notification {
    [NSAppleEventManager.sharedAppleEventManager setEventHandler:self
                                                     andSelector:@selector(handleReopenEvent:withReplyEvent:)
                                                   forEventClass:kCoreEventClass
                                                      andEventID:kAEReopenApplication];
}

- (void)handleReopenEvent:(NSAppleEventDescriptor*)__unused event
           withReplyEvent:(NSAppleEventDescriptor*)__unused reply {
    if (_onReopen) _onReopen();
}

- (void)handleHandOver:(NSNotification*)__unused notification {
    if (_onReopen) _onReopen();
}

@end

namespace kelvinbar {

namespace {

bool isOlder(NSRunningApplication* candidate, NSRunningApplication* reference) {
    NSDate* const start = candidate.launchDate; // nil for some programs
    NSDate* const referenceStart = reference.launchDate;
    if (start == nil || referenceStart == nil || [start isEqualToDate:referenceStart]) {
        return candidate.processIdentifier < reference.processIdentifier;
    }
    return [start compare:referenceStart] == NSOrderedAscending;
}

/// If several instances start at the same time, only the oldest continues.
bool hasOlderInstance(NSRunningApplication* application) {
    NSString* const identifier = application.bundleIdentifier;
    if (identifier == nil) return false;
    for (NSRunningApplication* other in
         [NSRunningApplication runningApplicationsWithBundleIdentifier:identifier]) {
        if (isOlder(other, application)) return true;
    }
    return false;
}

/// The notification that an instance posts when it hands over. Nil outside a bundle.
NSString* handOverName() {
    return [NSRunningApplication.currentApplication.bundleIdentifier stringByAppendingString:@".open"];
}

NSEventMask pressMask(MouseButtons buttons) {
    if (buttons == MouseButtons::secondary) return NSEventMaskRightMouseDown;
    return NSEventMaskLeftMouseDown | NSEventMaskRightMouseDown | NSEventMaskOtherMouseDown;
}

/// Keeps the object, and passes it to `end` at last.
std::shared_ptr<void> keptUntil(void (*end)(id), id object) {
    if (object == nil) return nullptr;
    return {const_cast<void*>(CFBridgingRetain(object)), [end](void* kept) {
                @autoreleasepool {
                    end(CFBridgingRelease(kept));
                }
            }};
}

} // namespace

void becomeAccessoryApplication() {
    @autoreleasepool {
        [NSApplication.sharedApplication setActivationPolicy:NSApplicationActivationPolicyAccessory];
    }
}

void activateApplication() {
    @autoreleasepool {
        NSApplication* const application = NSApplication.sharedApplication;
        // Windows of a hidden program are not displayed.
        if (application.hidden) [application unhideWithoutActivation];
        [application activateIgnoringOtherApps:YES];
    }
}

void hideApplication() {
    @autoreleasepool {
        [NSApplication.sharedApplication hide:nil];
    }
}

bool systemPrefersReducedMotion() {
    @autoreleasepool {
        return NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion;
    }
}

bool systemPrefersMoreContrast() {
    @autoreleasepool {
        return NSWorkspace.sharedWorkspace.accessibilityDisplayShouldIncreaseContrast;
    }
}

std::shared_ptr<void> watchPressesInOtherPrograms(MouseButtons buttons, std::function<void(Point)> onPress) {
    @autoreleasepool {
        id const monitor =
            [NSEvent addGlobalMonitorForEventsMatchingMask:pressMask(buttons)
                                                   handler:^(NSEvent*) {
                                                     // The handler may remove the monitor and this block.
                                                     const auto handler = onPress;
                                                     handler(placeOnScreen(NSEvent.mouseLocation));
                                                   }];
        return keptUntil([](id ended) { [NSEvent removeMonitor:ended]; }, monitor);
    }
}

std::shared_ptr<void> runOnTime() {
    @autoreleasepool {
        id const activity =
            [NSProcessInfo.processInfo beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                                                         reason:@"Sensor readings are in view"];
        return keptUntil([](id ended) { [NSProcessInfo.processInfo endActivity:ended]; }, activity);
    }
}

bool handOverToRunningApplication() {
    @autoreleasepool {
        if (!hasOlderInstance(NSRunningApplication.currentApplication)) return false;
        [NSDistributedNotificationCenter.defaultCenter postNotificationName:handOverName()
                                                                     object:nil
                                                                   userInfo:nil
                                                         deliverImmediately:YES];
        return true;
    }
}

class ReopenObserver::Target {
  public:
    explicit Target(std::function<void()> onReopen) {
        @autoreleasepool {
            object_.onReopen = std::move(onReopen);
            [NSNotificationCenter.defaultCenter addObserver:object_
                                                   selector:@selector(applicationWillFinishLaunching:)
                                                       name:NSApplicationWillFinishLaunchingNotification
                                                     object:nil];
            if (NSString* const name = handOverName()) {
                [NSDistributedNotificationCenter.defaultCenter
                           addObserver:object_
                              selector:@selector(handleHandOver:)
                                  name:name
                                object:nil
                    suspensionBehavior:NSNotificationSuspensionBehaviorDeliverImmediately];
            }
        }
    }

    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;

    ~Target() {
        @autoreleasepool {
            [NSNotificationCenter.defaultCenter removeObserver:object_];
            [NSDistributedNotificationCenter.defaultCenter removeObserver:object_];
            [NSAppleEventManager.sharedAppleEventManager
                removeEventHandlerForEventClass:kCoreEventClass
                                     andEventID:kAEReopenApplication];
        }
    }

  private:
    KelvinbarReopenTarget* object_ = [[KelvinbarReopenTarget alloc] init];
};

ReopenObserver::ReopenObserver(std::function<void()> onReopen)
    : target_(std::make_unique<Target>(std::move(onReopen))) {}

ReopenObserver::~ReopenObserver() = default;

} // namespace kelvinbar
