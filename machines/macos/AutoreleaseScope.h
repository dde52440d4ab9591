#pragma once

extern "C" {
// The Objective-C runtime's entry points behind @autoreleasepool.
void* objc_autoreleasePoolPush(void);
void objc_autoreleasePoolPop(void* pool);
}

namespace kelvinbar {

/// An autorelease pool for C++ sources. System calls autorelease temporary objects; on a background queue
/// without a pool these would leak. The destructor releases what was autoreleased since construction. Scopes
/// nest; create and destroy each on one thread.
class AutoreleaseScope {
  public:
    AutoreleaseScope() : pool_(objc_autoreleasePoolPush()) {}

    AutoreleaseScope(const AutoreleaseScope&) = delete;
    AutoreleaseScope& operator=(const AutoreleaseScope&) = delete;

    ~AutoreleaseScope() { objc_autoreleasePoolPop(pool_); }

  private:
    void* pool_;
};

} // namespace kelvinbar
