#include "tests/macos-runtime/system/FakeCocoa.h"
#import "tests/macos-runtime/system/FakeFoundation.h"
#include "tests/macos-runtime/system/Runtime.h"

#import <ServiceManagement/ServiceManagement.h>

using kelvinbar::fakes::FakeCocoa;
using kelvinbar::fakes::FakeLoginState;

namespace {

/// Returns whether the system agrees. Without permission, it also says why.
BOOL change(FakeLoginState state, NSError* __autoreleasing _Nullable* _Nullable error) {
    if (FakeCocoa::shared().allowsLoginChanges) {
        FakeCocoa::shared().loginState = state;
        return YES;
    }
    if (error != nullptr) *error = [[NSError alloc] init];
    return NO;
}

} // namespace

@implementation SMAppService

+ (SMAppService*)mainAppService {
    if (FakeCocoa::shared().version < 13) kelvinbar::objc::fail("SMAppService before macOS 13");
    return kelvinbar::fakes::onlyObject([SMAppService class]);
}

- (SMAppServiceStatus)status {
    return static_cast<SMAppServiceStatus>(FakeCocoa::shared().loginState);
}

- (BOOL)registerAndReturnError:(NSError* _Nullable* _Nullable)error {
    return change(FakeLoginState::enabled, error);
}

- (BOOL)unregisterAndReturnError:(NSError* _Nullable* _Nullable)error {
    return change(FakeLoginState::notRegistered, error);
}

@end
