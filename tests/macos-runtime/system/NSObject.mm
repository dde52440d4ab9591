// The base class, without automatic reference counting: it is what that counts with.
#import <Foundation/Foundation.h>

extern "C" {
id objc_create(Class type);
void objc_end(id object);
bool objc_responds(id receiver, SEL selector);
}

@implementation NSObject

+ (instancetype)alloc {
    return objc_create(self);
}

+ (Class)class {
    return self;
}

- (instancetype)init {
    return self;
}

- (void)dealloc {
    objc_end(self);
}

- (id)copy {
    return [(id<NSCopying>)self copyWithZone:nullptr];
}

- (BOOL)isEqual:(id)object {
    return self == object;
}

- (BOOL)respondsToSelector:(SEL)selector {
    return objc_responds(self, selector);
}

@end
