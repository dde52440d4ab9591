#import "tests/macos-runtime/system/FakeFoundation.h"

#include "tests/macos-runtime/system/FakeCocoa.h"
#include "tests/macos-runtime/system/Runtime.h"

#import <CoreServices/CoreServices.h>
#include <algorithm>
#include <cstring>
#include <map>
#include <utility>
#include <vector>

using kelvinbar::fakes::FakeCocoa;
using kelvinbar::fakes::onlyObject;
using kelvinbar::objc::fail;

extern "C" {

id objc_msgSend(id, SEL, ...);

// The class of constant texts, which the compiler refers to by the address of this copy of it.
void* __CFConstantStringClassReference[5];
extern const char constantTextClass[] __asm("OBJC_CLASS_$_FakeConstantText");

bool fakeSystemIsAtLeast(const char* requirement) {
    return FakeCocoa::shared().version >= std::stod(std::string(requirement).substr(std::strlen("macOS ")));
}

} // extern "C"

namespace {

__attribute__((constructor)) void provideConstantTexts() {
    std::memcpy(__CFConstantStringClassReference, constantTextClass, sizeof __CFConstantStringClassReference);
}

std::map<const void*, id>& onlyObjects() {
    static std::map<const void*, id> all;
    return all;
}

/// As in the system: no character is longer than its shortest form, and surrogates are none.
bool isUTF8(const std::string& bytes) {
    for (std::size_t position = 0; position < bytes.size();) {
        const auto lead = static_cast<unsigned char>(bytes[position++]);
        const int following = lead < 0x80   ? 0
                              : lead < 0xC2 ? -1
                              : lead < 0xE0 ? 1
                              : lead < 0xF0 ? 2
                              : lead < 0xF5 ? 3
                                            : -1;
        if (following < 0) return false;
        for (int count = 0; count < following; ++count) {
            if (position == bytes.size() || (static_cast<unsigned char>(bytes[position++]) & 0xC0U) != 0x80U)
                return false;
        }
    }
    return true;
}

} // namespace

namespace kelvinbar::fakes {

std::string textOf(NSString* text) { return text == nil ? "" : [(FakeText*)text text]; }

NSString* nsText(const std::string& text) {
    return [[NSString alloc] initWithBytes:text.data() length:text.size() encoding:NSUTF8StringEncoding];
}

id madeObject(Class type) {
    const auto found = onlyObjects().find((__bridge const void*)type);
    return found == onlyObjects().end() ? nil : found->second;
}

id onlyObject(Class type) {
    __strong id& object = onlyObjects()[(__bridge const void*)type];
    if (object == nil) object = [[type alloc] init];
    return object;
}

void releaseOnlyObjects() { onlyObjects().clear(); }

void perform(__unsafe_unretained id receiver, SEL selector, __unsafe_unretained id first,
             __unsafe_unretained id second) {
    using Send = void (*)(void*, SEL, void*, void*);
    // By way of a function without a type of its own: compilers warn of a cast between two that differ.
    const auto send = reinterpret_cast<Send>(reinterpret_cast<void (*)()>(objc_msgSend));
    send((__bridge void*)receiver, selector, (__bridge void*)first, (__bridge void*)second);
}

} // namespace kelvinbar::fakes

// Texts: NSString makes an object of another class.

@interface FakeHeapText : FakeText
@end

/// The compiler lays constants out in this way.
@interface FakeConstantText : FakeText {
    int _flags;
    const char* _bytes;
    unsigned long _length;
}
@end

@implementation NSString

+ (instancetype)alloc {
    if (self == [NSString class]) return (id)[FakeHeapText alloc];
    return [super alloc];
}

- (NSString*)stringByAppendingString:(NSString*)text {
    if (text == nil) fail("nil is appended to a text");
    return kelvinbar::fakes::nsText(kelvinbar::fakes::textOf(self) + kelvinbar::fakes::textOf(text));
}

