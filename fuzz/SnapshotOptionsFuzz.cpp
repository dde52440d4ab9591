// Any command line of kelvinbar-snapshot. Input: a line for each argument. Nothing is read or printed.

#include "fuzz/Check.h"
#include "fuzz/CommandWords.h"
#include "fuzz/InputText.h"
#include "tools/SnapshotCommandLine.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar::fuzz {

namespace {

void checkOptions(const SnapshotOptions& options) {
    using std::chrono::milliseconds;
    using std::chrono::seconds;
    check(options.format != nullptr, "there is a format");
    check(options.tolerance >= 0, "a tolerance is a number that is not negative");
    check(options.compared.size() <= 2, "two snapshots are compared at most");
    if (options.interval) {
        check(*options.interval >= milliseconds(100) && *options.interval <= seconds(86400),
              "an interval is 0.1 s to a day");
    }
    if (options.identification) {
        check(options.identification->time >= seconds(5) && options.identification->time <= seconds(3600),
              "sensors are identified in 5 s to an hour");
    }
    const bool isRepeated = options.interval || options.identification;
    check(options.compared.empty() || !(isRepeated || options.hasOwnCost), "a comparison is nothing else");
    check(!options.isDoctor || !(isRepeated || !options.compared.empty()), "an examination is nothing else");
}

void tryOptions(std::string_view input) {
    std::vector<std::string> words = commandWords(input);
    words.insert(words.begin(), "kelvinbar-snapshot");
    std::vector<char*> arguments = argumentsOf(words);
    const CapturedOutput output;
    const Captured errors(std::cerr);
    SnapshotCommandLine commandLine;
    const auto status = commandLine.parse(static_cast<int>(arguments.size()), arguments.data());
    if (!status) {
        check(output.isEmpty() && errors.isEmpty(), "nothing is said of options that are to be followed");
        checkOptions(commandLine.options());
        return;
    }
    check(*status == 0 || *status == 2, "options have an answer or are wrong");
    check(errors.isEmpty() == (*status == 0), "a wrong option is said on standard error");
    check(output.isEmpty() == (*status != 0), "an answer is on standard output");
}

} // namespace

} // namespace kelvinbar::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kelvinbar::fuzz::tryOptions(kelvinbar::fuzz::inputText({data, size}));
    return 0;
}
