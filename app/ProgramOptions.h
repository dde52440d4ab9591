#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar {

/// What the command line of a desktop program depends on.
struct ProgramDescription {
    std::string name;                           ///< the program's file name
    std::vector<std::string_view> machineNames; ///< the user may choose one; empty for no choice
    std::string_view usualMachineName;          ///< the machine without a choice
    bool offersDoctor = false; ///< it reads the machine that it runs on, which can be examined
};

/// The parsed command line of a desktop program. Options of the toolkit, which begin with one dash, such as
/// -platform, are in `others` until the toolkit has removed them.
struct ProgramOptions {
    std::size_t verbosity = 0; ///< how often --verbose was given
    bool wantsHelp = false;
    bool wantsVersion = false;
    bool isAtLogin = false; ///< the session starts the program, not the user
    bool wantsDoctor = false;
    bool wantsOwnCost = false;         ///< what the program itself costs; for the doctor
    std::optional<std::string> format; ///< in which the doctor prints; "text" or "json" if it is answered
    std::vector<std::string> others;   ///< arguments that are not options of the program
};

ProgramOptions programOptions(int argc, const char* const* argv);

/// Answers --help and --version on standard output, and rejects unknown options with two dashes, which are
/// never the toolkit's, and options that contradict each other. Returns the exit status, or no value if the
/// program should run or its doctor. Needs no display.
std::optional<int> answeredOptions(const ProgramOptions& options, const ProgramDescription& program);

/// Whether there may be options of the toolkit, which only the toolkit can tell from wrong ones.
bool mayHaveToolkitOptions(const ProgramOptions& options);

/// Rejects all arguments that are neither options of the program nor the name of a machine. Returns the exit
/// status, or no value if there are none.
std::optional<int> refusedArguments(const ProgramOptions& options, const ProgramDescription& program);

/// The machine that the user chose. Call after `refusedArguments`.
std::optional<std::string> chosenMachineName(const ProgramOptions& options);

} // namespace kelvinbar
