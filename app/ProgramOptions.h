#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace kelvinbar {

/// The arguments of the program with a panel. Options of the toolkit (-platform and others with one dash) are
/// among the other ones until the toolkit has removed them.
struct ProgramOptions {
    std::size_t verbosity = 0; ///< how often --verbose was given
    bool wantsHelp = false;
    bool wantsVersion = false;
    std::vector<std::string> others; ///< arguments that are no option of the program
};

ProgramOptions programOptions(int argc, const char* const* argv);

/// Answers --help and --version on standard output, and refuses unknown options with two dashes, which are
/// never the toolkit's. The exit status; empty when the program is to run. Needs no display.
std::optional<int> answeredOptions(const ProgramOptions& options, const std::string& program);

/// Refuses all arguments that are no option of the program. The exit status; empty when there are none.
std::optional<int> refusedArguments(const ProgramOptions& options, const std::string& program);

} // namespace kelvinbar
