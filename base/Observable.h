#pragma once

#include "base/HandlerList.h"

#include <functional>
#include <utility>

namespace kelvinbar {

/// A field that tells its observers the new value before it changes; while they are told, `value()` is still
/// the old one. Assigning an equal value tells nobody. Main thread.
template <typename T>
class Observable {
  public:
    using Observer = std::function<void(const T& newValue)>;

    explicit Observable(T initial = T{}) : value_(std::move(initial)) {}

    [[nodiscard]] const T& value() const { return value_; }

    /// Returns whether the value changed.
    bool set(T newValue) {
        if (newValue == value_) return false;
        willChange_.call(newValue);
        value_ = std::move(newValue);
        return true;
    }

    /// The observer stays registered for as long as the result lives.
    Registration observe(Observer observer) const { return willChange_.add(std::move(observer)); }

  private:
    T value_;
    mutable HandlerList<const T&> willChange_;
};

} // namespace kelvinbar
