#include "tools/SnapshotCommandLine.h"

#include "resources/SampleMachines.h"
#include "tools/PrintedText.h"
#include "tools/ProgramErrors.h"

#include <cstddef>
#include <iostream>
#include <vector>

namespace kelvinbar {

namespace {

/// Where help explains an option.
constexpr std::size_t helpColumn = 30;

std::vector<std::string> sampleNames() {
    std::vector<std::string> names;
    for (const SampleMachine& sample : sampleMachines()) names.emplace_back(sample.name);
    return names;
}

std::vector<std::string> formatNames() {
    std::vector<std::string> names;
    for (const OutputFormat& format : outputFormats()) names.emplace_back(format.name);
    return names;
}

/// Refuses other words. Help names them at its end, not in the line of the option.
CLI::Validator oneOf(const std::vector<std::string>& words) { return CLI::IsMember(words).description(""); }

/// One line a format, for the end of the help.
std::string formatHelp() {
    std::string text = "Formats:\n";
    for (const OutputFormat& format : outputFormats()) {
        text.append("  ").append(padded(format.name, helpColumn - 2)).append(format.summary).append("\n");
    }
    return text;
}

std::string sampleHelp() {
    std::string text = "Made-up machines:\n  ";
    for (const std::string& name : sampleNames()) text.append(text.ends_with("  ") ? "" : ", ").append(name);
    return text.append("\n");
}

constexpr const char* closingWords =
    "Without an option, this machine is read. A sensor that does not answer in two seconds is left "
    "out and named on standard error. Exit status: 0, 1 when the input cannot be used, no sensor "
    "answers, "
    "nothing can be written or memory runs out, 2 for a wrong option.";

/// The exit status when --help or --version has been printed.
int statusOfAnswer() {
    if (std::cout.flush()) return 0;
    reportError("cannot write to standard output");
    return inputErrorExit;
}

} // namespace

SnapshotCommandLine::SnapshotCommandLine()
    : app_("Prints the sensor readings of a machine as a snapshot text.", "kelvinbar-snapshot") {
    app_.set_version_flag("--version", "kelvinbar-snapshot " KELVINBAR_VERSION);
    addMachineOptions();
    addOutputOptions();
    addRemainingOptions();
    app_.get_formatter()->column_width(helpColumn);
    app_.footer(formatHelp() + "\n" + sampleHelp() + "\n" + closingWords);
}

void SnapshotCommandLine::addMachineOptions() {
    replay_ = app_.add_option("--replay", options_.machine.replayFile,
                              "Read the machine that the snapshot text in FILE was taken on (- for standard "
                              "input)");
    replay_->type_name("FILE");
    demo_ = app_.add_option("--demo", options_.machine.sampleName, "Read a made-up machine (see below)");
    demo_->type_name("NAME")->expected(0, 1)->default_str(std::string(sampleMachines().front().name));
    demo_->check(oneOf(sampleNames()))->excludes(replay_);
}

void SnapshotCommandLine::addOutputOptions() {
    app_.add_option("--format", formatName_, "How to print the readings (see below)")
        ->type_name("NAME")
        ->check(oneOf(formatNames()));
}

void SnapshotCommandLine::addRemainingOptions() {
    app_.add_flag("-v,--verbose", options_.verbosity, "Log what is found and done; twice, every step");
}

std::optional<int> SnapshotCommandLine::parse(int argc, char** argv) {
    try {
        app_.parse(argc, argv);
        finishParsing();
        return std::nullopt;
    } catch (const CLI::ParseError& error) {
        return app_.exit(error) == 0 ? statusOfAnswer() : usageErrorExit;
    }
}

/// Throws CLI::ParseError for what the parser does not check by itself.
void SnapshotCommandLine::finishParsing() {
    // CLI11 does not validate an empty value.
    if (demo_->count() > 0 && options_.machine.sampleName.empty()) {
        throw CLI::ValidationError("--demo", "NAME is empty");
    }
    options_.format = formatName_.empty() ? &outputFormats().front() : findOutputFormat(formatName_);
}

} // namespace kelvinbar
