#pragma once

#include "base/OutOfMemory.h"

#include <array>
#include <cstddef>
#include <mutex>
#include <set>
#include <string>
#include <string_view>

/// The log: what the program tells of itself on standard error, by category and level. Warnings and errors
/// are shown unless a category is set to "error"; the rest is shown on request. There is no global log: the
/// composition root owns one and hands a reference on. A text that takes work to build is passed as a
/// callable, which is not called while its category and level are off. A line that there is no memory for is
/// left out.
namespace kelvinbar {

enum class LogLevel {
    error,   ///< something the user asked for failed
    warning, ///< the program goes on, but without a part or with a replacement
    info,    ///< what was found and done; rare
    debug,   ///< single steps; may be frequent
};

enum class LogCategory { sourceSMC, sourceKernel, keys, preferences, tray, panel, login };

inline constexpr std::size_t logCategoryCount = 7;

/// Port: where log lines go. Called on any thread, but never by two at once.
class LogSink {
  public:
    virtual ~LogSink() = default;
    /// `line` ends with its only line end.
    virtual void write(std::string_view line) = 0;
};

/// A log over a sink, which outlives it. The levels never change after construction. Any thread.
class Log {
  public:
    /// `choice` has the form of KELVINBAR_LOG: words separated by commas, each a level for all categories or
    /// "category=level"; later words win. Unknown words are reported on the log. `verbosity` is how often
    /// --verbose was given: 1 shows at least info, 2 debug, in all categories.
    explicit Log(LogSink& sink, std::string_view choice = {}, std::size_t verbosity = 0);
    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;
    ~Log() = default;

    [[nodiscard]] bool isOn(LogCategory category, LogLevel level) const {
        return level <= levels_[static_cast<std::size_t>(category)];
    }

    void write(LogCategory category, LogLevel level, const char* text) {
        write(category, level, [text] { return text; });
    }

    /// `text()` builds the text. It may log by itself.
    template <typename Text>
    void write(LogCategory category, LogLevel level, const Text& text) {
        if (isOn(category, level)) ifThereIsMemory([&] { writeLine(category, level, text()); });
    }

    /// Writes the text that `text()` builds, unless this function wrote the same text before.
    template <typename Text>
    void once(LogCategory category, LogLevel level, const Text& text) {
        if (isOn(category, level)) ifThereIsMemory([&] { writeLineOnce(category, level, text()); });
    }

  private:
    template <typename Line>
    static void ifThereIsMemory(const Line& line) {
        static_cast<void>(hasMemoryFor(line));
    }

    void choose(std::string_view word);
    void writeLine(LogCategory category, LogLevel level, std::string_view text);
    void writeLineOnce(LogCategory category, LogLevel level, std::string_view text);
    void writeText(std::string text);

    LogSink& sink_;
    std::array<LogLevel, logCategoryCount> levels_{};
    std::mutex mutex_; ///< of what follows, and of the sink
    std::set<std::string, std::less<>> writtenOnce_;
};

/// The value of the environment variable KELVINBAR_LOG; empty when it is not set.
std::string_view logChoiceOfEnvironment();

} // namespace kelvinbar
