#pragma once

#include <cstddef>
#include <istream>
#include <string>
#include <variant>

namespace kelvinbar {

/// In bytes. Larger than any snapshot, and a limit for devices that never end.
inline constexpr std::size_t maximumInputSize = std::size_t{16} * 1024 * 1024;

/// Why a text could not be read.
struct InputError {
    std::string message; ///< user-visible
};

using TextInput = std::variant<std::string, InputError>;

/// Reads `file`, or standard input if it is "-". Blocks until the end of the input.
TextInput readTextInput(const std::string& file);

/// Reads `stream` to its end. Text in UTF-16 or UTF-32, as some editors save it, is an error.
TextInput readTextInput(std::istream& stream);

} // namespace kelvinbar
