#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Texts and numbers as the formats print them. Pure functions; any thread.
namespace kelvinbar {

/// `text` with U+FFFD in place of ill-formed bytes and control characters. Names come from drivers and files,
/// and could otherwise end a line or move the cursor.
std::string printableText(std::string_view text);

/// The shortest decimal text that is read back as `number`, without ".0" for whole numbers; empty for
/// infinities and NaN. Independent of the locale.
std::string shortestText(double number);

/// `text` followed by spaces up to `width` characters; `text` itself if it is not shorter.
std::string padded(std::string_view text, std::size_t width);

/// `text` preceded by spaces up to `width` characters.
std::string rightAligned(std::string_view text, std::size_t width);

} // namespace kelvinbar
