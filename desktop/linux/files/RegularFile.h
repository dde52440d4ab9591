#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

/// The user's own files, which are read and written only if they are regular ones, also behind symbolic
/// links. Opening a pipe would block the program, and a write that replaces its file would replace a device
/// by it. Any thread.
namespace kelvinbar {

/// What a path leads to, through symbolic links.
enum class FileKind {
    regular,
    missing, ///< also a link to nothing
    other,   ///< a folder, a pipe, a device, a link to itself, or what cannot be told
};

FileKind kindOf(const std::filesystem::path& file);

/// The content of a regular file. No value if it is anything else, cannot be read in full, or has more than
/// `limit` bytes. Never waits for another process.
std::optional<std::string> regularContent(const std::filesystem::path& file, std::size_t limit);

/// The file to replace so that `file` has other content and stays the link that it may be: the end of its
/// links. No value unless that is a regular file, or nothing yet in a folder that is there.
std::optional<std::filesystem::path> replaceableFile(const std::filesystem::path& file);

} // namespace kelvinbar
