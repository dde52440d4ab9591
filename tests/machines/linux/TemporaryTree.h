#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

namespace kelvinbar::fakes {

/// A directory of a test's own that goes away with it, for small trees of /proc and /sys.
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

    /// Writes the file at `path` below the root, with the directories that lead to it, and gives its place.
    std::filesystem::path write(const std::filesystem::path& path, std::string_view content) {
        std::filesystem::path file = root_ / path;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary | std::ios::trunc) << content;
        return file;
    }

    /// Makes `path` a directory, which no one can read as a file.
    std::filesystem::path makeDirectory(const std::filesystem::path& path) {
        std::filesystem::create_directories(root_ / path);
        return root_ / path;
    }

    void remove(const std::filesystem::path& path) { std::filesystem::remove_all(root_ / path); }

  private:
    std::filesystem::path root_;
};

} // namespace kelvinbar::fakes
