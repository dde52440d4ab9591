#include "desktop/linux/session/DesktopEntry.h"

#include "base/Text.h"

#include <algorithm>
#include <cstddef>

namespace kelvinbar {

namespace {

constexpr std::string_view groupHeader = "[Desktop Entry]";

/// The value of a line "Key=value". No value if the line has another key.
std::optional<std::string_view> valueIn(std::string_view line, std::string_view key) {
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || trimmed(line.substr(0, equals)) != key) return std::nullopt;
    return trimmed(line.substr(equals + 1));
}

bool beginsGroup(std::string_view line) { return trimmed(line).starts_with('['); }

/// The parts of `text` between separators, without empty ones.
std::vector<std::string_view> parts(std::string_view text, char separator) {
    std::vector<std::string_view> found;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(separator), text.size());
        if (end > 0) found.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return found;
}

/// Whether `key` lists one of the desktops. No value if the entry does not have the key.
std::optional<bool> listsDesktop(const EntryLines& lines, std::string_view key,
                                 std::string_view desktopNames) {
    const auto value = entryValue(lines, key);
    if (!value) return std::nullopt;
    const auto listed = parts(*value, ';');
    return std::ranges::any_of(parts(desktopNames, ':'), [&](std::string_view name) {
        return std::ranges::find(listed, name) != listed.end();
    });
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

} // namespace

EntryLines entryLines(std::string_view text) {
    EntryLines lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        lines.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

std::string entryText(const EntryLines& lines) {
    std::string text;
    for (const std::string& line : lines) text.append(line).append("\n");
    return text;
}

std::optional<std::string> entryValue(const EntryLines& lines, std::string_view key) {
    std::optional<std::string> value;
    bool isInGroup = false;
    for (const std::string& line : lines) {
        if (beginsGroup(line)) isInGroup = trimmed(line) == groupHeader;
        if (const auto found = valueIn(line, key); found && isInGroup) value = *found;
    }
    return value;
}

EntryLines withoutEntryValue(const EntryLines& lines, std::string_view key) {
    EntryLines result;
    bool isInGroup = false;
    for (const std::string& line : lines) {
        if (beginsGroup(line)) isInGroup = trimmed(line) == groupHeader;
        if (!isInGroup || !valueIn(line, key)) result.push_back(line);
    }
    return result;
}

EntryLines withEntryValue(const EntryLines& lines, std::string_view key, std::string_view value) {
    const auto isHeader = [](const std::string& line) { return trimmed(line) == groupHeader; };
    EntryLines result = lines;
    // Lines before the first group become lines of the new one, with their values.
    if (std::ranges::none_of(result, isHeader)) result.insert(result.begin(), std::string(groupHeader));
    result = withoutEntryValue(result, key);
    const auto header = std::ranges::find_if(result, isHeader);
    result.insert(header + 1, std::string(key).append("=").append(value));
    return result;
}

std::string unescapedEntryValue(std::string_view value) {
    std::string text;
    for (std::size_t place = 0; place < value.size(); ++place) {
        if (value[place] != '\\' || place + 1 == value.size()) {
            text += value[place];
            continue;
        }
        const char code = value[++place];
        switch (code) {
        case 's':
            text += ' ';
            break;
        case 'n':
            text += '\n';
            break;
        case 't':
            text += '\t';
            break;
        case 'r':
            text += '\r';
            break;
        case '\\':
            text += '\\';
            break;
        default:
            text.append(1, '\\').append(1, code);
        }
    }
    return text;
}

bool isShownIn(const EntryLines& lines, std::string_view desktopNames) {
    return listsDesktop(lines, "OnlyShowIn", desktopNames).value_or(true) &&
           !listsDesktop(lines, "NotShowIn", desktopNames).value_or(false);
}

std::string desktopExecValue(const std::vector<std::string>& command) {
    std::string value;
    for (const std::string& argument : command) {
        if (!value.empty()) value += ' ';
        value += quotedArgument(argument);
    }
    return escapedText(value);
}

std::vector<std::string> commandOfExecValue(std::string_view value) {
    const std::string text = unescapedEntryValue(value);
    std::vector<std::string> command;
    bool isInQuotes = false;
    bool isInArgument = false;
    const auto add = [&](std::string_view characters) {
        if (!isInArgument) command.emplace_back();
        isInArgument = true;
        command.back().append(characters);
    };
    for (std::size_t place = 0; place < text.size(); ++place) {
        const char character = text[place];
        const bool isLast = place + 1 == text.size();
        if (character == '"') {
            isInQuotes = !isInQuotes;
            add("");
        } else if (character == ' ' && !isInQuotes) {
            isInArgument = false;
        } else if (character == '%' && !isLast) {
            if (text[++place] == '%') add("%");
        } else if (character == '\\' && !isLast) {
            add(std::string_view(text).substr(++place, 1));
        } else {
            add(std::string_view(text).substr(place, 1));
        }
    }
    return command;
}

} // namespace kelvinbar