- (nullable instancetype)initWithBytes:(const void*)__unused bytes
                                length:(NSUInteger)__unused length
                              encoding:(NSStringEncoding)__unused encoding {
    fail("a text without a class of its own");
}

- (id)copyWithZone:(struct _NSZone*)__unused zone {
    return self;
}

@end

@implementation FakeText

- (std::string)text {
    fail("a text without a class of its own");
}

@end

@implementation FakeHeapText {
    std::string _text;
}

- (nullable instancetype)initWithBytes:(const void*)bytes
                                length:(NSUInteger)length
                              encoding:(NSStringEncoding)encoding {
    if (encoding != NSUTF8StringEncoding) fail("a text in another encoding than UTF-8");
    _text.assign(static_cast<const char*>(bytes), length);
    return isUTF8(_text) ? self : nil;
}

- (std::string)text {
    return _text;
}

@end

@implementation FakeConstantText

- (std::string)text {
    return {_bytes, _length};
}

@end

@implementation NSNumber

+ (NSNumber*)numberWithDouble:(double)value {
    return [FakeNumber numberWithDouble:value];
}

@end

@implementation FakeNumber {
    double _number;
}

+ (NSNumber*)numberWithDouble:(double)value {
    FakeNumber* const made = [[FakeNumber alloc] init];
    made->_number = value;
    return made;
}

- (double)number {
    return _number;
}

@end

// Collections

@implementation NSArray

- (nullable id)firstObject {
    fail("a list without a class of its own");
}

- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)__unused state
                                  objects:(id __unsafe_unretained _Nullable[])__unused buffer
                                    count:(NSUInteger)__unused length {
    fail("a list without a class of its own");
}

@end

@implementation FakeList {
    std::vector<id> _objects;
}

- (void)add:(id)object {
    _objects.push_back(object);
}

- (nullable id)firstObject {
    return _objects.empty() ? nil : _objects.front();
}

- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[])buffer
                                    count:(NSUInteger)length {
    static unsigned long neverChanges = 0;
    const std::size_t count = std::min<std::size_t>(length, _objects.size() - state->state);
    for (std::size_t index = 0; index < count; ++index) buffer[index] = _objects[state->state + index];
    state->state += count;
    state->itemsPtr = buffer;
    state->mutationsPtr = &neverChanges;
    return count;
}

@end

@implementation NSDictionary

+ (instancetype)dictionaryWithObjects:(const id _Nonnull[])objects
                              forKeys:(const id<NSCopying> _Nonnull[])keys
                                count:(NSUInteger)count {
    return [FakeTable dictionaryWithObjects:objects forKeys:keys count:count];
}

@end

@implementation FakeTable {
    std::map<std::string, id> _values;
}

+ (instancetype)dictionaryWithObjects:(const id _Nonnull[])objects
                              forKeys:(const id<NSCopying> _Nonnull[])keys
                                count:(NSUInteger)count {
    FakeTable* const made = [[FakeTable alloc] init];
    for (NSUInteger index = 0; index < count; ++index) {
        if (objects[index] == nil || keys[index] == nil) fail("nil in a dictionary");
        made->_values[kelvinbar::fakes::textOf((NSString*)keys[index])] = objects[index];
    }
    return made;
}

- (id)valueFor:(NSString*)key {
    const auto found = _values.find(kelvinbar::fakes::textOf(key));
    return found == _values.end() ? nil : found->second;
}

@end

// Values

@implementation NSAttributedString {
    FakeText* _text;
    FakeTable* _attributes;
}

- (instancetype)initWithString:(NSString*)text
                    attributes:(NSDictionary<NSAttributedStringKey, id>*)attributes {
    if (text == nil) fail("an attributed text of nil");
    _text = (FakeText*)text;
    _attributes = (FakeTable*)attributes;
    return self;
}

- (FakeText*)text {
    return _text;
}

