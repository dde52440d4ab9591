#include "platform/linux/SystemFile.h"

#include "base/NumberText.h"
#include "base/Text.h"

#include <fstream>

namespace kelvinbar {

std::optional<std::string> systemFileText(const std::filesystem::path& file) {
    constexpr std::size_t limit = std::size_t{64} * 1024;
    std::ifstream stream(file, std::ios::binary);
    std::string text(limit, '\0');
    stream.read(text.data(), static_cast<std::streamsize>(limit));
    // The end before the limit sets the fail bit; only the bad bit means that reading went wrong.
    if (!stream.is_open() || stream.bad()) return std::nullopt;
    text.resize(static_cast<std::size_t>(stream.gcount()));
    return text;
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
