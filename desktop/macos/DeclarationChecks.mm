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
static_assert(NSNotificationSuspensionBehaviorDeliverImmediately == 4);
static_assert(NSOrderedAscending == -1);
static_assert(sizeof(pid_t) == 4);

} // namespace kelvinbar
