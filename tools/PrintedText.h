#pragma once

#include "base/Text.h"
#include "catalogue/SMCReading.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Texts and numbers as the formats print them. Pure functions; any thread.
namespace kelvinbar {

/// `text` with U+FFFD in place of ill-formed bytes and control characters. Names come from drivers and files,
/// and could otherwise end a line or move the cursor.
std::string printableText(std::string_view text);

/// The shortest decimal text that is read back as `number`, without ".0" for whole numbers; empty for
/// infinities and NaN. Independent of the locale.
std::string shortestText(double number);

/// `number` as the value of a reading in `unit` is displayed, but "0" for what is rounded to "-0".
std::string numberText(double number, std::string_view unit);

/// The same with its sign, "+" too, unless it is "0".
std::string changeText(double change, std::string_view unit);

/// Values that are "-0" become "0".
void dropSignsOfZero(std::vector<SMCReading>& readings);

/// `text` followed by spaces up to `width` characters; `text` itself if it is not shorter.
std::string padded(std::string_view text, std::size_t width);

/// `text` preceded by spaces up to `width` characters.
std::string rightAligned(std::string_view text, std::size_t width);

/// The number of characters of the longest field in each column.
template <std::size_t columns>
std::array<std::size_t, columns> columnWidths(const std::vector<std::array<std::string, columns>>& rows) {
    std::array<std::size_t, columns> widths{};
    for (const auto& row : rows) {
        for (std::size_t column = 0; column < columns; ++column) {
            widths.at(column) = std::max(widths.at(column), characterCount(row.at(column)));
        }
    }
    return widths;
}

} // namespace kelvinbar
