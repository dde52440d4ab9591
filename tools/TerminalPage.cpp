#include "tools/TerminalPage.h"

#include "base/Text.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <utility>
#include <vector>

namespace kelvinbar {

namespace {

constexpr std::string_view clearRestOfLine = "\x1b[K";
constexpr std::size_t unlimited = std::numeric_limits<std::size_t>::max();

std::vector<std::string> linesOf(std::string_view page) {
    std::vector<std::string> lines;
    while (!page.empty()) {
        const std::size_t end = std::min(page.find('\n'), page.size());
        lines.emplace_back(page.substr(0, end));
        page.remove_prefix(std::min(end + 1, page.size()));
    }
    return lines;
}

/// At most `rows`, of which the last one counts those that are missing.
std::vector<std::string> fittingLines(std::vector<std::string> lines, std::size_t rows) {
    if (lines.size() <= rows) return lines;
    const std::size_t missing = lines.size() - (rows - 1);
    lines.resize(rows - 1);
    lines.push_back("… " + std::to_string(missing) + " more lines");
    return lines;
}

/// A character or a control sequence, and the columns that it takes.
struct LinePart {
    std::string_view text;
    std::size_t columns;
};

std::string_view firstPart(std::string_view line) {
    constexpr std::string_view sequenceStart = "\x1b[";
    if (!line.starts_with(sequenceStart)) return firstCharacters(line, 1);
    return line.substr(0, std::min(line.find('m'), line.size() - 1) + 1);
}

std::size_t columnsOf(std::string_view part, std::size_t column) {
    constexpr std::size_t tabDistance = 8;
    if (part == "\t") return tabDistance - column % tabDistance;
    return part.front() == '\x1b' ? 0 : 1;
}

std::vector<LinePart> partsOf(std::string_view line) {
    std::vector<LinePart> parts;
    for (std::size_t column = 0; !line.empty(); column += parts.back().columns) {
        const std::string_view text = firstPart(line);
        parts.push_back({text, columnsOf(text, column)});
        line.remove_prefix(text.size());
    }
    return parts;
}

std::size_t totalColumns(const std::vector<LinePart>& parts) {
    std::size_t columns = 0;
    for (const LinePart& part : parts) columns += part.columns;
    return columns;
}

/// The beginning of a line that is longer than `columns`, and all of its control sequences.
std::string cutLine(const std::vector<LinePart>& parts, std::size_t columns) {
    std::string cut;
    std::size_t left = columns - 1; // the mark has one
    bool isMarked = false;
    for (const LinePart& part : parts) {
        const bool isShown = part.columns == 0 || (!isMarked && part.columns <= left);
        if (isShown) {
            cut.append(part.text);
            left -= part.columns;
        } else if (!std::exchange(isMarked, true)) {
            cut.append("…");
        }
    }
    return left > 0 ? cut.append(clearRestOfLine) : cut;
}

/// With an end that clears what is left of the line before. In a line that is full, that would begin with its
/// last character.
std::string drawnLine(std::string_view line, std::size_t columns) {
    const std::vector<LinePart> parts = partsOf(line);
    const std::size_t total = totalColumns(parts);
    if (total > columns) return cutLine(parts, columns);
    return total < columns ? std::string(line).append(clearRestOfLine) : std::string(line);
}

} // namespace

std::string pageInPlace(std::string_view page, const TerminalSize& size) {
    constexpr std::string_view home = "\x1b[H";
    constexpr std::string_view clearRestOfScreen = "\x1b[J";
    const std::size_t columns = size.columns > 0 ? size.columns : unlimited;
    const std::size_t rows = size.rows > 0 ? std::max<std::size_t>(size.rows - 1, 1) : unlimited;
    std::string text(home);
    for (const std::string& line : fittingLines(linesOf(page), rows)) {
        text.append(drawnLine(line, columns)).append("\n");
    }
    return text.append(clearRestOfScreen);
}

} // namespace kelvinbar
