#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar {

/// What the command line of a program with a panel depends on.
struct ProgramDescription {
    std::string name;                           ///< the program's, as its files have it
    std::vector<std::string_view> machineNames; ///< of which a user may choose one; empty for no choice
    std::string_view usualMachineName;          ///< shown when the user chooses none
};

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
std::optional<int> answeredOptions(const ProgramOptions& options, const ProgramDescription& program);

/// Refuses all arguments that are neither options of the program nor the name of a machine. The exit status;
/// empty when there are none.
std::optional<int> refusedArguments(const ProgramOptions& options, const ProgramDescription& program);

/// The machine that the user chose, of options that were not refused; empty for none.
std::optional<std::string> chosenMachineName(const ProgramOptions& options);

} // namespace kelvinbar
