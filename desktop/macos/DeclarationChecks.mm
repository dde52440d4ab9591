// Static assertions about the system's declarations that this folder relies on.

#import <AppKit/AppKit.h>
#import <CoreServices/CoreServices.h>

namespace kelvinbar {

static_assert(NSImageLeft == 2);
static_assert(NSApplicationActivationPolicyAccessory == 1);
static_assert(NSUTF8StringEncoding == 4);
static_assert(sizeof(CGFloat) == sizeof(double) && sizeof(NSRect) == 4 * sizeof(double));
static_assert(kCoreEventClass == 0x61657674 && kAEReopenApplication == 0x72617070);
static_assert(NSEventMaskLeftMouseDown == 2 && NSEventMaskRightMouseDown == 8);
static_assert(NSEventMaskOtherMouseDown == 1 << 25);
static_assert(NSEventMaskLeftMouseUp == 1 << 2 && NSEventMaskRightMouseUp == 1 << 4);
static_assert(NSEventTypeLeftMouseUp == 2 && NSEventTypeRightMouseUp == 4);
static_assert(NSEventModifierFlagControl == 1 << 18);
static_assert(NSWindowCollectionBehaviorMoveToActiveSpace == 1 << 1);
static_assert(NSWindowCollectionBehaviorTransient == 1 << 3);
static_assert(NSWindowCollectionBehaviorFullScreenAuxiliary == 1 << 8);
static_assert(NSActivityUserInitiatedAllowingIdleSystemSleep == 0x00EFFFFF);
static_assert(sizeof(NSTimeInterval) == sizeof(double));
static_assert(NSNotificationSuspensionBehaviorDeliverImmediately == 4);
static_assert(NSOrderedAscending == -1);
static_assert(sizeof(pid_t) == 4);

} // namespace kelvinbar
