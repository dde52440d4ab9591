#pragma once

#include "base/Log.h"

#include <string_view>

namespace kelvinbar::fuzz {

/// Takes lines and drops them.
class NoSink final : public LogSink {
  public:
    void write(std::string_view /*line*/) override {}
};

/// A log at its highest level, so that all texts are built, and that shows nothing.
class QuietLog final {
  public:
    [[nodiscard]] Log& log() { return log_; }

  private:
    NoSink sink_;
    Log log_{sink_, {}, 2};
};

} // namespace kelvinbar::fuzz
