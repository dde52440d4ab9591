#include "machines/linux/applesmc/AppleSMCDetection.h"

#include "machines/linux/applesmc/AppleSMCChannels.h"
#include "machines/linux/files/DevicePath.h"
#include "machines/linux/files/SystemFile.h"

#include <algorithm>
#include <system_error>
#include <utility>
#include <vector>

namespace kelvinbar {

namespace {

/// The folders with the driver's files, usually one.
std::vector<std::filesystem::path> driverFolders(const std::filesystem::path& root) {
    std::vector<std::filesystem::path> folders;
    for (const std::filesystem::path& entry : classEntries(root, "hwmon")) {
        for (const std::filesystem::path& folder : {entry, entry / "device"}) {
            const bool isDriver = systemFileLine(folder / "name") == appleSMCChip;
            if (isDriver && isThere(folder / "key_at_index")) folders.push_back(folder);
        }
    }
    return folders;
}

} // namespace

DetectedAppleSMC::DetectedAppleSMC(Open open, std::shared_ptr<const MonotonicClock> clock)
    : open_(std::move(open)), clock_(std::move(clock)) {}

void DetectedAppleSMC::search() {
    const auto now = clock_->now();
    if (keys_ != nullptr || (searchedAt_ && now - *searchedAt_ < searchInterval)) return;
    if (auto registers = open_()) keys_ = std::make_unique<AppleSMCKeys>(std::move(registers));
    searchedAt_ = now; // not before: without memory, nothing was searched
}

bool DetectedAppleSMC::isPresent() {
    search();
    return keys_ != nullptr;
}

std::size_t DetectedAppleSMC::keyCount() {
    search();
    const std::size_t count = keys_ == nullptr ? 0 : keys_->keyCount();
    if (count == 0) keys_ = nullptr;
    return count;
}

std::optional<std::uint32_t> DetectedAppleSMC::keyAtIndex(std::uint32_t index) {
    return keys_ == nullptr ? std::nullopt : keys_->keyAtIndex(index);
}

std::optional<SMCKeySource::KeyInfo> DetectedAppleSMC::keyInfo(std::uint32_t code) {
    return keys_ == nullptr ? std::nullopt : keys_->keyInfo(code);
}

std::uint8_t DetectedAppleSMC::readBytes(std::uint32_t code, SMCBytes& bytes) {
    return keys_ == nullptr ? smcresult::keyNotFound : keys_->readBytes(code, bytes);
}

std::unique_ptr<AppleSMCRegisters> openAppleSMC(const std::filesystem::path& root, Log& log) {
    for (const std::filesystem::path& folder : driverFolders(root)) {
        if (auto registers = openAppleSMCFiles(folder)) return registers;
        log.once(LogCategory::sourceSMC, LogLevel::warning, [] {
            return std::string("listing the keys of Apple's controller needs write access to its "
                               "key_at_index; its temperatures and fans are shown");
        });
    }
    return nullptr;
}

AppleSMCAccess appleSMCAccess(const std::filesystem::path& root) {
    const auto folders = driverFolders(root);
    if (folders.empty()) return AppleSMCAccess::absent;
    const auto opens = [](const std::filesystem::path& folder) {
        return openAppleSMCFiles(folder) != nullptr;
    };
    return std::ranges::any_of(folders, opens) ? AppleSMCAccess::granted : AppleSMCAccess::refused;
}

} // namespace kelvinbar
