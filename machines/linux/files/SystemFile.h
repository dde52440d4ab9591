#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

/// Reads small text files of /proc and /sys, afresh at each call. A file that is missing, unreadable or
/// malformed yields nothing. Any thread.
namespace kelvinbar {

/// Opens a regular file and returns its descriptor, which the caller closes; -1 on failure. Does not block on
/// pipes. The descriptor is not inherited by child processes.
int openRegularFile(const std::filesystem::path& file);

/// The content; of a longer file the first 64 KiB.
std::optional<std::string> systemFileText(const std::filesystem::path& file);

/// The content, trimmed of white space; nothing if that leaves an empty text.
std::optional<std::string> systemFileLine(const std::filesystem::path& file);

/// The content as a decimal integer.
std::optional<std::int64_t> systemFileNumber(const std::filesystem::path& file);

} // namespace kelvinbar
