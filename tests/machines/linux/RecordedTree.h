#pragma once

#include "tests/machines/linux/TemporaryTree.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace kelvinbar::fakes {

/// A machine's tree of /sys, built from its description (tests/fixtures/linux/README.md has the format).
class RecordedTree {
  public:
    explicit RecordedTree(const std::filesystem::path& description) {
        std::ifstream stream(description);
        if (!stream) throw std::runtime_error("cannot read " + description.string());
        for (std::string line; std::getline(stream, line);) {
            if (!line.empty() && line.front() != '#') take(line);
        }
    }

    [[nodiscard]] const std::filesystem::path& root() const { return tree_.root(); }

    [[nodiscard]] TemporaryTree& tree() { return tree_; }

  private:
    using Words = std::pair<std::string, std::string>;

    /// The first word and what follows the blank after it.
    static Words split(std::string_view line) {
        const std::size_t blank = line.find(' ');
        if (blank == std::string_view::npos) return {std::string(line), ""};
        return {std::string(line.substr(0, blank)), std::string(line.substr(blank + 1))};
    }

    void take(const std::string& line) {
        const auto& [word, rest] = split(line);
        if (word == "chip") {
            beginChip(rest);
        } else if (word == "dir") {
            folder_ = rest;
            tree_.makeDirectory(folder_);
        } else if (word == "link") {
            const auto& [path, target] = split(rest);
            link(path, target);
        } else {
            tree_.write(folder_ / word, rest + "\n");
        }
    }

    void beginChip(const std::filesystem::path& path) {
        folder_ = "sys" / path;
        tree_.makeDirectory(folder_);
        link("sys/class/hwmon" / path.filename(), "../../" / path);
        const std::filesystem::path parent = path.parent_path();
        link(folder_ / "device", parent.filename() == "hwmon" ? "../../../" / parent.parent_path().filename()
                                                              : "../../" / parent.filename());
    }

    void link(const std::filesystem::path& path, const std::filesystem::path& target) {
        std::filesystem::create_directories((root() / path).parent_path());
        std::filesystem::create_symlink(target, root() / path);
    }

    TemporaryTree tree_;
    std::filesystem::path folder_;
};

} // namespace kelvinbar::fakes
