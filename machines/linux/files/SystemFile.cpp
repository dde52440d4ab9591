#include "machines/linux/files/SystemFile.h"

#include "base/NumberText.h"
#include "base/Text.h"
#include "sensors/ReadWatch.h"

#include <array>
#include <cerrno>
#include <climits>
#include <dirent.h>
#include <fcntl.h>
#include <iterator>
#include <memory>
#include <new>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <utility>

#include <unistd.h>

namespace kelvinbar {

namespace {

/// The library reports a failed allocation as an error of the file system.
void throwIfOutOfMemory(const std::error_code& error) {
    if (error == std::errc::not_enough_memory) throw std::bad_alloc();
}

/// The library's own iterator ends the program when memory runs out.
using OpenFolder = std::unique_ptr<DIR, int (*)(DIR*)>;

OpenFolder openedFolder(const std::filesystem::path& folder) {
    OpenFolder open(::opendir(folder.c_str()), ::closedir);
    if (open == nullptr) throwIfOutOfMemory(std::error_code(errno, std::generic_category()));
    return open;
}

/// Appends the names that are left in the folder. Returns whether these are all.
bool appendNames(const OpenFolder& folder, std::vector<std::string>& names) {
    for (;;) {
        errno = 0;
        const dirent* const entry = ::readdir(folder.get()); // NOLINT(concurrency-mt-unsafe): own stream
        if (entry == nullptr) return errno == 0;
        const std::string_view name = std::data(entry->d_name);
        if (name != "." && name != "..") names.emplace_back(name);
    }
}

/// Where the open file is, without links; empty if the system does not tell.
std::filesystem::path pathOfDescriptor(int descriptor) {
    std::filesystem::path path = linkTarget("/proc/self/fd/" + std::to_string(descriptor));
    return path.is_absolute() ? path : std::filesystem::path();
}

} // namespace

OpenFile::~OpenFile() {
    if (isOpen()) ::close(descriptor_);
}

std::vector<std::string> folderEntries(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    const NotedRead noted(folder.native());
    if (!noted.isAllowed()) return names;
    const OpenFolder open = openedFolder(folder);
    if (open != nullptr) static_cast<void>(appendNames(open, names));
    return names;
}

ListedFolder listedFolder(const std::filesystem::path& path) {
    const NotedRead noted(path.native());
    if (!noted.isAllowed()) return {};
    ListedFolder listed;
    const OpenFolder open = openedFolder(path);
    if (open != nullptr) {
        listed.path = pathOfDescriptor(::dirfd(open.get()));
        if (!appendNames(open, listed.names)) listed.names.clear();
    }
    if (listed.path.empty()) listed.path = canonicalPath(path);
    return listed;
}

bool isThere(const std::filesystem::path& path) {
    std::error_code error;
    const bool isThere = std::filesystem::exists(path, error);
    throwIfOutOfMemory(error);
    return isThere;
}

std::filesystem::path linkTarget(const std::filesystem::path& path) {
    std::array<char, PATH_MAX> target; // NOLINT(cppcoreguidelines-pro-type-member-init): filled by readlink
    const ssize_t size = ::readlink(path.c_str(), target.data(), target.size());
    if (size >= 0) return std::string_view(target.data(), static_cast<std::size_t>(size));
    throwIfOutOfMemory(std::error_code(errno, std::generic_category()));
    return {};
}

std::filesystem::path canonicalPath(const std::filesystem::path& path) {
    // The library asks for each folder on the way.
    const OpenFile place(::open(path.c_str(), O_PATH | O_CLOEXEC));
    if (!place.isOpen() && errno == ENOENT) return {};
    if (place.isOpen()) {
        std::filesystem::path named = pathOfDescriptor(place.descriptor());
        if (!named.empty()) return named;
    }
    std::error_code error;
    std::filesystem::path canonical = std::filesystem::canonical(path, error);
    throwIfOutOfMemory(error);
    return canonical;
}

int openRegularFile(const std::filesystem::path& file) {
    const NotedRead noted(file.native());
    if (!noted.isAllowed()) return -1;
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) return -1;

    struct stat status{};

    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) return descriptor;
    ::close(descriptor);
    return -1;
}

std::optional<std::string> systemFileText(const std::filesystem::path& file) {
    constexpr std::size_t limit = std::size_t{64} * 1024;
    const NotedRead noted(file.native());
    const OpenFile open(openRegularFile(file));
    if (!open.isOpen()) return std::nullopt;
    std::string text;
    std::array<char, 4096> buffer; // NOLINT(cppcoreguidelines-pro-type-member-init): filled by read
    ssize_t count = 0;
    while (text.size() < limit && (count = ::read(open.descriptor(), buffer.data(), buffer.size())) > 0) {
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return count < 0 ? std::nullopt : std::optional(std::move(text));
}

std::optional<std::string> systemFileLine(const std::filesystem::path& file) {
    const auto text = systemFileText(file);
    if (!text || trimmed(*text).empty()) return std::nullopt;
    return std::string(trimmed(*text));
}

std::optional<std::int64_t> systemFileNumber(const std::filesystem::path& file) {
    const auto line = systemFileLine(file);
    if (!line) return std::nullopt;
    return wholeNumberIn<std::int64_t>(*line);
}

std::optional<std::string> procValue(const fs::path& file, std::string_view name) {
    const auto text = systemFileText(file);
    if (!text) return std::nullopt;
    for (std::string_view rest = *text; !rest.empty();) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        const std::string_view line = rest.substr(0, end);
        const std::size_t colon = line.find(':');
        if (colon != std::string_view::npos && trimmed(line.substr(0, colon)) == name) {
            return std::string(trimmed(line.substr(colon + 1)));
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return std::nullopt;
}

} // namespace kelvinbar
