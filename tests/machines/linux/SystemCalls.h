#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>

namespace kelvinbar::fakes {

/// The system calls on files that this process has made so far. The test program counts them by interposing
/// the C library's functions.
struct SystemCalls {
    std::int64_t reads = 0;  ///< pread on an open file
    std::int64_t others = 0; ///< open, close, stat, read

    friend SystemCalls operator-(const SystemCalls& left, const SystemCalls& right) {
        return {left.reads - right.reads, left.others - right.others};
    }

    friend bool operator==(const SystemCalls&, const SystemCalls&) = default;
};

SystemCalls systemCallsSoFar();

/// A file whose reads do not return while the object lives, as with a driver that hangs. At most
/// eight at a time.
class StalledFile {
  public:
    /// The file must exist.
    explicit StalledFile(const std::filesystem::path& file);
    StalledFile(const StalledFile&) = delete;
    StalledFile& operator=(const StalledFile&) = delete;
    ~StalledFile();

    /// Waits until a thread is stuck in the file.
    void waitForVictim() const;

    [[nodiscard]] bool hasVictim() const;

  private:
    std::size_t place_ = 0;
};

/// The calls made by `work`.
template <typename Work>
SystemCalls systemCallsOf(Work work) {
    const SystemCalls before = systemCallsSoFar();
    work();
    return systemCallsSoFar() - before;
}

} // namespace kelvinbar::fakes
