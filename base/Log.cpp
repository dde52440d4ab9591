#include "base/Log.h"

#include "base/Text.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <utility>

namespace kelvinbar {

namespace {

/// In the order of LogCategory.
constexpr std::array<std::string_view, logCategoryCount> categoryNames{
    "source.smc", "source.kernel", "keys", "preferences", "tray", "panel", "login"};

/// In the order of LogLevel.
constexpr std::array<std::string_view, 4> levelNames{"error", "warning", "info", "debug"};

template <typename Named, std::size_t count>
std::optional<Named> named(const std::array<std::string_view, count>& names, std::string_view text) {
    const auto found = std::ranges::find(names, asciiLowercased(trimmed(text)));
    if (found == names.end()) return std::nullopt;
    return static_cast<Named>(std::ranges::distance(names.begin(), found));
}

LogLevel lowestLevel(std::size_t verbosity) {
    constexpr std::array levels{LogLevel::warning, LogLevel::info, LogLevel::debug};
    return levels[std::min(verbosity, levels.size() - 1)];
}

} // namespace

Log::Log(LogSink& sink, std::string_view choice, std::size_t verbosity) : sink_(sink) {
    levels_.fill(LogLevel::warning);
    for (std::size_t start = 0; start < choice.size();) {
        const std::size_t end = std::min(choice.find(',', start), choice.size());
        choose(trimmed(choice.substr(start, end - start)));
        start = end + 1;
    }
    if (verbosity == 0) return;
    for (LogLevel& level : levels_) level = std::max(level, lowestLevel(verbosity));
}

void Log::choose(std::string_view word) {
    if (word.empty()) return;
    const std::size_t equals = word.find('=');
    const bool isForAll = equals == std::string_view::npos;
    const auto level = named<LogLevel>(levelNames, isForAll ? word : word.substr(equals + 1));
    const auto category = named<LogCategory>(categoryNames, word.substr(0, equals));
    if (level && isForAll) {
        levels_.fill(*level);
    } else if (level && category) {
        levels_[static_cast<std::size_t>(*category)] = *level;
    } else if (writtenOnce_.emplace(word).second) {
        writeText(std::string("KELVINBAR_LOG: \"").append(word).append("\" is not known and is ignored"));
    }
}

/// Warnings and errors address the user, who need not know of categories.
void Log::writeLine(LogCategory category, LogLevel level, std::string_view text) {
    std::string line;
    if (level > LogLevel::warning) {
        line.append(categoryNames[static_cast<std::size_t>(category)]).append(" ");
        line.append(levelNames[static_cast<std::size_t>(level)]).append(": ");
    }
    const std::scoped_lock lock(mutex_);
    writeText(line.append(text));
}

void Log::writeLineOnce(LogCategory category, LogLevel level, std::string_view text) {
    {
        const std::scoped_lock lock(mutex_);
        if (!writtenOnce_.emplace(text).second) return;
    }
    writeLine(category, level, text);
}

/// One line, whatever line ends a file name or a product name brings along.
void Log::writeText(std::string text) {
    std::ranges::replace_if(text, [](char character) { return character == '\n' || character == '\r'; }, ' ');
    sink_.write("kelvinbar: " + text + "\n");
}

std::string_view logChoiceOfEnvironment() {
    const char* const choice =
        std::getenv("KELVINBAR_LOG"); // NOLINT(concurrency-mt-unsafe): nobody writes it
    return choice == nullptr ? std::string_view() : choice;
}

} // namespace kelvinbar
