#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace kelvinbar {

/// Sets an environment variable, or removes it for a null value, and restores it in the end.
class TemporaryVariable {
  public:
    TemporaryVariable(const char* name, const char* value) : name_(name) {
        if (const char* const earlier = std::getenv(name)) earlier_ = earlier;
        set(value);
    }

    TemporaryVariable(const TemporaryVariable&) = delete;
    TemporaryVariable& operator=(const TemporaryVariable&) = delete;

    ~TemporaryVariable() { set(earlier_ ? earlier_->c_str() : nullptr); }

  private:
    void set(const char* value) const { value == nullptr ? ::unsetenv(name_) : ::setenv(name_, value, 1); }

    const char* name_;
    std::optional<std::string> earlier_;
};

} // namespace kelvinbar
