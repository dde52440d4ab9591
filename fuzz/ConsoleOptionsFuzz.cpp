// Any command line and any choice of log levels. Input: a line for KELVINBAR_LOG, then a line for each
// argument.

#include "app/ProgramOptions.h"
#include "base/Log.h"
#include "fuzz/Check.h"
#include "fuzz/InputText.h"
#include "fuzz/QuietLog.h"

#include <cstddef>
#include <cstdint>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar::fuzz {

namespace {

constexpr std::size_t mostLines = 64;

/// Keeps what is printed on a stream from the fuzzer's own output.
class Captured {
  public:
    explicit Captured(std::ostream& stream) : stream_(stream), before_(stream.rdbuf(text_.rdbuf())) {}

    Captured(const Captured&) = delete;
    Captured& operator=(const Captured&) = delete;

    ~Captured() { stream_.rdbuf(before_); }

    [[nodiscard]] bool isEmpty() const { return text_.view().empty(); }

  private:
    std::ostringstream text_;
    std::ostream& stream_;
    std::streambuf* before_;
};

std::vector<const char*> pointersTo(const std::vector<std::string>& words) {
    std::vector<const char*> pointers;
    for (const std::string& word : words) pointers.push_back(word.c_str());
    return pointers;
}

void answer(const ProgramOptions& options, const ProgramDescription& program) {
    const Captured output(std::cout);
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
    std::vector<std::string> words;
    for (const std::string_view word : parts(input, '\n', mostLines)) words.emplace_back(word);
    NoSink sink;
    const Log log(sink, words.front());
    check(log.isOn(LogCategory::tray, LogLevel::error), "errors are always shown");

    words.front() = "kelvinbar";
    const std::vector<const char*> pointers = pointersTo(words);
    const ProgramOptions options = programOptions(static_cast<int>(pointers.size()), pointers.data());
    answer(options, {.name = "kelvinbar", .machineNames = {}, .usualMachineName = {}});
    answer(options, {.name = "demo", .machineNames = {"amd-pc", "linux-pc"}, .usualMachineName = "linux-pc"});
}

} // namespace

} // namespace kelvinbar::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kelvinbar::fuzz::tryOptions(kelvinbar::fuzz::inputText({data, size}));
    return 0;
}
