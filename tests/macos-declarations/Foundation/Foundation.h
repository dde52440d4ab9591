// What the program calls of Foundation, declared for checks on machines without it. On a Mac, the system's
// own headers are used.
#pragma once

#import <Availability.h>
#import <CoreFoundation/CoreFoundation.h>
#import <objc/NSObject.h>
#import <os/availability.h>
#include <stdint.h>

#define CF_CONSUMED __attribute__((cf_consumed))
#define KELVINBAR_EXPORT extern "C" __attribute__((visibility("default")))

typedef double CGFloat;

typedef struct CGPoint {
    CGFloat x;
    CGFloat y;
} CGPoint;

typedef struct CGSize {
    CGFloat width;
    CGFloat height;
} CGSize;

typedef struct CGRect {
    CGPoint origin;
    CGSize size;
} CGRect;

typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef CGRect NSRect;

static inline NSSize NSMakeSize(CGFloat width, CGFloat height) { return {width, height}; }

static inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
    return {{x, y}, {width, height}};
}

static inline __attribute__((cf_returns_retained)) CFTypeRef CFBridgingRetain(id object) {
    return (__bridge_retained CFTypeRef)object;
}

static inline id CFBridgingRelease(CFTypeRef CF_CONSUMED object) { return (__bridge_transfer id)object; }

@protocol NSCopying
- (id)copyWithZone:(struct _NSZone*)zone;
@end

typedef struct {
    unsigned long state;
    id __unsafe_unretained _Nullable* _Nullable itemsPtr;
    unsigned long* _Nullable mutationsPtr;
    unsigned long extra[5];
} NSFastEnumerationState;

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[])buffer
                                    count:(NSUInteger)length;
@end

typedef NSUInteger NSStringEncoding;

enum : NSStringEncoding { NSUTF8StringEncoding = 4 };

@interface NSString : NSObject <NSCopying>
- (NSString*)stringByAppendingString:(NSString*)text;
- (nullable instancetype)initWithBytes:(const void*)bytes
                                length:(NSUInteger)length
                              encoding:(NSStringEncoding)encoding;
@end

@interface NSNumber : NSObject
+ (NSNumber*)numberWithDouble:(double)value;
@end

@interface NSArray<__covariant ObjectType> : NSObject <NSFastEnumeration>
@property(nullable, readonly) ObjectType firstObject;
@end

@interface NSDictionary<__covariant KeyType, __covariant ObjectType> : NSObject
+ (instancetype)dictionaryWithObjects:(const ObjectType _Nonnull[])objects
                              forKeys:(const KeyType<NSCopying> _Nonnull[])keys
                                count:(NSUInteger)count;
@end

typedef NSString* NSAttributedStringKey;

@interface NSAttributedString : NSObject
- (instancetype)initWithString:(NSString*)text
                    attributes:(NSDictionary<NSAttributedStringKey, id>*)attributes;
@end

@interface NSURL : NSObject
+ (nullable instancetype)URLWithString:(NSString*)text;
@property(readonly) const char* fileSystemRepresentation;
@end

typedef enum NSComparisonResult : NSInteger {
    NSOrderedAscending = -1L,
    NSOrderedSame,
    NSOrderedDescending
} NSComparisonResult;

@interface NSDate : NSObject
- (BOOL)isEqualToDate:(NSDate*)other;
- (NSComparisonResult)compare:(NSDate*)other;
@end

@interface NSError : NSObject
@end

typedef NSString* NSNotificationName;

@interface NSNotification : NSObject
@end

@interface NSNotificationCenter : NSObject
@property(class, readonly, strong) NSNotificationCenter* defaultCenter;
- (void)addObserver:(id)observer
           selector:(SEL)selector
               name:(nullable NSNotificationName)name
             object:(nullable id)object;
- (void)removeObserver:(id)observer;
@end

typedef enum NSNotificationSuspensionBehavior : NSUInteger {
    NSNotificationSuspensionBehaviorDrop = 1,
    NSNotificationSuspensionBehaviorCoalesce,
    NSNotificationSuspensionBehaviorHold,
    NSNotificationSuspensionBehaviorDeliverImmediately
} NSNotificationSuspensionBehavior;

@interface NSDistributedNotificationCenter : NSNotificationCenter
+ (NSDistributedNotificationCenter*)defaultCenter;
- (void)addObserver:(id)observer
              selector:(SEL)selector
                  name:(nullable NSNotificationName)name
                object:(nullable NSString*)object
    suspensionBehavior:(NSNotificationSuspensionBehavior)behavior;
- (void)postNotificationName:(NSNotificationName)name
                      object:(nullable NSString*)object
                    userInfo:(nullable NSDictionary*)userInfo
          deliverImmediately:(BOOL)deliverImmediately;
@end

typedef uint32_t FourCharCode;
typedef FourCharCode AEEventClass;
typedef FourCharCode AEEventID;

@interface NSAppleEventDescriptor : NSObject
@end

@interface NSAppleEventManager : NSObject
+ (NSAppleEventManager*)sharedAppleEventManager;
- (void)setEventHandler:(id)handler
            andSelector:(SEL)selector
          forEventClass:(AEEventClass)eventClass
             andEventID:(AEEventID)eventID;
- (void)removeEventHandlerForEventClass:(AEEventClass)eventClass andEventID:(AEEventID)eventID;
@end

typedef enum NSProcessInfoThermalState : NSInteger {
    NSProcessInfoThermalStateNominal,
    NSProcessInfoThermalStateFair,
    NSProcessInfoThermalStateSerious,
    NSProcessInfoThermalStateCritical
} NSProcessInfoThermalState;

typedef enum NSActivityOptions : uint64_t {
    NSActivityUserInitiatedAllowingIdleSystemSleep = 0x00FFFFFFULL & ~(1ULL << 20)
} NSActivityOptions;

@interface NSProcessInfo : NSObject
@property(class, readonly, strong) NSProcessInfo* processInfo;
@property(readonly) NSUInteger activeProcessorCount;
@property(readonly) unsigned long long physicalMemory;
@property(readonly) NSProcessInfoThermalState thermalState;
@property(readonly, getter=isLowPowerModeEnabled) BOOL lowPowerModeEnabled API_AVAILABLE(macos(12.0));
- (id<NSObject>)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString*)reason;
- (void)endActivity:(id<NSObject>)activity;
@end

typedef double NSTimeInterval;

@interface NSTimer : NSObject
+ (NSTimer*)timerWithTimeInterval:(NSTimeInterval)interval
                          repeats:(BOOL)repeats
                            block:(void (^)(NSTimer* timer))block;
@property NSTimeInterval tolerance;
- (void)invalidate;
@end

typedef NSString* NSRunLoopMode;

KELVINBAR_EXPORT NSRunLoopMode const NSRunLoopCommonModes;

@interface NSRunLoop : NSObject
@property(class, readonly, strong) NSRunLoop* mainRunLoop;
- (void)addTimer:(NSTimer*)timer forMode:(NSRunLoopMode)mode;
@end
