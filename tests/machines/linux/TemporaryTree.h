#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

namespace kelvinbar::fakes {

/// A temporary directory for small trees of /proc and /sys, deleted by the destructor.
class TemporaryTree {
  public:
    TemporaryTree() {
        std::string pattern = (std::filesystem::temp_directory_path() / "kelvinbar-test-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) std::abort();
        root_ = pattern;
    }

    TemporaryTree(const TemporaryTree&) = delete;
    TemporaryTree& operator=(const TemporaryTree&) = delete;

    ~TemporaryTree() {
        std::error_code ignored;
        std::filesystem::remove_all(root_, ignored);
    }

    [[nodiscard]] const std::filesystem::path& root() const { return root_; }

    /// Writes the file at `path` below the root, creates its directories, and returns its full path.
    std::filesystem::path write(const std::filesystem::path& path, std::string_view content) {
        std::filesystem::path file = root_ / path;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary | std::ios::trunc) << content;
        return file;
    }

    /// Creates a directory at `path`, which cannot be read as a file.
    std::filesystem::path makeDirectory(const std::filesystem::path& path) {
        std::filesystem::create_directories(root_ / path);
        return root_ / path;
    }

    void remove(const std::filesystem::path& path) { std::filesystem::remove_all(root_ / path); }

  private:
    std::filesystem::path root_;
};

} // namespace kelvinbar::fakes
