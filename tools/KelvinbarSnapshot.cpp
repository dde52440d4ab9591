// kelvinbar-snapshot: prints a snapshot of a machine on standard output.

#include "base/Clock.h"
#include "base/Log.h"
#include "base/OutOfMemory.h"
#include "machines/Platform.h"
#include "machines/replay/ReplayMachine.h"
#include "process/StandardStreams.h"
#include "resources/SampleMachines.h"
#include "tools/SnapshotTaker.h"
#include "tools/TextInput.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <CLI/CLI.hpp>

namespace kelvinbar {

namespace {

constexpr int inputErrorExit = 1;
constexpr int usageErrorExit = 2;

struct Options {
    std::optional<std::string> replayFile;
    std::string sampleName; ///< empty for none
    std::size_t verbosity = 0;
};

std::vector<std::string> sampleNames() {
    std::vector<std::string> names;
    for (const SampleMachine& sample : sampleMachines()) names.emplace_back(sample.name);
    return names;
}

void reportError(const std::string& message) { std::cerr << "kelvinbar-snapshot: " + message + "\n"; }

/// Needs no memory itself.
void reportMissingMemory() {
    static_cast<void>(std::fputs("kelvinbar-snapshot: there is not enough memory\n", stderr));
}

/// Prints the first lines that cannot be used, and how many there are if there are more.
void reportProblems(const std::string& source, const std::vector<LineProblem>& problems) {
    constexpr std::size_t mostNamed = 10;
    const std::size_t named = std::min(problems.size(), mostNamed);
    for (std::size_t index = 0; index < named; ++index) {
        const auto& [lineNumber, reason] = problems[index];
        reportError(source + ", line " + std::to_string(lineNumber) + ": " + std::string(reason));
    }
    if (named == problems.size()) return;
    reportError(source + ": " + std::to_string(problems.size()) + " lines cannot be used; the first " +
                std::to_string(named) + " are named");
}

/// The replayed machine, or no value after printing the reason. Lines that cannot be used are printed and
/// skipped.
std::optional<Machine> replayedMachine(const std::string& source, std::string_view text, Log& log) {
    const Machine host = makePlatform(log);
    ReplayResult replay = makeReplayMachine(text, host.clock);
    if (replay.machine) replay.machine->texts = host.texts;
    reportProblems(source, replay.problems);
    if (!replay.machine) reportError(source + ": no line of a snapshot in it");
    return std::move(replay.machine);
}

std::optional<Machine> machineFromFile(const std::string& file, Log& log) {
    const std::string source = file == "-" ? "standard input" : file;
    const TextInput input = readTextInput(file);
    if (const auto* error = std::get_if<InputError>(&input)) {
        reportError("cannot read " + source + ": " + error->message);
        return std::nullopt;
    }
    return replayedMachine(source, std::get<std::string>(input), log);
}

std::string describedMachine(const Options& options) {
    if (options.replayFile) return "the snapshot " + *options.replayFile;
    return options.sampleName.empty() ? "this machine" : "the sample " + options.sampleName;
}

std::optional<Machine> chosenMachine(const Options& options, Log& log) {
    log.write(LogCategory::keys, LogLevel::info, [&] { return "reading " + describedMachine(options); });
    if (options.replayFile) return machineFromFile(*options.replayFile, log);
    if (options.sampleName.empty()) return makePlatform(log);
    const auto sample = std::ranges::find(sampleMachines(), options.sampleName, &SampleMachine::name);
    return replayedMachine(options.sampleName, sample->text, log);
}

void reportSilentDevices(const std::vector<SilentDevice>& silent) {
    for (const SilentDevice& each : silent) reportError("no answer from " + each.file);
}

/// Prints the snapshot and returns the exit status.
int print(const Snapshot& snapshot) {
    std::cout << snapshot.text;
    if (isStandardOutputTerminal()) std::cout << '\n';
    const bool isWritten = static_cast<bool>(std::cout.flush());
    reportSilentDevices(snapshot.silent);
    if (!isWritten) reportError("cannot write the snapshot");
    return isWritten && (snapshot.silent.empty() || snapshot.hasAnswers) ? 0 : inputErrorExit;
}

int printSnapshot(const Options& options) {
    StandardErrorSink standardError;
    Log log(standardError, logChoiceOfEnvironment(), options.verbosity);
    const auto machine = chosenMachine(options, log);
    if (!machine) return inputErrorExit;
    SnapshotTaker taker;
    int status = inputErrorExit;
    if (!hasMemoryFor([&] { status = print(taker.take(*machine)); })) reportMissingMemory();
    // A thread that is stuck in a driver cannot be ended, and still uses the machine and the log.
    if (!taker.finish()) std::_Exit(status);
    return status;
}

/// The exit status when --help or --version has been printed.
int statusOfAnswer() {
    if (std::cout.flush()) return 0;
    reportError("cannot write to standard output");
    return inputErrorExit;
}

int run(int argc, char** argv) {
    Options options;
    CLI::App app("Prints the sensor readings of a machine as a snapshot text.", "kelvinbar-snapshot");
    app.set_version_flag("--version", "kelvinbar-snapshot " KELVINBAR_VERSION);
    auto* const replay =
        app.add_option("--replay", options.replayFile,
                       "Read the machine that the snapshot text in FILE was taken on (- for standard input)");
    replay->type_name("FILE");
    auto* const demo = app.add_option("--demo", options.sampleName, "Read a made-up machine");
    demo->type_name("NAME")->expected(0, 1)->default_str(std::string(sampleMachines().front().name));
    demo->check(CLI::IsMember(sampleNames()))->excludes(replay);
    app.footer(
        "Without an option, this machine is read. A sensor that does not answer in two seconds is left "
        "out and named on standard error. Exit status: 0, 1 when the input cannot be used, no sensor "
        "answers, "
        "nothing can be written or memory runs out, 2 for a wrong option.");
    app.add_flag("-v,--verbose", options.verbosity, "Log what is found and done; twice, every step");
    try {
        app.parse(argc, argv);
        // CLI11 does not validate an empty value.
        if (demo->count() > 0 && options.sampleName.empty()) {
            throw CLI::ValidationError("--demo", "NAME is empty");
        }
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? statusOfAnswer() : usageErrorExit;
    }
    return printSnapshot(options);
}

} // namespace

} // namespace kelvinbar

int main(int argc, char** argv) {
    kelvinbar::openClosedStandardStreams();
    try {
        return kelvinbar::run(argc, argv);
    } catch (const std::bad_alloc&) {
        kelvinbar::reportMissingMemory();
        return kelvinbar::inputErrorExit;
    } catch (const std::exception& error) {
        static_cast<void>(std::fprintf(stderr, "kelvinbar-snapshot: %s\n", error.what()));
        return kelvinbar::inputErrorExit;
    }
}
