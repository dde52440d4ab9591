#pragma once

#include <mutex>
#include <string_view>

namespace kelvinbar {

/// A recursive mutex with a name, so that a debugger can show which lock a thread waits for. The thread that
/// holds it may lock it again, and must unlock it as often.
class NamedRecursiveMutex : public std::recursive_mutex {
  public:
    /// `name` is not copied and must outlive the mutex; a string literal does.
    explicit NamedRecursiveMutex(std::string_view name) : name_(name) {}

    /// For debuggers and tests.
    [[nodiscard]] std::string_view name() const { return name_; }

  private:
    std::string_view name_;
};

} // namespace kelvinbar
