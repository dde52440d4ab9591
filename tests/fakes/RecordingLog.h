#pragma once

#include "base/Log.h"

#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar::fakes {

/// Keeps log lines without their line ends.
class RecordingLogSink final : public LogSink {
  public:
    void write(std::string_view line) override { lines.emplace_back(line.substr(0, line.size() - 1)); }

    std::vector<std::string> lines;
};

/// A log that keeps its lines.
struct RecordingLog {
    explicit RecordingLog(std::string_view choice = {}) : log(sink, choice) {}

    [[nodiscard]] const std::vector<std::string>& lines() const { return sink.lines; }

    RecordingLogSink sink;
    Log log;
};

} // namespace kelvinbar::fakes
