#include "desktop/linux/AutostartEntry.h"

#include "base/Text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <optional>
#include <sstream>
#include <system_error>
#include <utility>

#include <unistd.h>

namespace kelvinbar {

namespace {

namespace fs = std::filesystem;

using Lines = std::vector<std::string>;

constexpr std::string_view groupHeader = "[Desktop Entry]";

/// Some desktops disable an entry with their own key instead of Hidden.
constexpr std::array<std::string_view, 2> enablingKeys{"X-GNOME-Autostart-enabled",
                                                       "X-MATE-Autostart-enabled"};

/// Mandatory keys of a desktop entry. Added to an entry that lacks them.
constexpr std::array<std::pair<std::string_view, std::string_view>, 2> requiredValues{{
    {"Name", "Kelvinbar"},
    {"Type", "Application"},
}};

constexpr std::string_view newEntry = "[Desktop Entry]\nType=Application\nName=Kelvinbar\n"
                                      "Comment=Sensor readings in the panel\nIcon=kelvinbar\n";

Lines linesOf(std::string_view text) {
    Lines lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        lines.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

/// The value of a line "Key=value". No value if the line has another key.
std::optional<std::string_view> valueIn(std::string_view line, std::string_view key) {
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || trimmed(line.substr(0, equals)) != key) return std::nullopt;
    return trimmed(line.substr(equals + 1));
}

bool beginsGroup(std::string_view line) { return trimmed(line).starts_with('['); }

/// The value of a key in the group [Desktop Entry]. The last of several wins.
std::optional<std::string> valueOf(const Lines& lines, std::string_view key) {
    std::optional<std::string> value;
    bool isInGroup = false;
    for (const std::string& line : lines) {
        if (beginsGroup(line)) isInGroup = trimmed(line) == groupHeader;
        if (const auto found = valueIn(line, key); found && isInGroup) value = *found;
    }
    return value;
}

/// `lines` with exactly one line for `key` in the group [Desktop Entry].
Lines withValue(const Lines& lines, std::string_view key, std::string_view value) {
    Lines result;
    bool isInGroup = false;
    for (const std::string& line : lines) {
        if (beginsGroup(line)) isInGroup = trimmed(line) == groupHeader;
        if (isInGroup && valueIn(line, key)) continue;
        result.push_back(line);
        if (isInGroup && beginsGroup(line)) {
            result.push_back(std::string(key).append("=").append(value));
        }
    }
    return result;
}

/// Replaces the content of `file` atomically.
bool replaceFile(const fs::path& file, const std::string& text) {
    fs::path temporary = file;
    temporary += ".new";
    const int descriptor = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (descriptor < 0) return false;
    const bool isWritten =
        ::write(descriptor, text.data(), text.size()) == static_cast<ssize_t>(text.size()) &&
        ::fsync(descriptor) == 0;
    ::close(descriptor);
    std::error_code error;
    if (isWritten) fs::rename(temporary, file, error);
    const bool isReplaced = isWritten && !error;
    if (!isReplaced) fs::remove(temporary, error);
    return isReplaced;
}

/// `argument` in quotes, with reserved characters escaped. "%" introduces a field code and is doubled.
std::string quotedArgument(std::string_view argument) {
    std::string quoted = "\"";
    for (const char character : argument) {
        if (character == '"' || character == '`' || character == '$' || character == '\\') quoted += '\\';
        if (character == '%') quoted += '%';
        quoted += character;
    }
    return quoted + "\"";
}

/// Applies the escape sequences of all string values. Desktops resolve them before they parse the quotes.
std::string escapedText(std::string_view text) {
    std::string escaped = replacedAll(text, "\\", "\\\\");
    escaped = replacedAll(escaped, "\n", "\\n");
    escaped = replacedAll(escaped, "\t", "\\t");
    return replacedAll(escaped, "\r", "\\r");
}

/// The content of `file`. No value if it cannot be read or is too large for a desktop entry. Opens only
/// regular files: a pipe would block the program.
std::optional<std::string> entryText(const fs::path& file) {
    constexpr std::uintmax_t limit = std::uintmax_t{64} * 1024;
    std::error_code error;
    if (!fs::is_regular_file(file, error) || fs::file_size(file, error) > limit) return std::nullopt;
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream text;
    text << stream.rdbuf();
    return stream ? std::optional(std::move(text).str()) : std::nullopt;
}

} // namespace

AutostartEntry::AutostartEntry(const fs::path& folder, const std::string& name,
                               std::vector<std::string> command, Actions actions, Log& log)
    : file_(folder / (name + ".desktop"))
    , command_(std::move(command))
    , actions_(std::move(actions))
    , log_(log) {}

bool AutostartEntry::isRegistered() const {
    const auto text = entryText(file_);
    if (!text) return false;
    const Lines lines = linesOf(*text);
    const bool isDisabled = std::ranges::any_of(
        enablingKeys, [&](std::string_view key) { return valueOf(lines, key) == "false"; });
    return valueOf(lines, "Exec") && valueOf(lines, "Hidden") != "true" && !isDisabled;
}

bool AutostartEntry::registerItem() {
    std::error_code error;
    fs::create_directories(file_.parent_path(), error);
    const auto entry = enabledEntry();
    if (!entry) return logged(LogLevel::error, "cannot be read in full and is left as it is");
    if (!replaceFile(file_, *entry)) return logged(LogLevel::error, "cannot be written");
    return logged(LogLevel::info, "is written");
}

/// Returns false if `level` is error, so that the caller can log and return in one statement.
bool AutostartEntry::logged(LogLevel level, const char* what) const {
    log_.write(LogCategory::login, level,
               [&] { return "the autostart entry " + file_.string() + " " + what; });
    return level != LogLevel::error;
}

/// The existing entry, or a new one, enabled. No value if there is an entry that cannot be read completely.
std::optional<std::string> AutostartEntry::enabledEntry() const {
    std::error_code error;
    const auto text = entryText(file_);
    if (fs::exists(file_, error) && !text) return std::nullopt;
    Lines lines = linesOf(text.value_or(std::string(newEntry)));
    if (std::ranges::none_of(lines, [](const std::string& line) { return trimmed(line) == groupHeader; })) {
        lines.insert(lines.begin(), std::string(groupHeader));
    }
    for (const auto& [key, value] : requiredValues) {
        if (!valueOf(lines, key)) lines = withValue(lines, key, value);
    }
    lines = withValue(lines, "Exec", desktopExecValue(command_));
    lines = withValue(lines, "Hidden", "false");
    for (const std::string_view key : enablingKeys) {
        if (valueOf(lines, key)) lines = withValue(lines, key, "true");
    }
    std::string entry;
    for (const std::string& line : lines) entry.append(line).append("\n");
    return entry;
}

bool AutostartEntry::unregisterItem() {
    std::error_code error;
    fs::remove(file_, error);
    return error ? logged(LogLevel::error, "cannot be removed") : logged(LogLevel::info, "is removed");
}

fs::path userAutostartFolder() {
    const char* const config =
        std::getenv("XDG_CONFIG_HOME"); // NOLINT(concurrency-mt-unsafe): nobody writes it
    if (config != nullptr && *config == '/') return fs::path(config) / "autostart";
    const char* const home = std::getenv("HOME"); // NOLINT(concurrency-mt-unsafe)
    return fs::path(home == nullptr ? "/" : home) / ".config/autostart";
}

std::string desktopExecValue(const std::vector<std::string>& command) {
    std::string value;
    for (const std::string& argument : command) {
        if (!value.empty()) value += ' ';
        value += quotedArgument(argument);
    }
    return escapedText(value);
}

} // namespace kelvinbar
