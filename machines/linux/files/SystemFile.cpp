#include "machines/linux/files/SystemFile.h"

#include "base/NumberText.h"
#include "base/Text.h"
#include "sensors/ReadWatch.h"

#include <array>
#include <fcntl.h>
#include <sys/stat.h>
#include <utility>

#include <unistd.h>

namespace kelvinbar {

int openRegularFile(const std::filesystem::path& file) {
    const NotedRead noted(file.native());
    if (!noted.isAllowed()) return -1;
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) return -1;

    struct stat status {};

    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) return descriptor;
    ::close(descriptor);
    return -1;
}

std::optional<std::string> systemFileText(const std::filesystem::path& file) {
    constexpr std::size_t limit = std::size_t{64} * 1024;
    const NotedRead noted(file.native());
    const int descriptor = openRegularFile(file);
    if (descriptor < 0) return std::nullopt;
    std::string text;
    std::array<char, 4096> buffer; // NOLINT(cppcoreguidelines-pro-type-member-init): filled by read
    ssize_t count = 0;
    while (text.size() < limit && (count = ::read(descriptor, buffer.data(), buffer.size())) > 0) {
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    ::close(descriptor);
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

} // namespace kelvinbar
