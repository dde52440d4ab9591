#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// Cleans up texts from drivers and firmware, which contain padding, control characters and broken UTF-8, and
/// shortens them for names. Lengths are in characters. Pure functions.
namespace kelvinbar {

/// `text` without control characters, formatting characters and ill-formed bytes, with single spaces inside
/// and none at the ends.
std::string cleanedText(std::string_view text);

/// The last run of digits in a text, without leading zeros: "12" of "Tccd12".
std::optional<std::string> lastNumber(std::string_view text);

/// Whether `text` begins with `words`, as whole words and ignoring case.
bool beginsWithWords(std::string_view text, std::string_view words);

/// Shortens a drive's model to at most `most` characters: drops words without information ("SSD", "NVMe"),
/// then words from the end. A single long word is cut.
std::string shortenedModel(std::string_view model, std::size_t most);

/// `text` cut to `most` characters, the last of them an ellipsis.
std::string cutText(std::string_view text, std::size_t most);

/// Both parts with a space in between; an empty part is left out.
std::string joined(std::string_view left, std::string_view right);

} // namespace kelvinbar
