#pragma once

#import <Foundation/Foundation.h>
#include <string>
#include <vector>

/// A text with its content.
@interface FakeText : NSString
- (std::string)text;
@end

/// One entry of a dictionary at a time: few, and never fast.
@interface FakeTable : NSDictionary
- (id)valueFor:(NSString*)key;
@end

@interface FakeNumber : NSNumber
- (double)number;
@end

@interface NSAttributedString ()
- (FakeText*)text;
- (FakeTable*)attributes;
@end

@interface NSURL ()
- (FakeText*)text;
@end

@interface FakeDate : NSDate
- (instancetype)initWithSeconds:(double)seconds;
- (double)seconds;
@end

@interface FakeList : NSArray
- (void)add:(id)object;
@end

@interface NSNotificationCenter ()
- (void)post:(NSNotificationName)name;
- (NSUInteger)observerCount;
@end

@interface NSAppleEventManager ()
- (BOOL)handle:(AEEventClass)eventClass event:(AEEventID)event;
- (BOOL)hasHandler;
@end

@interface NSProcessInfo ()
- (const std::vector<NSObject*>&)activities;
@end

@interface NSTimer ()
@property(nonatomic) NSTimeInterval interval;
@property(nonatomic) BOOL repeats;
@property(nonatomic, readonly, copy) void (^block)(NSTimer*);
@end

@interface NSRunLoop ()
/// Those in the common modes.
- (const std::vector<NSTimer*>&)timers;
- (void)remove:(NSTimer*)timer;
@end

namespace kelvinbar::fakes {

/// "" for nil.
std::string textOf(NSString* text);

NSString* nsText(const std::string& text);

/// The only object of that class, made on the first call and released at the end of the test.
id onlyObject(Class type);

/// The same; nil if there has been no call of `onlyObject`.
id madeObject(Class type);

/// Releases them all.
void releaseOnlyObjects();

/// Calls the method of an object that may disappear during the call: nothing is retained.
void perform(__unsafe_unretained id receiver, SEL selector, __unsafe_unretained id first,
             __unsafe_unretained id second = nil);

} // namespace kelvinbar::fakes
