#include "machines/linux/sources/ChipDevice.h"

#include "machines/linux/files/SystemFile.h"

#include <cstddef>
#include <iterator>
#include <optional>

namespace kelvinbar {

namespace {

namespace fs = std::filesystem;

FileNames ordered(std::vector<std::string> names) {
    return {std::make_move_iterator(names.begin()), std::make_move_iterator(names.end())};
}

/// The first entry of a folder; empty without one.
std::string firstEntry(const fs::path& folder) {
    const FileNames names = fileNames(folder);
    return names.empty() ? std::string() : *names.begin();
}

std::string subsystemOf(const fs::path& device) {
    return linkTarget(device / "subsystem").filename().string();
}

} // namespace

FileNames fileNames(const fs::path& folder) { return ordered(folderEntries(folder)); }

ChipDevice::ChipDevice(fs::path link) : link_(std::move(link)) {
    ListedFolder listed = listedFolder(link_);
    folder_ = std::move(listed.path);
    names_ = ordered(std::move(listed.names));
}

ChipPower chipPower(const ChipDevice& device) {
    ChipPower power;
    const auto ask = [&](const fs::path& file) {
        const auto status = systemFileLine(file);
        if (!status || *status == "unsupported") return;
        power.states.push_back(file);
        if (status->starts_with("suspend")) power.isAsleep = true;
    };
    if (device.link().empty()) return power;
    // Whatever the listing says: a device that sleeps must not be taken for one that does not.
    ask(device.link() / "power/runtime_status");
    // The device that this one is a function of, such as a drive's controller.
    if (device.mayHave("device")) ask(device.link() / "device/power/runtime_status");
    return power;
}

std::vector<DeviceStep> deviceSteps(const ChipDevice& device) {
    constexpr std::size_t maximumSteps = 8;
    std::vector<DeviceStep> steps;
    for (fs::path link = device.link(); steps.size() < maximumSteps; link /= "device") {
        const fs::path target = linkTarget(link);
        if (target.empty()) break;
        const bool isFirst = steps.empty();
        const bool mayHaveSubsystem = !isFirst || device.mayHave("subsystem");
        steps.push_back({target.filename().string(), mayHaveSubsystem ? subsystemOf(link) : std::string()});
        if (isFirst && !device.mayHave("device")) break;
    }
    return steps;
}

std::string driveModel(const ChipDevice& device) {
    const auto model = device.mayHave("model") ? systemFileLine(device.link() / "model") : std::nullopt;
    if (model || !device.mayHave("nvme")) return model.value_or("");
    // Older kernels attach the chip to the controller above the drive.
    const fs::path drives = device.link() / "nvme";
    const std::string drive = firstEntry(drives);
    return drive.empty() ? drive : systemFileLine(drives / drive / "model").value_or("");
}

const std::string& NetworkInterfaces::of(const ChipDevice& device) {
    constexpr int foldersAbove = 3;
    std::string_view folder = device.folder().native();
    if (folder.empty()) return none_;
    if (device.mayHave("net")) {
        const std::string& interface = in(folder);
        if (!interface.empty()) return interface;
    }
    for (int step = 0; step < foldersAbove; ++step) {
        folder = folder.substr(0, folder.rfind('/'));
        if (folder.empty() || folder == devices_.native()) break;
        const std::string& interface = in(folder);
        if (!interface.empty()) return interface;
    }
    return none_;
}

const std::string& NetworkInterfaces::in(std::string_view folder) {
    const auto known = interfaces_.find(folder);
    if (known != interfaces_.end()) return known->second;
    return interfaces_.emplace(folder, firstEntry(fs::path(folder) / "net")).first->second;
}

} // namespace kelvinbar
