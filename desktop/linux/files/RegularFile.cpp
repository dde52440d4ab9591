#include "desktop/linux/files/RegularFile.h"

#include <array>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <system_error>
#include <utility>

#include <unistd.h>

namespace kelvinbar {

namespace {

namespace fs = std::filesystem;

bool isRegular(int descriptor) {
    struct stat status{};

    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

/// Everything up to the end of the file, or one byte more than `limit`. No value after a failure.
std::optional<std::string> contentOf(int descriptor, std::size_t limit) {
    std::string content;
    std::array<char, 4096> chunk{};
    while (content.size() <= limit) {
        const ssize_t size = ::read(descriptor, chunk.data(), chunk.size());
        if (size < 0) return std::nullopt;
        if (size == 0) break;
        content.append(chunk.data(), static_cast<std::size_t>(size));
    }
    return content;
}

/// The end of a chain of links.
fs::path linkTarget(fs::path file) {
    constexpr int longestChain = 40;
    std::error_code error;
    for (int links = 0; links < longestChain && fs::is_symlink(file, error); ++links) {
        file = file.parent_path() / fs::read_symlink(file, error);
    }
    return file;
}

} // namespace

FileKind kindOf(const fs::path& file) {
    std::error_code error;
    switch (fs::status(file, error).type()) {
    case fs::file_type::regular:
        return FileKind::regular;
    case fs::file_type::not_found:
        return FileKind::missing;
    default:
        return FileKind::other;
    }
}

std::optional<std::string> regularContent(const fs::path& file, std::size_t limit) {
    if (kindOf(file) != FileKind::regular) return std::nullopt; // opening a device may have effects
    // Does not block on a pipe that has taken the file's place since.
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) return std::nullopt;
    auto content = isRegular(descriptor) ? contentOf(descriptor, limit) : std::nullopt;
    ::close(descriptor);
    return content && content->size() <= limit ? content : std::nullopt;
}

std::optional<fs::path> replaceableFile(const fs::path& file) {
    fs::path target = linkTarget(file);
    std::error_code error;
    const FileKind kind = kindOf(target);
    const bool isReplaceable = kind == FileKind::regular ||
                               (kind == FileKind::missing && fs::is_directory(target.parent_path(), error));
    return isReplaceable ? std::optional(std::move(target)) : std::nullopt;
}

} // namespace kelvinbar
