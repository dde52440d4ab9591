#include "platform/macos/desktop/CocoaApplication.h"

#import <AppKit/AppKit.h>
#import <CoreServices/CoreServices.h>
#include <utility>

/// What an observer has to be here: an object.
@interface KelvinbarReopenTarget : NSObject
@property(nonatomic) std::function<void()> onReopen;
- (void)applicationWillFinishLaunching:(NSNotification*)notification;
- (void)handleReopenEvent:(NSAppleEventDescriptor*)event withReplyEvent:(NSAppleEventDescriptor*)reply;
@end

@implementation KelvinbarReopenTarget

/// The application's own handlers are in place by then; before, they would replace this one.
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

@end

namespace kelvinbar {

namespace {

/// Of several instances that start at once, the one with the lowest number stays.
NSRunningApplication* otherInstance() {
    NSRunningApplication* const own = NSRunningApplication.currentApplication;
    NSString* const identifier = own.bundleIdentifier;
    if (identifier == nil) return nil;
    for (NSRunningApplication* other in
         [NSRunningApplication runningApplicationsWithBundleIdentifier:identifier]) {
        if (other.processIdentifier < own.processIdentifier) return other;
    }
    return nil;
}

/// How long the system may take to tell the other instance.
constexpr std::int64_t longestHandOver = 5 * static_cast<std::int64_t>(NSEC_PER_SEC);

} // namespace

void becomeAccessoryApplication() {
    @autoreleasepool {
        [NSApplication.sharedApplication setActivationPolicy:NSApplicationActivationPolicyAccessory];
    }
}

void activateApplication() {
    @autoreleasepool {
        [NSApplication.sharedApplication activateIgnoringOtherApps:YES];
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

bool handOverToRunningApplication() {
    @autoreleasepool {
        NSURL* const bundle = otherInstance().bundleURL;
        if (bundle == nil) return false;
        const dispatch_semaphore_t isTold = dispatch_semaphore_create(0);
        // To open an application that runs is to tell it.
        [NSWorkspace.sharedWorkspace openApplicationAtURL:bundle
                                            configuration:[NSWorkspaceOpenConfiguration configuration]
                                        completionHandler:^(NSRunningApplication*, NSError*) {
                                          dispatch_semaphore_signal(isTold);
                                        }];
        dispatch_semaphore_wait(isTold, dispatch_time(DISPATCH_TIME_NOW, longestHandOver));
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
        }
    }

    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;

    ~Target() {
        @autoreleasepool {
            [NSNotificationCenter.defaultCenter removeObserver:object_];
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