- (FakeTable*)attributes {
    return _attributes;
}

- (id)copyWithZone:(struct _NSZone*)__unused zone {
    return self;
}

@end

@implementation NSURL {
    FakeText* _text;
    std::string _path;
}

+ (nullable instancetype)URLWithString:(NSString*)text {
    if (!FakeCocoa::shared().parsesAddresses) return nil;
    NSURL* const made = [[NSURL alloc] init];
    made->_text = (FakeText*)text;
    return made;
}

- (FakeText*)text {
    return _text;
}

- (const char*)fileSystemRepresentation {
    _path = [_text text];
    return _path.c_str();
}

@end

@implementation NSDate

- (BOOL)isEqualToDate:(NSDate*)other {
    if (other == nil) fail("a date is compared with nil");
    return [(FakeDate*)self seconds] == [(FakeDate*)other seconds];
}

- (NSComparisonResult)compare:(NSDate*)other {
    if (other == nil) fail("a date is compared with nil");
    const double difference = [(FakeDate*)self seconds] - [(FakeDate*)other seconds];
    return difference < 0 ? NSOrderedAscending : difference > 0 ? NSOrderedDescending : NSOrderedSame;
}

@end

@implementation FakeDate {
    double _seconds;
}

- (instancetype)initWithSeconds:(double)seconds {
    _seconds = seconds;
    return self;
}

- (double)seconds {
    return _seconds;
}

@end

// Notifications and events

@implementation NSNotification
@end

namespace {

/// Observers are not retained: they have to be removed before they end.
struct Observer {
    void* object;
    SEL selector;
    std::string name;
};

} // namespace

@implementation NSNotificationCenter {
    std::vector<Observer> _observers;
}

+ (NSNotificationCenter*)defaultCenter {
    return onlyObject([NSNotificationCenter class]);
}

- (void)addObserver:(id)observer
           selector:(SEL)selector
               name:(nullable NSNotificationName)name
             object:(nullable id)__unused object {
    if (![observer respondsToSelector:selector]) fail("an observer that does not implement its selector");
    _observers.push_back({(__bridge void*)observer, selector, kelvinbar::fakes::textOf(name)});
}

- (void)removeObserver:(id)observer {
    std::erase_if(_observers, [&](const Observer& each) { return each.object == (__bridge void*)observer; });
}

- (void)post:(NSNotificationName)name {
    NSNotification* const notification = [[NSNotification alloc] init];
    const auto observers = _observers; // which may be removed during a call
    for (const Observer& each : observers) {
        if (each.name != kelvinbar::fakes::textOf(name)) continue;
        kelvinbar::fakes::perform((__bridge id)each.object, each.selector, notification);
    }
}

- (NSUInteger)observerCount {
    return _observers.size();
}

@end

@implementation NSDistributedNotificationCenter

+ (NSDistributedNotificationCenter*)defaultCenter {
    return onlyObject([NSDistributedNotificationCenter class]);
}

- (void)addObserver:(id)observer
              selector:(SEL)selector
                  name:(nullable NSNotificationName)name
                object:(nullable NSString*)object
    suspensionBehavior:(NSNotificationSuspensionBehavior)behavior {
    // Otherwise an inactive program hears nothing.
    if (behavior != NSNotificationSuspensionBehaviorDeliverImmediately) return;
    [self addObserver:observer selector:selector name:name object:object];
}

- (void)postNotificationName:(NSNotificationName)name
                      object:(nullable NSString*)__unused object
                    userInfo:(nullable NSDictionary*)__unused userInfo
          deliverImmediately:(BOOL)deliverImmediately {
    FakeCocoa::shared().postings.push_back(
        {kelvinbar::fakes::textOf(name), static_cast<bool>(deliverImmediately)});
}

@end

@implementation NSAppleEventDescriptor
@end

