#pragma once

extern "C" {
// The runtime's own functions, which its compilers call for such a scope.
void* objc_autoreleasePoolPush(void);
void objc_autoreleasePoolPop(void* pool);
}

namespace kelvinbar {

/// Releases at its end what system calls inside it have left to be released later. On one thread, nested.
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
