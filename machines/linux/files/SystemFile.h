#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

/// Reading the small text files of /proc and /sys. A file that is missing, unreadable or not what is expected
/// gives nothing.
namespace kelvinbar {

/// A descriptor of the regular file at `file`, not inherited by other programs; -1 when there is none. Never
/// waits, as opening a pipe would.
int openRegularFile(const std::filesystem::path& file);

/// The content, at most 64 KiB of it.
std::optional<std::string> systemFileText(const std::filesystem::path& file);

/// The content without white space at both ends; nothing as well when that leaves nothing.
std::optional<std::string> systemFileLine(const std::filesystem::path& file);

/// The content as one decimal whole number.
std::optional<std::int64_t> systemFileNumber(const std::filesystem::path& file);

} // namespace kelvinbar
