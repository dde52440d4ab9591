#pragma once

#include <cstddef>
#include <istream>
#include <string>
#include <variant>

namespace kelvinbar {

/// More than any snapshot has; a device that never ends stops here.
inline constexpr std::size_t maximumInputSize = std::size_t{16} * 1024 * 1024;

/// Why a text could not be read, for people.
struct InputError {
    std::string message;
};

using TextInput = std::variant<std::string, InputError>;

/// All of `file`, or of standard input for "-".
TextInput readTextInput(const std::string& file);

/// All of `stream`.
TextInput readTextInput(std::istream& stream);

} // namespace kelvinbar
