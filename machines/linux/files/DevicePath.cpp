#include "machines/linux/files/DevicePath.h"

#include "base/NaturalOrder.h"
#include "base/Text.h"
#include "machines/linux/files/SystemFile.h"
#include "machines/linux/files/VisitedRead.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kelvinbar {

namespace {

namespace fs = std::filesystem;

/// Classes whose entries the kernel numbers in order of discovery.
constexpr std::array<std::string_view, 6> numberedClasses{"hwmon", "nvme",         "ieee80211",
                                                          "phy",   "thermal_zone", "cooling_device"};

bool isNumberedByTheKernel(std::string_view part) {
    return std::ranges::any_of(numberedClasses, [&](std::string_view name) {
        return part.starts_with(name) && std::ranges::all_of(part.substr(name.size()), isDecimalDigit);
    });
}

std::string stablePart(const fs::path& path) {
    std::string text;
    for (const fs::path& part : path) {
        const std::string name = part.string();
        if (name == ".." || name == "." || isNumberedByTheKernel(name)) continue;
        if (!text.empty()) text += '/';
        text += name;
    }
    return text;
}

bool isBelow(const fs::path& path, const fs::path& folder) {
    return std::mismatch(folder.begin(), folder.end(), path.begin(), path.end()).first == folder.end();
}

/// With a slash at the end, which tells the folder from the devices in it.
fs::path classFolder(const fs::path& root, std::string_view className) {
    return root / "sys/class" / className / "";
}

} // namespace

std::vector<fs::path> classEntries(const fs::path& root, std::string_view className) {
    const fs::path folder = classFolder(root, className);
    std::vector<std::string> names = folderEntries(folder);
    std::ranges::sort(names, comesBeforeNaturally);
    std::vector<fs::path> entries;
    entries.reserve(names.size());
    // Not by operator/: without memory, that of libstdc++ 12 writes beyond a path that ends with a slash.
    for (const std::string& name : names) entries.emplace_back(folder.native() + name);
    return entries;
}

std::vector<fs::path> visitedClassEntries(const fs::path& root, std::string_view className) {
    const fs::path folder = classFolder(root, className);
    return visitedRead(folder, [&] { return classEntries(root, className); });
}

DeviceTree::DeviceTree(fs::path root) : root_(std::move(root)) {
    const fs::path folder = root_ / "sys/devices";
    folder_ = visitedRead(folder, [&] { return canonicalPath(folder); });
}

std::string DeviceTree::pathOf(const fs::path& entry, const fs::path& device) const {
    const fs::path place = device.empty() ? canonicalPath(entry) : device;
    if (!folder_.empty() && isBelow(place, folder_)) return stablePart(place.lexically_relative(folder_));
    // In a tree with the class only, the link names the device even though it is dangling.
    const fs::path target = linkTarget(entry / "device");
    if (!target.empty()) return stablePart(target);
    if (!linkTarget(entry).empty())
        return stablePart(canonicalPath(entry).lexically_relative(canonicalPath(root_)));
    return systemFileText(entry / "device/uevent").value_or("");
}

} // namespace kelvinbar
