#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// Texts that drivers and firmware wrote, made fit to be part of a name.
namespace kelvinbar {

/// `text` without control and formatting characters and ill-formed bytes, with single spaces inside and none
/// at the ends.
std::string cleanedText(std::string_view text);

/// The last run of digits in a text, without leading zeros: "Tccd12" has "12".
std::optional<std::string> lastNumber(std::string_view text);

/// Whether `text` begins with the words of `words`, whatever their case, as whole words.
bool beginsWithWords(std::string_view text, std::string_view words);

/// Drops what says little from a drive's model ("SSD", "NVMe"), then words from its end, until at most
/// `most` characters are left. A single long word is cut.
std::string shortenedModel(std::string_view model, std::size_t most);

/// `text` cut to `most` characters, the last of which is then an ellipsis.
std::string cutText(std::string_view text, std::size_t most);

/// The parts that are not empty, with spaces between them.
std::string joined(std::string_view left, std::string_view right);

} // namespace kelvinbar
