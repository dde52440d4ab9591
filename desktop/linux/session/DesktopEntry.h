#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The text of a desktop entry, a file by which desktops start programs: groups of lines "Key=value", of
/// which the group [Desktop Entry] matters here. A change keeps all other lines. Pure functions.
namespace kelvinbar {

using EntryLines = std::vector<std::string>;

EntryLines entryLines(std::string_view text);

/// The lines with their line ends.
std::string entryText(const EntryLines& lines);

/// The value of `key`, as it is in the file. The last of several wins.
std::optional<std::string> entryValue(const EntryLines& lines, std::string_view key);

/// `lines` without `key`.
EntryLines withoutEntryValue(const EntryLines& lines, std::string_view key);

/// `lines` with exactly one line for `key`. Adds the group if it is missing.
EntryLines withEntryValue(const EntryLines& lines, std::string_view key, std::string_view value);

/// Resolves the escape sequences of a string value.
std::string unescapedEntryValue(std::string_view value);

/// Whether the entry is for one of the desktops in `desktopNames`, the value of XDG_CURRENT_DESKTOP, by its
/// keys OnlyShowIn and NotShowIn.
bool isShownIn(const EntryLines& lines, std::string_view desktopNames);

/// A program and its arguments as the value of the key Exec, with all characters escaped that need it.
std::string desktopExecValue(const std::vector<std::string>& command);

/// The program and its arguments in a value of the key Exec. Field codes such as "%f" are left out.
std::vector<std::string> commandOfExecValue(std::string_view value);

} // namespace kelvinbar
