#pragma once

#include "base/Text.h"
#include "tests/machines/linux/TemporaryTree.h"

#include <filesystem>
#include <fstream>
#include <istream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace kelvinbar::fakes {

/// A machine's /sys tree, built from its description (tests/fixtures/linux/README.md defines the format).
class RecordedTree {
  public:
    RecordedTree() = default;

    explicit RecordedTree(const std::filesystem::path& description) {
        std::ifstream stream(description);
        if (!stream) throw std::runtime_error("cannot read " + description.string());
        add(stream);
    }

    /// Adds the files that further lines describe.
    void add(const std::string& lines) {
        std::istringstream stream(lines);
        add(stream);
    }

    [[nodiscard]] const std::filesystem::path& root() const { return tree_.root(); }

    [[nodiscard]] TemporaryTree& tree() { return tree_; }

  private:
    void add(std::istream& stream) {
        for (std::string line; std::getline(stream, line);) {
            if (!line.empty() && line.front() != '#') take(line);
        }
    }

    using Words = std::pair<std::string, std::string>;

    /// The first word, and what follows the space after it.
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
        tellBuses(parent.filename() == "hwmon" ? parent.parent_path() : parent);
    }

    /// The bus or class of a device, derived from its path.
    static std::string subsystemOf(const std::filesystem::path& device) {
        const std::string folder = device.parent_path().filename().string();
        const std::string name = device.filename().string();
        for (const char* const ofClass : {"nvme", "power_supply", "ieee80211", "thermal"}) {
            if (folder == ofClass) return ofClass;
        }
        if (folder.starts_with("i2c-")) return "i2c";
        if (folder.starts_with("target")) return "scsi";
        if (folder.starts_with("wmi_bus-")) return "wmi";
        if (name.starts_with("0000:")) return "pci";
        return contains(device.string(), "LNXSYSTM") ? "acpi" : "platform";
    }

    /// Adds the `subsystem` links of a chip's device; for a device in a class, also the link to its parent.
    void tellBuses(const std::filesystem::path& device) {
        const std::filesystem::path folder = "sys" / device;
        if (std::filesystem::is_symlink(root() / folder / "subsystem")) return;
        const std::string subsystem = subsystemOf(device);
        link(folder / "subsystem", "/sys/bus/" + subsystem);
        if (device.parent_path().filename() != subsystem || subsystem == "thermal") return;
        const std::filesystem::path owner = device.parent_path().parent_path();
        link(folder / "device", "../../../" / owner.filename());
        tellBuses(owner);
    }

    void link(const std::filesystem::path& path, const std::filesystem::path& target) {
        std::filesystem::create_directories((root() / path).parent_path());
        std::filesystem::create_symlink(target, root() / path);
    }

    TemporaryTree tree_;
    std::filesystem::path folder_;
};

} // namespace kelvinbar::fakes
