#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Reads small text files of /proc and /sys, afresh at each call. A file that is missing, unreadable or
/// malformed yields nothing. What the system has no memory for throws std::bad_alloc: it must not look
/// absent. Any thread.
namespace kelvinbar {

/// An open file. Closes it.
class OpenFile {
  public:
    explicit OpenFile(int descriptor) : descriptor_(descriptor) {}

    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile();

    [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }

    [[nodiscard]] int descriptor() const { return descriptor_; }

  private:
    const int descriptor_; ///< -1 if the file could not be opened
};

/// Opens a regular file and returns its descriptor, which the caller closes; -1 on failure. Does not block on
/// pipes. The descriptor is not inherited by child processes.
int openRegularFile(const std::filesystem::path& file);

/// The names in a folder, in no order; none if it cannot be read.
std::vector<std::string> folderEntries(const std::filesystem::path& folder);

/// A folder with what is in it.
struct ListedFolder {
    std::filesystem::path path;     ///< absolute, without links; empty if nothing is there
    std::vector<std::string> names; ///< in no order; none if the folder could not be listed to its end
};

/// The folder that `path` leads to.
ListedFolder listedFolder(const std::filesystem::path& path);

/// Whether there is a file or folder at `path`, following links.
bool isThere(const std::filesystem::path& path);

/// Where the link at `path` leads; empty if there is no link.
std::filesystem::path linkTarget(const std::filesystem::path& path);

/// The absolute path without links; empty if nothing is there.
std::filesystem::path canonicalPath(const std::filesystem::path& path);

/// The content; of a longer file the first 64 KiB.
std::optional<std::string> systemFileText(const std::filesystem::path& file);

/// The content, trimmed of white space; nothing if that leaves an empty text.
std::optional<std::string> systemFileLine(const std::filesystem::path& file);

/// The value of the first line "name : value" with that name, trimmed of white space, in a file of /proc.
std::optional<std::string> procValue(const std::filesystem::path& file, std::string_view name);

/// The content as a decimal integer.
std::optional<std::int64_t> systemFileNumber(const std::filesystem::path& file);

} // namespace kelvinbar
