#include "app/ProgramOptions.h"

#include "process/StandardStreams.h"

#include <algorithm>
#include <iostream>
#include <string_view>

namespace kelvinbar {

namespace {

constexpr int outputErrorExit = 1;
constexpr int usageErrorExit = 2;

constexpr std::string_view optionsHelp =
    "Shows sensor readings in the menu bar or tray.\n"
    "\n"
    "  -v, --verbose    Log what is found and done on standard error; twice, every step\n"
    "  -h, --help       Print this help\n"
    "      --version    Print the version\n"
    "      --autostart  Start as the session does at login: open nothing\n";

constexpr std::string_view closingHelp =
    "\n"
    "The environment variable KELVINBAR_LOG chooses what is logged by category, as in tray=debug,keys=info.\n"
    "Exit status: 0, 1 if the program cannot be started here or an answer cannot be written, 2 for a wrong "
    "option.\n";

constexpr std::string_view doctorHelp =
    "      --doctor     Print what is found of sensors, drivers and trays, and what to do about what is not\n"
    "      --format FORMAT\n"
    "                   With --doctor: text or json\n"
    "      --self       With --doctor: tell what the running program costs, too\n";

std::string usage(const ProgramDescription& program) {
    const std::string_view machine = program.machineNames.empty() ? "" : " [NAME]";
    const std::string_view doctor = program.offersDoctor ? " [--doctor [--format FORMAT] [--self]]" : "";
    return "Usage: " + program.name + " [--verbose] [--help] [--version] [--autostart]" +
           std::string(doctor).append(machine).append("\n");
}

std::string help(const ProgramDescription& program) {
    return usage(program)
        .append(optionsHelp)
        .append(program.offersDoctor ? doctorHelp : "")
        .append(closingHelp);
}

std::string joinedNames(const std::vector<std::string_view>& names) {
    std::string text;
    for (const std::string_view name : names) text.append(text.empty() ? "" : ", ").append(name);
    return text;
}

std::string machinesHelp(const ProgramDescription& program) {
    if (program.machineNames.empty()) return {};
    return "\nNAME is the made-up machine to show: " + joinedNames(program.machineNames) + ".\nWithout it, " +
           std::string(program.usualMachineName) + " is shown.\n";
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
    } else if (word == "--doctor") {
        options.wantsDoctor = true;
    } else if (word == "--self") {
        options.wantsOwnCost = true;
    } else if (word == "--autostart") {
        options.isAtLogin = true;
    } else {
        options.others.emplace_back(word);
    }
}

bool isOption(const std::string& argument) { return argument.starts_with('-'); }

int refusedFor(const std::string& complaint, const ProgramDescription& program) {
    std::cerr << program.name + ": " + complaint + "\n" + usage(program);
    return usageErrorExit;
}

int refused(const std::string& argument, const ProgramDescription& program) {
    return refusedFor("unknown argument \"" + argument + "\"", program);
}

/// Empty if the options for the doctor fit together.
std::string complaintAboutDoctor(const ProgramOptions& options) {
    if (!options.wantsDoctor && options.format) return "--format is for --doctor";
    if (!options.wantsDoctor) return options.wantsOwnCost ? "--self is for --doctor" : "";
    if (options.isAtLogin) return "--doctor starts nothing, so --autostart contradicts it";
    if (!options.others.empty()) return "--doctor does not go with \"" + options.others.front() + "\"";
    const bool isKnown = !options.format || *options.format == "text" || *options.format == "json";
    return isKnown ? "" : "the formats of --doctor are text and json";
}

int refusedMachine(const std::string& machine, const ProgramDescription& program) {
    std::cerr << program.name + ": unknown machine \"" + machine + "\"; there are " +
                     joinedNames(program.machineNames) + "\n";
    return usageErrorExit;
}

/// Prints an answer and returns the exit status.
int printed(const std::string& answer, const ProgramDescription& program) {
    const auto error = writeToStandardOutput(answer);
    if (!error) return 0;
    std::cerr << program.name + ": " + writeFailure("to standard output", error) + "\n";
    return outputErrorExit;
}

} // namespace

ProgramOptions programOptions(int argc, const char* const* argv) {
    ProgramOptions options;
    constexpr std::string_view format = "--format";
    for (int index = 1; index < argc; ++index) {
        const std::string_view word = argv[index];
        if (word == format) {
            options.format = index + 1 < argc ? argv[++index] : "";
        } else if (word.starts_with(format) && word.substr(format.size()).starts_with('=')) {
            options.format = word.substr(format.size() + 1);
        } else {
            note(options, word);
        }
    }
    return options;
}

std::optional<int> answeredOptions(const ProgramOptions& options, const ProgramDescription& program) {
    const auto unknown = std::ranges::find_if(
        options.others, [](const std::string& argument) { return argument.starts_with("--"); });
    if (unknown != options.others.end()) return refused(*unknown, program);
    if (options.wantsDoctor && !program.offersDoctor) return refused("--doctor", program);
    if (options.wantsHelp) return printed(help(program) + machinesHelp(program), program);
    if (options.wantsVersion) return printed(program.name + " " KELVINBAR_VERSION "\n", program);
    const std::string complaint = complaintAboutDoctor(options);
    return complaint.empty() ? std::nullopt : std::optional(refusedFor(complaint, program));
}

bool mayHaveToolkitOptions(const ProgramOptions& options) {
    return std::ranges::any_of(options.others, isOption);
}

std::optional<int> refusedArguments(const ProgramOptions& options, const ProgramDescription& program) {
    const std::vector<std::string>& others = options.others;
    const auto option = std::ranges::find_if(others, isOption);
    if (option != others.end()) return refused(*option, program);
    const std::size_t allowed = program.machineNames.empty() ? 0 : 1;
    if (others.size() > allowed) return refused(others[allowed], program);
    if (others.empty() || std::ranges::count(program.machineNames, others.front()) > 0) return std::nullopt;
    return refusedMachine(others.front(), program);
}

std::optional<std::string> chosenMachineName(const ProgramOptions& options) {
    return options.others.empty() ? std::nullopt : std::optional(options.others.front());
}

} // namespace kelvinbar
