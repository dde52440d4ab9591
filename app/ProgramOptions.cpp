#include "app/ProgramOptions.h"

#include <algorithm>
#include <iostream>
#include <string_view>

namespace kelvinbar {

namespace {

constexpr int usageErrorExit = 2;

constexpr std::string_view optionsHelp =
    "Shows sensor readings in the menu bar or tray.\n"
    "\n"
    "  -v, --verbose  Log what is found and done on standard error; twice, every step\n"
    "  -h, --help     Print this help\n"
    "      --version  Print the version\n"
    "\n"
    "The environment variable KELVINBAR_LOG chooses what is logged by category, as in tray=debug,keys=info.\n"
    "Exit status: 0, 2 for a wrong option.\n";

std::string usage(const std::string& program) {
    return "Usage: " + program + " [--verbose] [--help] [--version]\n";
}

/// Whether `word` is one or more "v" after a dash, as in -v or -vv.
bool isShortVerbose(std::string_view word) {
    return word.size() > 1 && word.front() == '-' && word.find_first_not_of('v', 1) == std::string_view::npos;
}

void note(ProgramOptions& options, std::string_view word) {
    if (word == "--verbose") {
        ++options.verbosity;
    } else if (isShortVerbose(word)) {
        options.verbosity += word.size() - 1;
    } else if (word == "--help" || word == "-h") {
        options.wantsHelp = true;
    } else if (word == "--version") {
        options.wantsVersion = true;
    } else {
        options.others.emplace_back(word);
    }
}

int refused(const std::string& argument, const std::string& program) {
    std::cerr << program + ": unknown argument \"" + argument + "\"\n" + usage(program);
    return usageErrorExit;
}

} // namespace

ProgramOptions programOptions(int argc, const char* const* argv) {
    ProgramOptions options;
    for (int index = 1; index < argc; ++index) note(options, argv[index]);
    return options;
}

std::optional<int> answeredOptions(const ProgramOptions& options, const std::string& program) {
    const auto unknown = std::ranges::find_if(
        options.others, [](const std::string& argument) { return argument.starts_with("--"); });
    if (unknown != options.others.end()) return refused(*unknown, program);
    if (options.wantsHelp) {
        std::cout << usage(program) << optionsHelp << std::flush;
    } else if (options.wantsVersion) {
        std::cout << program + " " KELVINBAR_VERSION "\n" << std::flush;
    }
    return options.wantsHelp || options.wantsVersion ? std::optional(0) : std::nullopt;
}

std::optional<int> refusedArguments(const ProgramOptions& options, const std::string& program) {
    if (options.others.empty()) return std::nullopt;
    return refused(options.others.front(), program);
}

} // namespace kelvinbar
