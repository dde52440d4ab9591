#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/IOKitLib.h>
#include <utility>

namespace kelvinbar {

/// Owns an object of I/O Kit; releases it once.
class IOObject {
  public:
    explicit IOObject(io_object_t object = IO_OBJECT_NULL) : object_(object) {}

    IOObject(IOObject&& other) noexcept : object_(std::exchange(other.object_, IO_OBJECT_NULL)) {}

    IOObject& operator=(IOObject&& other) noexcept {
        if (this != &other) reset(std::exchange(other.object_, IO_OBJECT_NULL));
        return *this;
    }

    IOObject(const IOObject&) = delete;
    IOObject& operator=(const IOObject&) = delete;

    ~IOObject() { reset(); }

    [[nodiscard]] io_object_t get() const { return object_; }

    explicit operator bool() const { return object_ != IO_OBJECT_NULL; }

    void reset(io_object_t object = IO_OBJECT_NULL) {
        if (const io_object_t former = std::exchange(object_, object); former != IO_OBJECT_NULL) {
            IOObjectRelease(former);
        }
    }

  private:
    io_object_t object_;
};

/// Owns a Core Foundation object that a function with "Create" or "Copy" in its name has given; releases it
/// once. `Reference` is its type, such as CFStringRef.
template <typename Reference>
class CFOwned {
  public:
    explicit CFOwned(Reference reference = nullptr) : reference_(reference) {}

    CFOwned(CFOwned&& other) noexcept : reference_(std::exchange(other.reference_, nullptr)) {}

    CFOwned(const CFOwned&) = delete;
    CFOwned& operator=(const CFOwned&) = delete;
    CFOwned& operator=(CFOwned&&) = delete;

    ~CFOwned() {
        if (reference_ != nullptr) CFRelease(reference_);
    }

    [[nodiscard]] Reference get() const { return reference_; }

    explicit operator bool() const { return reference_ != nullptr; }

  private:
    Reference reference_;
};

} // namespace kelvinbar
