#pragma once

#include <mutex>
#include <string_view>

namespace kelvinbar {

/// A recursive mutex that a debugger can tell from others by its name.
class NamedRecursiveMutex : public std::recursive_mutex {
  public:
    /// `name` outlives the mutex.
    explicit NamedRecursiveMutex(std::string_view name) : name_(name) {}

    [[nodiscard]] std::string_view name() const { return name_; }

  private:
    std::string_view name_;
};

} // namespace kelvinbar
