#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace kelvinbar {

/// Sets an environment variable, or removes it for a null value, and restores it in the end.
class VariableScope {
  public:
    VariableScope(const char* name, const char* value) : name_(name) {
        if (const char* const earlier = std::getenv(name)) earlier_ = earlier;
        set(value);
    }

    VariableScope(const VariableScope&) = delete;
    VariableScope& operator=(const VariableScope&) = delete;

    ~VariableScope() { set(earlier_ ? earlier_->c_str() : nullptr); }

  private:
    void set(const char* value) const { value == nullptr ? ::unsetenv(name_) : ::setenv(name_, value, 1); }

    const char* name_;
    std::optional<std::string> earlier_;
};

} // namespace kelvinbar
