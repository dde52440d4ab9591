#include "platform/linux/AutostartEntry.h"

#include "base/Text.h"
#include "platform/linux/SystemFile.h"

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <optional>
#include <system_error>
#include <utility>

#include <unistd.h>

namespace kelvinbar {

namespace {

namespace fs = std::filesystem;

using Lines = std::vector<std::string>;

constexpr std::string_view group = "[Desktop Entry]";

Lines linesOf(std::string_view text) {
    Lines lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        lines.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

/// The value of a line "Key=value" of that key.
std::optional<std::string_view> valueIn(std::string_view line, std::string_view key) {
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || trimmed(line.substr(0, equals)) != key) return std::nullopt;
    return trimmed(line.substr(equals + 1));
}

bool beginsGroup(std::string_view line) { return trimmed(line).starts_with('['); }

/// The value of a key of the entry's own group; the last one counts.
std::optional<std::string> valueOf(const Lines& lines, std::string_view key) {
    std::optional<std::string> value;
    bool isInGroup = false;
    for (const std::string& line : lines) {
        if (beginsGroup(line)) isInGroup = trimmed(line) == group;
        if (const auto found = valueIn(line, key); found && isInGroup) value = *found;
    }
    return value;
}

/// `lines` with one line for the key in the entry's own group.
Lines withValue(const Lines& lines, std::string_view key, std::string_view value) {
    Lines result;
    bool isInGroup = false;
    for (const std::string& line : lines) {
        if (beginsGroup(line)) isInGroup = trimmed(line) == group;
        if (isInGroup && valueIn(line, key)) continue;
        result.push_back(line);
        if (isInGroup && beginsGroup(line)) {
            result.push_back(std::string(key).append("=").append(value));
        }
    }
    return result;
}

/// Writes `text` so that `file` is either what it was or all of the new.
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

/// An argument in quotes, with the characters escaped that mean something in them; "%" introduces a field.
std::string quotedArgument(std::string_view argument) {
    std::string quoted = "\"";
    for (const char character : argument) {
        if (character == '"' || character == '`' || character == '$' || character == '\\') quoted += '\\';
        if (character == '%') quoted += '%';
        quoted += character;
    }
    return quoted + "\"";
}

/// The escapes of every text value, which are undone before the quotes are looked at.
std::string escapedText(std::string_view text) {
    std::string escaped = replacedAll(text, "\\", "\\\\");
    escaped = replacedAll(escaped, "\n", "\\n");
    escaped = replacedAll(escaped, "\t", "\\t");
    return replacedAll(escaped, "\r", "\\r");
}

} // namespace

AutostartEntry::AutostartEntry(fs::path folder, const std::string& name, std::vector<std::string> command,
                               Actions actions)
    : file_(std::move(folder) / (name + ".desktop"))
    , command_(std::move(command))
    , actions_(std::move(actions)) {}

bool AutostartEntry::isRegistered() const {
    const auto text = systemFileText(file_);
    if (!text) return false;
    const Lines lines = linesOf(*text);
    return valueOf(lines, "Exec") && valueOf(lines, "Hidden") != "true" &&
           valueOf(lines, "X-GNOME-Autostart-enabled") != "false";
}

bool AutostartEntry::registerItem() {
    std::error_code error;
    fs::create_directories(file_.parent_path(), error);
    return replaceFile(file_, enabledEntry());
}

std::string AutostartEntry::enabledEntry() const {
    Lines lines = linesOf(systemFileText(file_).value_or(""));
    if (!valueOf(lines, "Type")) {
        lines = {std::string(group), "Type=Application", "Name=Kelvinbar",
                 "Comment=Sensor readings in the panel", "Icon=kelvinbar"};
    }
    lines = withValue(lines, "Exec", desktopExecValue(command_));
    lines = withValue(lines, "Hidden", "false");
    if (valueOf(lines, "X-GNOME-Autostart-enabled")) {
        lines = withValue(lines, "X-GNOME-Autostart-enabled", "true");
    }
    std::string text;
    for (const std::string& line : lines) text.append(line).append("\n");
    return text;
}

bool AutostartEntry::unregisterItem() {
    std::error_code error;
    fs::remove(file_, error);
    return !error;
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
