// What the program and the fakes use of the Objective-C runtime's own header, for machines without it.
#pragma once

typedef signed char BOOL;
typedef long NSInteger;
typedef unsigned long NSUInteger;

#define YES __objc_yes
#define NO __objc_no
#define nil nullptr
#define Nil nullptr

@protocol NSObject
- (BOOL)isEqual:(id)object;
- (BOOL)respondsToSelector:(SEL)selector;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject> {
    Class isa;
}
+ (instancetype)alloc;
+ (Class)class;
- (instancetype)init;
- (void)dealloc;
- (id)copy;
@end
