#include "platform/linux/SystemFile.h"

#include "base/Text.h"

#include <charconv>
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
    std::int64_t number = 0;
    const char* const end = line->data() + line->size();
    const auto [stop, error] = std::from_chars(line->data(), end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

} // namespace kelvinbar
