// Any command line of the tray programs and any choice of log levels. Input: a line for KELVINBAR_LOG, then a
// line for each argument.

#include "app/ProgramOptions.h"
#include "base/Log.h"
#include "fuzz/Check.h"
#include "fuzz/CommandWords.h"
#include "fuzz/InputText.h"
#include "fuzz/QuietLog.h"

#include <cstddef>
#include <cstdint>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar::fuzz {

namespace {

void answer(const ProgramOptions& options, const ProgramDescription& program) {
    const CapturedOutput output;
    const Captured errors(std::cerr);
    if (const auto status = answeredOptions(options, program)) {
        check(*status == 0 || *status == 2, "options have an answer or are wrong");
        check(errors.isEmpty() == (*status == 0), "a wrong option is said on standard error");
        check(output.isEmpty() == (*status != 0), "an answer is on standard output");
        return;
    }
    if (const auto status = refusedArguments(options, program)) {
        check(*status == 2 && !errors.isEmpty(), "a refused argument is said");
        return;
    }
    const auto machine = chosenMachineName(options);
    check(!machine || *machine == "amd-pc" || *machine == "linux-pc",
          "a chosen machine is one that there is");
    check(!machine || !program.machineNames.empty(), "without machines there is no choice");
}

void tryOptions(std::string_view input) {
    std::vector<std::string> words = commandWords(input);
    NoSink sink;
    const Log log(sink, words.front());
    check(log.isOn(LogCategory::tray, LogLevel::error), "errors are always shown");

    words.front() = "kelvinbar";
    const std::vector<char*> arguments = argumentsOf(words);
    const ProgramOptions options = programOptions(static_cast<int>(arguments.size()), arguments.data());
    answer(options, {.name = "kelvinbar", .machineNames = {}, .usualMachineName = {}});
    answer(options, {.name = "demo", .machineNames = {"amd-pc", "linux-pc"}, .usualMachineName = "linux-pc"});
}

} // namespace

} // namespace kelvinbar::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kelvinbar::fuzz::tryOptions(kelvinbar::fuzz::inputText({data, size}));
    return 0;
}
