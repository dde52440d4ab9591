#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace kelvinbar {

/// An attribute file of the kernel, opened once and read in place. Opening never waits, is not inherited by
/// other programs and takes nothing but a regular file, so that a pipe in its place cannot stall a pass. The
/// process keeps a bounded number of these files open; those beyond are opened for each reading.
/// Reading is possible from several threads at a time.
class SensorFile {
  public:
    /// Files that the process keeps open at most, of the 1024 that a process usually may have.
    static constexpr int mostOpenFiles = 512;

    SensorFile() = default;
    explicit SensorFile(std::filesystem::path path);
    SensorFile(const SensorFile&) = delete;
    SensorFile& operator=(const SensorFile&) = delete;
    SensorFile(SensorFile&& other) noexcept;
    SensorFile& operator=(SensorFile&& other) noexcept;
    ~SensorFile();

    /// The file at `path`, shared with whoever has it open already. Any thread.
    static std::shared_ptr<const SensorFile> shared(const std::filesystem::path& path);

    /// Whether there is a file to read.
    [[nodiscard]] bool isOpen() const { return descriptor_ >= 0 || !path_.empty(); }

    /// The line in the file without its line feed, held in `buffer`. Nothing when the file cannot be read,
    /// has no line feed at its end or does not fit: the kernel always writes a whole line.
    [[nodiscard]] std::optional<std::string_view> line(std::span<char> buffer) const;

    /// The decimal whole number in the file; nothing when it holds anything else.
    [[nodiscard]] std::optional<std::int64_t> number() const;

  private:
    [[nodiscard]] bool isStillAt(const std::filesystem::path& path) const;

    int descriptor_ = -1;
    std::pair<std::uint64_t, std::uint64_t> identity_; ///< device and inode of the open file
    std::filesystem::path path_;                       ///< set when the file is opened for each reading
};

} // namespace kelvinbar
