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

using namespace std::string_view_literals;

namespace {

InputError systemError(int number) { return {std::generic_category().message(number)}; }

/// Whether every second byte from `start` is zero, and no other.
bool isZeroAtEverySecond(std::string_view bytes, std::size_t start) {
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        if ((bytes[index] == '\0') != (index % 2 == start)) return false;
    }
    return true;
}

/// An encoding with the byte order mark that a text in it begins with.
struct MarkedEncoding {
    std::string_view mark;
    std::string_view name;
};

/// The mark of UTF-32 begins with that of UTF-16.
constexpr std::array markedEncodings{
    MarkedEncoding{"\xFF\xFE\0\0"sv, "UTF-32"}, MarkedEncoding{"\0\0\xFE\xFF"sv, "UTF-32"},
    MarkedEncoding{"\xFF\xFE"sv, "UTF-16"}, MarkedEncoding{"\xFE\xFF"sv, "UTF-16"}};

/// An encoding that is not UTF-8, by the byte order mark or by a beginning of ASCII characters; empty if none
/// is seen.
std::string_view otherEncoding(std::string_view text) {
    const auto* const marked = std::ranges::find_if(
        markedEncodings, [&](const MarkedEncoding& each) { return text.starts_with(each.mark); });
    if (marked != markedEncodings.end()) return marked->name;
    constexpr std::size_t beginning = 32;
    const std::string_view bytes = text.substr(0, std::min(text.size(), beginning));
    const bool isUtf16 =
        bytes.size() >= 4 && (isZeroAtEverySecond(bytes, 0) || isZeroAtEverySecond(bytes, 1));
    return isUtf16 ? "UTF-16" : "";
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
    const std::string_view encoding = otherEncoding(text);
    if (!encoding.empty()) return InputError{"it is in " + std::string(encoding) + " instead of UTF-8"};
    return text;
}

} // namespace kelvinbar
