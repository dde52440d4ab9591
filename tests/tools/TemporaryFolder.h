#pragma once

#include "tests/FileContent.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

#include <gtest/gtest.h>

namespace kelvinbar {

/// A folder of its own for one test, gone with it.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "kelvinbar-test-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr) ADD_FAILURE() << "no temporary folder";
        path_ = pattern;
    }

    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    /// The path of the file `name` in here, which need not be there.
    [[nodiscard]] std::string path(std::string_view name) const { return (path_ / name).string(); }

    /// Writes the file `name`; its path.
    [[nodiscard]] std::string write(std::string_view name, std::string_view content) const {
        std::ofstream stream(path_ / name, std::ios::binary);
        stream << content;
        EXPECT_TRUE(stream.flush());
        return path(name);
    }

  private:
    std::filesystem::path path_;
};

} // namespace kelvinbar
