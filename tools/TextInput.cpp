#include "tools/TextInput.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string_view>
#include <system_error>

namespace kelvinbar {

namespace {

InputError systemError(int number) { return {std::generic_category().message(number)}; }

/// Whether every second byte from `start` is zero, and no other.
bool isZeroAtEverySecond(std::string_view bytes, std::size_t start) {
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        if ((bytes[index] == '\0') != (index % 2 == start)) return false;
    }
    return true;
}

/// By its byte order mark, or by a beginning of ASCII characters.
bool isUtf16(std::string_view text) {
    constexpr std::size_t beginning = 32;
    if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) return true;
    const std::string_view bytes = text.substr(0, std::min(text.size(), beginning));
    return bytes.size() >= 4 && (isZeroAtEverySecond(bytes, 0) || isZeroAtEverySecond(bytes, 1));
}

} // namespace

TextInput readTextInput(const std::string& file) {
    if (file == "-") return readTextInput(std::cin);
    std::error_code ignored;
    if (std::filesystem::is_directory(file, ignored)) return systemError(EISDIR);
    errno = 0;
    std::ifstream stream(file, std::ios::binary);
    if (!stream) return systemError(errno);
    return readTextInput(stream);
}

TextInput readTextInput(std::istream& stream) {
    std::string text;
    std::array<char, std::size_t{64} * 1024> chunk{};
    while (stream && text.size() <= maximumInputSize) {
        stream.read(chunk.data(), chunk.size());
        text.append(chunk.data(), static_cast<std::size_t>(stream.gcount()));
    }
    if (stream.bad()) return systemError(EIO);
    if (text.size() > maximumInputSize) return InputError{"it is larger than 16 MiB"};
    if (isUtf16(text)) return InputError{"it is in UTF-16 instead of UTF-8"};
    return text;
}

} // namespace kelvinbar
