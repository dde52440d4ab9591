#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Scripts that complete the options of a program in shells. Pure functions; any thread.
namespace kelvinbar {

/// An option as a shell completes it.
struct CompletedOption {
    std::vector<std::string> names;  ///< "-v", "--verbose"
    std::string help;                ///< one line
    std::string valueName;           ///< for people; empty for an option without a value
    std::vector<std::string> values; ///< that can be given; empty if they cannot be listed
    bool isFile = false;             ///< the value is the name of a file
    bool isOptional = false;         ///< the value may be left out
    bool isRepeated = false;         ///< several values may follow
};

/// The shells by name.
inline constexpr std::array<std::string_view, 3> completedShells{"bash", "zsh", "fish"};

/// The script for one of `completedShells` that completes `program` with these options.
std::string completionScript(std::string_view shell, std::string_view program,
                             std::span<const CompletedOption> options);

} // namespace kelvinbar
