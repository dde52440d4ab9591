#pragma once

#include "base/HandlerList.h"

#include <functional>
#include <utility>

/// A value whose changes can be followed, for fields of the store that views display.
///
/// Observers are called before the change: they receive the new value, and `value()` still returns the old
/// one. That lets them compare both. The alternative is a NotificationCenter, for events without a value to
/// ask for.
///
/// Limits: main thread only; the type must be movable and comparable. Pitfalls: an observer that reads the
/// field through its owner sees the old state. An observer that calls set() on the same field has no lasting
/// effect, because the outer set() assigns last. A copy shares its observers with the original.
namespace kelvinbar {

/// A field with observers. Main thread.
template <typename T>
class Observable {
  public:
    using Observer = std::function<void(const T& newValue)>;

    explicit Observable(T initial = T{}) : value_(std::move(initial)) {}

    [[nodiscard]] const T& value() const { return value_; }

    /// Calls the observers, then assigns. Does neither if the new value equals the old one. Returns whether
    /// the value changed.
    bool set(T newValue) {
        if (newValue == value_) return false;
        willChange_.call(newValue);
        value_ = std::move(newValue);
        return true;
    }

    /// The observer stays registered as long as the result lives. It is not called with the current value.
    Registration observe(Observer observer) const { return willChange_.add(std::move(observer)); }

  private:
    T value_;
    mutable HandlerList<const T&> willChange_;
};

} // namespace kelvinbar
