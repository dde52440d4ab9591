#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/IOKitLib.h>
#include <utility>

namespace kelvinbar {

/// Owns one reference to an I/O Kit object (service, iterator or registry entry) and releases it once.
/// Move-only; an empty handle is IO_OBJECT_NULL. Connections are not objects in this sense: they are closed,
/// not released.
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

    /// Releases the current object and takes over the reference to `object`.
    void reset(io_object_t object = IO_OBJECT_NULL) {
        if (const io_object_t former = std::exchange(object_, object); former != IO_OBJECT_NULL) {
            IOObjectRelease(former);
        }
    }

  private:
    io_object_t object_;
};

/// Owns one reference to a Core Foundation object returned by a function with "Create" or "Copy" in its name,
/// and releases it once. Objects from "Get" functions must not be put into it. `Reference` is the pointer
/// type, such as CFStringRef.
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
