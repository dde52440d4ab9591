#include "store/MenuBarText.h"

#include "base/Text.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace kelvinbar {

namespace {

std::string toolTipLine(const SMCReading& reading) {
    return reading.key + " • " + reading.name + ": " + reading.displayValue();
}

} // namespace

std::vector<std::string> sanitizedPinnedKeys(const std::vector<std::string>& keys) {
    std::vector<std::string> taken;
    for (const std::string& key : keys) {
        const std::string_view candidate = trimmed(key);
        const bool isNew = std::ranges::find(taken, candidate) == taken.end();
        if (!candidate.empty() && isNew) taken.emplace_back(candidate);
        if (taken.size() == maximumPinnedKeys) break;
    }
    return taken;
}

std::string compactMenuBarValue(const SMCReading& reading) {
    constexpr std::array<std::pair<std::string_view, std::string_view>, 6> abbreviations{{
        {" °C", "°"},
        {"°C", "°"},
        {" RPM", "rpm"},
        {" rpm", "rpm"},
        {" MHz", "MHz"},
        {"  ", " "},
    }};
    constexpr std::size_t maximumCharacters = 12;
    std::string text(trimmed(reading.displayValue()));
    for (const auto& [from, to] : abbreviations) text = replacedAll(text, from, to);
    return std::string(firstCharacters(text, maximumCharacters));
}

std::string menuBarTitleText(const std::vector<SMCReading>& pinned) {
    std::string title;
    for (const SMCReading& reading : pinned) {
        title.append(title.empty() ? " " : "  ").append(compactMenuBarValue(reading));
    }
    return title;
}

std::string menuBarToolTipText(const std::vector<SMCReading>& pinned) {
    if (pinned.empty()) return "Kelvinbar - double-click up to 6 sensors to show them here";
    std::string lines;
    for (const SMCReading& reading : pinned) {
        lines.append(lines.empty() ? "" : "  |  ").append(toolTipLine(reading));
    }
    return "Kelvinbar • " + lines;
}

} // namespace kelvinbar
