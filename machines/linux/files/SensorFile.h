#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace kelvinbar {

/// The number of attribute files that are open at the moment.
using OpenFileCount = std::shared_ptr<std::atomic<int>>;

/// An attribute file of the kernel, opened once and read in place. Opening never waits, is not inherited by
/// child processes and accepts regular files only, so that a pipe in its place cannot stall a pass. Any
/// thread; two may read at once.
class SensorFile {
  public:
    /// Opens `path` and keeps it open.
    explicit SensorFile(const std::filesystem::path& path);

    /// Likewise, but once `openFiles` has reached `limit`, the file is opened for each read instead.
    SensorFile(const std::filesystem::path& path, OpenFileCount openFiles, int limit);
    SensorFile(const SensorFile&) = delete;
    SensorFile& operator=(const SensorFile&) = delete;
    ~SensorFile();

    /// Whether there is a file to read.
    [[nodiscard]] bool isOpen() const { return descriptor_ >= 0 || !path_.empty(); }

    /// Whether the open file is still the one at `path`: a device that returns has new files.
    [[nodiscard]] bool isStillAt(const std::filesystem::path& path) const;

    /// The line in the file without its line feed, stored in `buffer`. Nothing when the file cannot be read,
    /// does not end with a line feed or does not fit: the kernel always writes a whole line.
    [[nodiscard]] std::optional<std::string_view> line(std::span<char> buffer) const;

    /// The decimal whole number in the file; nothing when it holds anything else.
    [[nodiscard]] std::optional<std::int64_t> number() const;

  private:
    OpenFileCount openFiles_;
    int descriptor_ = -1;
    std::pair<std::uint64_t, std::uint64_t> identity_; ///< device and inode of the open file
    std::filesystem::path path_;                       ///< set when the file is opened for each read
};

/// The decimal whole number that is all of `line`, apart from spaces: some drivers pad their numbers.
std::optional<std::int64_t> numberInLine(std::string_view line);

/// The attribute files of one machine. A file that is still in use is shared and not opened again. One thread
/// at a time.
class SensorFiles {
  public:
    /// A process usually may have 1024 files open; sensors take no more than half of them.
    static constexpr int mostOpenFiles = 512;

    explicit SensorFiles(int limit = mostOpenFiles) : limit_(limit) {}

    /// The file at `path`; never null.
    std::shared_ptr<const SensorFile> open(const std::filesystem::path& path);

  private:
    int limit_;
    OpenFileCount openFiles_ = std::make_shared<std::atomic<int>>(0);
    std::unordered_map<std::string, std::weak_ptr<const SensorFile>> files_;
};

} // namespace kelvinbar
