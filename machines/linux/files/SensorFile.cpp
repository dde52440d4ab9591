#include "machines/linux/files/SensorFile.h"

#include "base/NumberText.h"
#include "base/Text.h"
#include "machines/linux/files/SystemFile.h"
#include "sensors/ReadWatch.h"

#include <algorithm>
#include <array>
#include <sys/stat.h>
#include <utility>

#include <unistd.h>

namespace kelvinbar {

namespace {

ssize_t readFromStart(int descriptor, std::span<char> buffer) {
    return ::pread(descriptor, buffer.data(), buffer.size(), 0);
}

ssize_t readOnce(const std::filesystem::path& path, std::span<char> buffer) {
    const OpenFile file(openRegularFile(path));
    return file.isOpen() ? readFromStart(file.descriptor(), buffer) : -1;
}

} // namespace

SensorFile::SensorFile(const std::filesystem::path& path)
    : SensorFile(path, std::make_shared<std::atomic<int>>(0), 1) {}

SensorFile::SensorFile(const std::filesystem::path& path, OpenFileCount openFiles, int limit)
    : openFiles_(std::move(openFiles)), path_(path) {
    const int descriptor = openRegularFile(path);
    if (descriptor < 0) {
        path_.clear();
        return;
    }
    if (openFiles_->fetch_add(1) < limit) {
        descriptor_ = descriptor;

        struct stat status{};

        if (::fstat(descriptor, &status) == 0) identity_ = {status.st_dev, status.st_ino};
        return;
    }
    openFiles_->fetch_sub(1);
    ::close(descriptor);
}

SensorFile::~SensorFile() {
    if (descriptor_ < 0) return;
    ::close(descriptor_);
    openFiles_->fetch_sub(1);
}

bool SensorFile::isStillAt(const std::filesystem::path& path) const {
    struct stat status{};

    const NotedRead noted(path.native());
    if (descriptor_ < 0 || ::stat(path.c_str(), &status) != 0) return false;
    return identity_ == std::pair<std::uint64_t, std::uint64_t>(status.st_dev, status.st_ino);
}

std::optional<std::string_view> SensorFile::line(std::span<char> buffer) const {
    const NotedRead noted(path_.native());
    if (!isOpen() || !noted.isAllowed()) return std::nullopt;
    const ssize_t count = descriptor_ >= 0 ? readFromStart(descriptor_, buffer) : readOnce(path_, buffer);
    if (count <= 0 || static_cast<std::size_t>(count) == buffer.size()) return std::nullopt;
    const std::string_view text(buffer.data(), static_cast<std::size_t>(count));
    if (!text.ends_with('\n')) return std::nullopt;
    return text.substr(0, text.size() - 1);
}

std::optional<std::int64_t> SensorFile::number() const {
    std::array<char, 64> buffer{};
    const auto text = line(buffer);
    return text ? numberInLine(*text) : std::nullopt;
}

std::optional<std::int64_t> numberInLine(std::string_view line) {
    const auto number = wholeNumberIn<std::int64_t>(line);
    return number ? number : wholeNumberIn<std::int64_t>(trimmed(line));
}

std::shared_ptr<const SensorFile> SensorFiles::open(const std::filesystem::path& path) {
    auto file = known(path);
    if (file != nullptr && file->isStillAt(path)) return file;
    file = std::make_shared<const SensorFile>(path, openFiles_, limit_);
    const std::lock_guard lock(mutex_);
    files_[path.native()] = file;
    return file;
}

std::shared_ptr<const SensorFile> SensorFiles::known(const std::filesystem::path& path) {
    const std::lock_guard lock(mutex_);
    if (files_.size() > mostKnown_) {
        std::erase_if(files_, [](const auto& file) { return file.second.expired(); });
        mostKnown_ = std::max(mostKnown_, 2 * files_.size()); // all of many files may be in use
    }
    const auto found = files_.find(path.native());
    return found == files_.end() ? nullptr : found->second.lock();
}

} // namespace kelvinbar
