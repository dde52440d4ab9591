#include "tools/TextInput.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <system_error>

namespace kelvinbar {

namespace {

InputError systemError(int number) { return {std::generic_category().message(number)}; }

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
    return text;
}

} // namespace kelvinbar