@implementation NSAppleEventManager {
    void* _handler; ///< not retained
    SEL _selector;
    std::pair<AEEventClass, AEEventID> _event;
}

+ (NSAppleEventManager*)sharedAppleEventManager {
    return onlyObject([NSAppleEventManager class]);
}

- (void)setEventHandler:(id)handler
            andSelector:(SEL)selector
          forEventClass:(AEEventClass)eventClass
             andEventID:(AEEventID)eventID {
    if (![handler respondsToSelector:selector]) fail("an event handler that does not implement its selector");
    _handler = (__bridge void*)handler;
    _selector = selector;
    _event = {eventClass, eventID};
}

- (void)removeEventHandlerForEventClass:(AEEventClass)eventClass andEventID:(AEEventID)eventID {
    if (_event == std::pair(eventClass, eventID)) _handler = nullptr;
}

- (BOOL)handle:(AEEventClass)eventClass event:(AEEventID)event {
    if (_handler == nullptr || _event != std::pair(eventClass, event)) return NO;
    kelvinbar::fakes::perform((__bridge id)_handler, _selector, [[NSAppleEventDescriptor alloc] init],
                              [[NSAppleEventDescriptor alloc] init]);
    return YES;
}

- (BOOL)hasHandler {
    return _handler != nullptr;
}

@end

@implementation NSProcessInfo {
    std::vector<NSObject*> _activities;
}

+ (NSProcessInfo*)processInfo {
    return onlyObject([NSProcessInfo class]);
}

- (NSUInteger)activeProcessorCount {
    return static_cast<NSUInteger>(FakeCocoa::shared().activeProcessors);
}

- (unsigned long long)physicalMemory {
    return FakeCocoa::shared().physicalMemory;
}

- (NSProcessInfoThermalState)thermalState {
    return static_cast<NSProcessInfoThermalState>(FakeCocoa::shared().thermalState);
}

- (BOOL)isLowPowerModeEnabled {
    if (FakeCocoa::shared().version < 12) fail("the low power mode before macOS 12");
    return FakeCocoa::shared().hasLowPowerMode;
}

- (id<NSObject>)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString*)reason {
    if (kelvinbar::fakes::textOf(reason).empty()) fail("an activity without a reason");
    FakeCocoa::shared().activityOptions = options;
    _activities.push_back([[NSObject alloc] init]);
    return (id<NSObject>)_activities.back();
}

- (void)endActivity:(id<NSObject>)activity {
    if (std::erase(_activities, (NSObject*)activity) != 1) fail("an activity is ended that does not last");
}

- (const std::vector<NSObject*>&)activities {
    return _activities;
}

@end

@implementation NSError
@end

// Timers

NSRunLoopMode const NSRunLoopCommonModes = @"common modes";

@implementation NSTimer

+ (NSTimer*)timerWithTimeInterval:(NSTimeInterval)interval
                          repeats:(BOOL)repeats
                            block:(void (^)(NSTimer*))block {
    NSTimer* const timer = [[NSTimer alloc] init];
    timer.interval = interval;
    timer.repeats = repeats;
    timer->_block = block;
    return timer;
}

/// Releases the block, also while it runs.
- (void)invalidate {
    _block = nil;
    [NSRunLoop.mainRunLoop remove:self];
}

@end

@implementation NSRunLoop {
    std::vector<NSTimer*> _timers;
}

+ (NSRunLoop*)mainRunLoop {
    return onlyObject([NSRunLoop class]);
}

- (void)addTimer:(NSTimer*)timer forMode:(NSRunLoopMode)mode {
    // Otherwise it waits while a menu is open.
    if (kelvinbar::fakes::textOf(mode) != kelvinbar::fakes::textOf(NSRunLoopCommonModes)) return;
    _timers.push_back(timer);
}

- (const std::vector<NSTimer*>&)timers {
    return _timers;
}

- (void)remove:(NSTimer*)timer {
    std::erase(_timers, timer);
}

@end
