#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace kelvinbar {

/// The parsed command line of a desktop program. Options of the toolkit, which begin with one dash, such as
/// -platform, are in `others` until the toolkit has removed them.
struct ProgramOptions {
    std::size_t verbosity = 0; ///< how often --verbose was given
    bool wantsHelp = false;
    bool wantsVersion = false;
    std::vector<std::string> others; ///< arguments that are not options of the program
};

ProgramOptions programOptions(int argc, const char* const* argv);

/// Answers --help and --version on standard output, and rejects unknown options with two dashes, which are
/// never the toolkit's. Returns the exit status, or no value if the program should run. Needs no display.
std::optional<int> answeredOptions(const ProgramOptions& options, const std::string& program);

/// Rejects all arguments that are not options of the program. Returns the exit status, or no value if there
/// are none.
std::optional<int> refusedArguments(const ProgramOptions& options, const std::string& program);

} // namespace kelvinbar
