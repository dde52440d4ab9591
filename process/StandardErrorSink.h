#pragma once

#include "base/Log.h"

#include <cstdint>
#include <string_view>

namespace kelvinbar {

/// Writes each line to standard error at once, so that lines of several processes do not mix.
///
/// Never waits: a line that a full pipe or a stopped terminal does not take is left out. How many were is
/// written before the next line that is taken.
class StandardErrorSink final : public LogSink {
  public:
    void write(std::string_view line) override;

  private:
    std::uint64_t leftOut_ = 0; ///< lines since the last one that was written
};

} // namespace kelvinbar
