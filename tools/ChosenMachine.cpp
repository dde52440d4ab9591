#include "tools/ChosenMachine.h"

#include "machines/Platform.h"
#include "machines/replay/ReplayMachine.h"
#include "resources/SampleMachines.h"
#include "tools/ProgramErrors.h"
#include "tools/TextInput.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace kelvinbar {

namespace {

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

std::optional<Machine> replayedMachine(const std::string& source, std::string_view text, Log& log) {
    const Machine host = makePlatform(log);
    ReplayResult replay = makeReplayMachine(text, host.clock);
    if (replay.machine) replay.machine->texts = host.texts;
    reportProblems(source, replay.problems);
    if (!replay.machine) reportError(source + ": no line of a snapshot in it");
    return std::move(replay.machine);
}

/// Whether an object of JSON begins the text, as one of --format json does.
bool beginsAsJson(std::string_view text) {
    constexpr std::string_view blank = " \t\r\n";
    const std::size_t brace = text.find_first_not_of(blank);
    if (brace == std::string_view::npos || text[brace] != '{') return false;
    const std::size_t next = text.find_first_not_of(blank, brace + 1);
    return next != std::string_view::npos && text[next] == '"';
}

std::optional<Machine> machineFromFile(const std::string& file, Log& log) {
    const std::string source = file == "-" ? "standard input" : file;
    const TextInput input = readTextInput(file);
    if (const auto* error = std::get_if<InputError>(&input)) {
        reportError("cannot read " + source + ": " + error->message);
        return std::nullopt;
    }
    const auto& text = std::get<std::string>(input);
    if (beginsAsJson(text)) {
        reportError(source + ": this is JSON; --replay and --diff read the format text");
        return std::nullopt;
    }
    return replayedMachine(source, text, log);
}

std::string describedInFull(const MachineChoice& choice) {
    return choice.replayFile ? "the snapshot " + *choice.replayFile : choice.description();
}

} // namespace

std::string MachineChoice::description() const {
    if (replayFile) return "a snapshot";
    return sampleName.empty() ? "this machine" : "the sample " + sampleName;
}

std::optional<Machine> chosenMachine(const MachineChoice& choice, Log& log) {
    log.write(LogCategory::keys, LogLevel::info, [&] { return "reading " + describedInFull(choice); });
    if (choice.replayFile) return machineFromFile(*choice.replayFile, log);
    if (choice.sampleName.empty()) return makePlatform(log);
    const auto sample = std::ranges::find(sampleMachines(), choice.sampleName, &SampleMachine::name);
    auto machine = replayedMachine(choice.sampleName, sample->text, log);
    if (machine) machine->recordedAt.reset(); // as if it was read now
    return machine;
}

} // namespace kelvinbar
