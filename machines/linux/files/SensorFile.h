#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace kelvinbar {

/// The number of attribute files that are currently open.
using OpenFileCount = std::shared_ptr<std::atomic<int>>;

/// A sysfs attribute, opened once and read in place: one system call per read instead of three.
///
/// Only regular files are accepted and opening never blocks, so that a pipe in place of a file cannot stall a
/// pass. Reading blocks for as long as the driver takes. Descriptors are not inherited by child processes.
/// Any thread; concurrent reads are allowed.
class SensorFile {
  public:
    /// Opens `path` and keeps it open.
    explicit SensorFile(const std::filesystem::path& path);

    /// Likewise. Once `openFiles` has reached `limit`, the file is opened for each read instead.
    SensorFile(const std::filesystem::path& path, OpenFileCount openFiles, int limit);
    SensorFile(const SensorFile&) = delete;
    SensorFile& operator=(const SensorFile&) = delete;
    ~SensorFile();

    /// Whether there is a file to read.
    [[nodiscard]] bool isOpen() const { return !path_.empty(); }

    /// Whether the open file is still the one at `path`. A device that was removed and returns has new files
    /// under the same paths, and the old descriptors fail.
    [[nodiscard]] bool isStillAt(const std::filesystem::path& path) const;

    /// The file's only line without its line feed, stored in `buffer`. Nothing when the file cannot be read,
    /// does not end with a line feed or exceeds the buffer: the kernel always writes complete lines.
    [[nodiscard]] std::optional<std::string_view> line(std::span<char> buffer) const;

    /// The decimal integer in the file; nothing for any other content.
    [[nodiscard]] std::optional<std::int64_t> number() const;

  private:
    OpenFileCount openFiles_;
    int descriptor_ = -1;                              ///< -1 if the file is opened for each read
    std::pair<std::uint64_t, std::uint64_t> identity_; ///< device and inode of the open file
    std::filesystem::path path_;                       ///< empty if there is no file to read
};

/// The decimal integer that makes up `line`. Surrounding spaces are allowed, since some drivers pad their
/// numbers.
std::optional<std::int64_t> numberInLine(std::string_view line);

/// The attribute files of one machine. Files that are in use are shared, not opened again. Any thread.
class SensorFiles {
  public:
    /// Half of the usual limit of 1024 open files per process.
    static constexpr int mostOpenFiles = 512;

    explicit SensorFiles(int limit = mostOpenFiles) : limit_(limit) {}

    /// The file at `path`. Never null; a file that cannot be opened is not open.
    std::shared_ptr<const SensorFile> open(const std::filesystem::path& path);

  private:
    /// The file at `path` if it is in use, else null.
    std::shared_ptr<const SensorFile> known(const std::filesystem::path& path);

    const int limit_;
    const OpenFileCount openFiles_ = std::make_shared<std::atomic<int>>(0);
    std::mutex mutex_; ///< guards the members below; not held while a file is opened
    std::unordered_map<std::string, std::weak_ptr<const SensorFile>> files_;
    std::size_t mostKnown_ = 1024; ///< at which files that are no longer in use are forgotten
};

} // namespace kelvinbar
