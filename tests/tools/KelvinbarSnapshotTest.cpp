// The program kelvinbar-snapshot as a user runs it: a process with options, files, exit status and messages.

#include "base/Text.h"
#include "process/StandardStreams.h"
#include "resources/SampleMachines.h"
#include "tests/ProgramRun.h"
#include "tests/tools/TemporaryFolder.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdint>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <unistd.h>

namespace kelvinbar::kelvinbar_snapshot_test {

namespace {

/// The program with its options.
Words program(const Words& options) {
    Words words{KELVINBAR_SNAPSHOT};
    words.insert(words.end(), options.begin(), options.end());
    return words;
}

/// Runs the program with `options` and `input` on its standard input.
Outcome run(const Words& options, std::string_view input = {}) { return outcomeOf(program(options), input); }

/// The text without its second line, the time.
std::string withoutTime(std::string_view text) {
    const std::size_t start = text.find('\n') + 1;
    const std::size_t end = text.find('\n', start);
    EXPECT_TRUE(text.substr(start).starts_with("Generated: 20")) << text;
    return std::string(text.substr(0, start)).append(text.substr(end));
}

void expectSnapshot(const Outcome& outcome, std::string_view expected) {
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(withoutTime(outcome.output), withoutTime(expected));
    EXPECT_EQ(outcome.errors, "");
}

/// Nothing on standard output, `status`, and a message whose words include all of `words`.
void expectFailure(const Outcome& outcome, int status, const Words& words = {}) {
    EXPECT_EQ(outcome.status, status);
    EXPECT_EQ(outcome.output, "");
    EXPECT_TRUE(outcome.errors.starts_with("kelvinbar-snapshot: ")) << outcome.errors;
    EXPECT_TRUE(outcome.errors.ends_with('\n')) << outcome.errors;
    for (const std::string& word : words) EXPECT_TRUE(contains(outcome.errors, word)) << outcome.errors;
}

constexpr std::string_view oneKey = "TC0P\tsp78\t\t\tRAW=2880\n";
constexpr std::string_view oneKeySnapshot =
    "Kelvinbar snapshot\nGenerated: 2026-03-01T14:05:09Z\nActive keys: 1\n"
    "\nTC0P\tsp78\tCPU Proximity\t40.50 °C\tRAW=2880";

TEST(KelvinbarSnapshot, ExplainsItsOptions) {
    for (const std::string_view option : {"--help", "-h"}) {
        const Outcome outcome = run({std::string(option)});
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.errors, "");
        for (const std::string_view word :
             {"kelvinbar-snapshot", "--help", "--version", "--verbose", "--replay", "--demo",
              "intel-notebook", "apple-silicon-desktop", "amd-pc"}) {
            EXPECT_TRUE(contains(outcome.output, word)) << word;
        }
    }
}

TEST(KelvinbarSnapshot, TellsItsVersion) {
    const Outcome outcome = run({"--version"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_TRUE(std::regex_match(outcome.output, std::regex("kelvinbar-snapshot \\d+\\.\\d+\\.\\d+\n")))
        << outcome.output;
}

TEST(KelvinbarSnapshot, ReadsThisMachineWithoutAnOption) {
    const Outcome outcome = run({});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_TRUE(outcome.output.starts_with("Kelvinbar snapshot\nGenerated: 20")) << outcome.output;
    EXPECT_TRUE(contains(outcome.output, "\nActive keys: ")) << outcome.output;
    EXPECT_FALSE(outcome.output.ends_with("RAW=\n")) << outcome.output;
}

TEST(KelvinbarSnapshot, TellsTheTimeOfTheSnapshot) {
    const Outcome outcome = run({"--demo"});
    EXPECT_TRUE(std::regex_search(
        outcome.output,
        std::regex("^Kelvinbar snapshot\nGenerated: \\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\dZ\n")));
}

TEST(KelvinbarSnapshot, ShowsTheFirstSampleForDemoWithoutAName) {
    expectSnapshot(run({"--demo"}), sampleMachines().front().text);
}

TEST(KelvinbarSnapshot, ShowsEverySampleByItsName) {
    for (const SampleMachine& sample : sampleMachines()) {
        SCOPED_TRACE(sample.name);
        expectSnapshot(run({"--demo", std::string(sample.name)}), sample.text);
        expectSnapshot(run({"--demo=" + std::string(sample.name)}), sample.text);
    }
}

TEST(KelvinbarSnapshot, LogsWhatItReadsWhenItIsAsked) {
    const std::string line = "kelvinbar: keys info: reading the sample amd-pc\n";
    for (const Words& verbose : {Words{"--verbose"}, Words{"-v"}, Words{"-vv"}, Words{"-v", "--verbose"}}) {
        Words options{"--demo", "amd-pc"};
        options.insert(options.end(), verbose.begin(), verbose.end());
        const Outcome outcome = run(options);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_TRUE(outcome.output.starts_with("Kelvinbar snapshot\n")) << outcome.output;
        EXPECT_TRUE(contains(outcome.errors, line)) << outcome.errors;
    }
    const Outcome chosen = outcomeOf(program({"--demo", "amd-pc"}), {}, {"KELVINBAR_LOG=keys=info"});
    EXPECT_EQ(chosen.errors, line);
}

TEST(KelvinbarSnapshot, ReportsWordsThatItDoesNotKnowInTheChoiceOfTheLog) {
    const Outcome outcome = outcomeOf(program({"--demo", "amd-pc"}), {}, {"KELVINBAR_LOG=loud"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "kelvinbar: KELVINBAR_LOG: \"loud\" is not known and is ignored\n");
}

TEST(KelvinbarSnapshot, RefusesWrongOptions) {
    const TemporaryFolder folder;
    const std::string file = folder.write("file", oneKey);
    const std::vector<Words> wrong{
        {"--demo", "toaster"},
        {"--demo=toaster"},
        {"--demo", "INTEL-NOTEBOOK"},
        {"--demo", "amd-pc", "extra"},
        {"--demo", "amd-pc", "--demo", "intel-notebook"},
        {"--unknown"},
        {"-x"},
        {"--replay"},
        {"--replay="},
        {"--replay", file, "extra"},
        {"--replay", file, "--replay", file},
        {"--replay", file, "--demo"},
        {"--replay", file, "--demo", "amd-pc"},
        {"--demo", "--replay", file},
        {"--demo", "amd-pc", "--replay", file},
        {"extra"},
        {""},
        {file},
        {"-"},
        {"--", "extra"},
        {"--key"},
        {"--category", "toast"},
        {"--match", ""},
        {"--sort", "size"},
        {"--pinned", "--key", "TC0P"},
        {"--title", "--summary"},
        {"--title", "--format", "json"},
        {"--summary", "--format", "table"},
        {"--watch", "0"},
        {"--watch", "-1"},
        {"--watch", "soon"},
        {"--watch", "--format", "json"},
        {"--watch", "--format", "openmetrics"},
        {"--diff"},
        {"--diff", file, file, file},
        {"--diff", "-", "-"},
        {"--diff", file, "--demo"},
        {"--diff", file, "--watch"},
        {"--diff", file, "--format", "csv"},
        {"--diff", file, "--pinned"},
        {"--diff", file, "--sort", "value"},
        {"--diff", file, "--title", "--key", "TC0P"},
        {"--diff", file, "--tolerance", "-1"},
        {"--tolerance", "1"},
        {"--identify", "--demo"},
        {"--identify", "--replay", file},
        {"--identify", "--diff", file},
        {"--identify", "--watch"},
        {"--identify", "--title"},
        {"--identify", "--summary"},
        {"--identify", "--pinned"},
        {"--identify", "--sort", "key"},
        {"--identify", "--format", "csv"},
        {"--identify", "1"},
        {"--identify", "-5"},
        {"--identify", "soon"},
        {"--by-hand"},
        {"--self"},
        {"--self", "--format", "text"},
        {"--self", "--format", "waybar"},
        {"--self", "--title"},
        {"--self", "--summary"},
        {"--self", "--diff", file},
        {"--self", "--identify"},
        {"--category", "kelvinbar"},
        {"--completion", "tcsh"},
        {"--completion", "bash", "--doctor"},
        {"--completion", "bash", "--version"},
        {"--completion", "bash", "--watch"},
        {"--version", "--format", "xml"},
        {"--version", "--format", "json"},
        {"--version", "--demo"},
        {"--version", "extra"},
    };
    for (const Words& options : wrong) {
        SCOPED_TRACE(testing::PrintToString(options));
        expectFailure(run(options), 2);
    }
}

TEST(KelvinbarSnapshot, TakesOnlyFiniteNumbersWithinTheirLimits) {
    const std::vector<Words> numbers{{"--demo", "--watch"}, {"--identify"}, {"--diff", "-", "--tolerance"}};
    for (const Words& options : numbers) {
        for (const std::string number : {"nan", "inf", "1e999", "-1", "1e10", "5 s", "0x10"}) {
            Words words = options;
            words.push_back(number);
            SCOPED_TRACE(testing::PrintToString(words));
            const Outcome outcome = run(words, oneKey);
            expectFailure(outcome, 2, {options.back()});
            EXPECT_LT(outcome.errors.size(), 120U) << outcome.errors;
        }
    }
    expectFailure(run({"--demo", "--watch", ""}), 2, {"--watch"});
    expectFailure(run({"--diff", "-", "--tolerance", ""}, oneKey), 2, {"--tolerance"});
}

TEST(KelvinbarSnapshot, SaysInWordsHowOftenAnOptionIsTaken) {
    expectFailure(run({"--diff", "a", "b", "c"}), 2, {": --diff takes one or two files\n"});
    expectFailure(run({"--demo", "--format", "csv", "--format", "json"}), 2,
                  {": --format is given more than once\n"});
    expectFailure(run({"--demo", "--format"}), 2, {": --format: NAME is missing\n"});
    expectFailure(run({"--diff"}), 2, {": --diff: FILE is missing\n"});
}

TEST(KelvinbarSnapshot, SaysWhatToWatchInPlaceOfADocument) {
    for (const std::string format : {"json", "openmetrics"}) {
        expectFailure(run({"--demo", "--watch", "--format", format}), 2,
                      {"--watch: " + format + " is one document; use jsonl or csv instead\n"});
    }
}

TEST(KelvinbarSnapshot, RefusesAnEmptyKey) {
    expectFailure(run({"--demo", "--key", ""}), 2, {"--key: KEY is empty\n"});
    expectFailure(run({"--demo", "--key", "TC0P", ""}), 2, {"--key: KEY is empty\n"});
}

/// An unset variable of a shell script must not read another machine than the one that was asked for.
TEST(KelvinbarSnapshot, RefusesASampleWithAnEmptyName) { expectFailure(run({"--demo", ""}), 2); }

TEST(KelvinbarSnapshot, NamesAnUnknownSample) {
    expectFailure(run({"--demo", "toaster"}), 2, {"toaster", "amd-pc"});
}

TEST(KelvinbarSnapshot, NamesAnUnknownOption) { expectFailure(run({"--unknown"}), 2, {"--unknown"}); }

TEST(KelvinbarSnapshot, NamesOptionsThatExcludeEachOther) {
    expectFailure(run({"--demo", "--replay", "file"}), 2, {"--demo", "--replay"});
}

TEST(KelvinbarSnapshot, ReplaysAFile) {
    const TemporaryFolder folder;
    const std::string file = folder.write("größe 1.txt", oneKey);
    expectSnapshot(run({"--replay", file}), oneKeySnapshot);
    expectSnapshot(run({"--replay=" + file}), oneKeySnapshot);
}

TEST(KelvinbarSnapshot, ReplaysItsOwnOutput) {
    const TemporaryFolder folder;
    for (const SampleMachine& sample : sampleMachines()) {
        SCOPED_TRACE(sample.name);
        const std::string first = run({"--demo", std::string(sample.name)}).output;
        expectSnapshot(run({"--replay", folder.write("file", first)}), first);
    }
}

TEST(KelvinbarSnapshot, ReplaysThisMachinesSnapshot) {
    const std::string first = run({}).output;
    ASSERT_TRUE(contains(first, "\tRAW="));
    expectSnapshot(run({"--replay", "-"}, first), first);
}

TEST(KelvinbarSnapshot, ReplaysStandardInputForADash) {
    expectSnapshot(run({"--replay", "-"}, oneKey), oneKeySnapshot);
    expectSnapshot(run({"--replay=-"}, oneKey), oneKeySnapshot);
}

TEST(KelvinbarSnapshot, ReplaysAPipe) {
    const TemporaryFolder folder;
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const ProgramRun::Streams streams{"/dev/null", folder.write("output", ""), folder.write("errors", "")};
    const ProgramRun replay(program({"--replay", pipe}), streams);
    EXPECT_TRUE(folder.write("pipe", oneKey) == pipe);
    EXPECT_EQ(replay.status(), 0);
    EXPECT_EQ(withoutTime(contentOf(streams.output)), withoutTime(oneKeySnapshot));
}

TEST(KelvinbarSnapshot, FailsOnAMissingFile) {
    const TemporaryFolder folder;
    const std::string file = folder.path("missing");
    expectFailure(run({"--replay", file}), 1, {file});
}

TEST(KelvinbarSnapshot, FailsOnAFileWithoutAName) {
    const Outcome outcome = run({"--replay", ""});
    EXPECT_NE(outcome.status, 0);
    EXPECT_EQ(outcome.output, ""); // not this machine's snapshot
    EXPECT_NE(outcome.errors, "");
}

TEST(KelvinbarSnapshot, FailsOnAFolder) {
    const TemporaryFolder folder;
    expectFailure(run({"--replay", folder.path("")}), 1, {folder.path("")});
}

TEST(KelvinbarSnapshot, FailsOnAFileWithoutAUsableLine) {
    const TemporaryFolder folder;
    const std::string file = folder.write("file", "junk\n\nTC0P\tsp78\t\t\tRAW=2\n");
    expectFailure(run({"--replay", file}), 1, {file, "line 1", "line 3"});
}

TEST(KelvinbarSnapshot, FailsOnASnapshotWithoutReadings) {
    const TemporaryFolder folder;
    const std::string file =
        folder.write("file", "Kelvinbar snapshot\nGenerated: 2026-03-01T14:05:09Z\nActive keys: 0\n");
    expectFailure(run({"--replay", file}), 1, {file});
}

TEST(KelvinbarSnapshot, FailsOnAnEmptyFile) {
    const TemporaryFolder folder;
    const std::string file = folder.write("file", "");
    expectFailure(run({"--replay", file}), 1, {file});
}

TEST(KelvinbarSnapshot, FailsOnEmptyStandardInput) {
    expectFailure(run({"--replay", "-"}, ""), 1, {"standard input"});
}

TEST(KelvinbarSnapshot, FailsOnADeviceThatNeverEnds) {
    expectFailure(run({"--replay", "/dev/zero"}), 1, {"/dev/zero", "larger than"});
}

TEST(KelvinbarSnapshot, FailsOnBytesThatAreNoText) {
    std::string bytes;
    for (int number = 0; number < 4096; ++number)
        bytes.push_back(static_cast<char>(number * 37 + number / 256));
    expectFailure(run({"--replay", "-"}, bytes), 1, {"standard input"});
}

TEST(KelvinbarSnapshot, NamesLinesThatItCannotUseAndShowsTheRest) {
    const TemporaryFolder folder;
    const std::string file =
        folder.write("file", "Kelvinbar snapshot\njunk\n" + std::string(oneKey) + "TC1C\tsp78\t\t\tRAW=2\n");
    const Outcome outcome = run({"--replay", file});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(withoutTime(outcome.output), withoutTime(oneKeySnapshot));
    EXPECT_TRUE(contains(outcome.errors, file + ", line 2: ")) << outcome.errors;
    EXPECT_TRUE(contains(outcome.errors, file + ", line 4: ")) << outcome.errors;
    EXPECT_EQ(std::ranges::count(outcome.errors, '\n'), 2) << outcome.errors;
}

/// As many lines that cannot be used.
std::string junk(int lines) {
    std::string text;
    for (int line = 0; line < lines; ++line) text.append("junk\n");
    return text;
}

TEST(KelvinbarSnapshot, NamesTenLinesThatItCannotUseOneByOne) {
    const Outcome outcome = run({"--replay", "-"}, junk(10) + std::string(oneKey));
    EXPECT_EQ(std::ranges::count(outcome.errors, '\n'), 10) << outcome.errors;
    EXPECT_TRUE(contains(outcome.errors, "standard input, line 10: ")) << outcome.errors;
}

TEST(KelvinbarSnapshot, CountsAMillionLinesThatItCannotUseInOneMessage) {
    const Outcome outcome = run({"--replay", "-"}, junk(1'000'000) + std::string(oneKey));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(withoutTime(outcome.output), withoutTime(oneKeySnapshot));
    EXPECT_EQ(std::ranges::count(outcome.errors, '\n'), 11) << outcome.errors.substr(0, 2000);
    EXPECT_TRUE(outcome.errors.ends_with("kelvinbar-snapshot: standard input: 1000000 lines cannot be used; "
                                         "the first 10 are named\n"))
        << outcome.errors.substr(0, 2000);
}

TEST(KelvinbarSnapshot, NamesTheEncodingOfATextInUtf16) {
    const std::string ascii = "Kelvinbar snapshot\n" + std::string(oneKey);
    std::string littleEndian;
    std::string bigEndian;
    for (const char character : ascii) {
        littleEndian.append(1, character).append(1, '\0');
        bigEndian.append(1, '\0').append(1, character);
    }
    for (const std::string& text :
         {littleEndian, bigEndian, "\xFF\xFE" + littleEndian, "\xFE\xFF" + bigEndian}) {
        const Outcome outcome = run({"--replay", "-"}, text);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.output, "");
        EXPECT_EQ(outcome.errors,
                  "kelvinbar-snapshot: cannot read standard input: it is in UTF-16 instead of UTF-8\n");
    }
}

TEST(KelvinbarSnapshot, SaysOnceThatAFileIsJson) {
    const TemporaryFolder folder;
    const std::string text = folder.write("text", oneKey);
    for (const char* const format : {"json", "jsonl"}) {
        const std::string file = folder.write("file", run({"--demo", "--format", format}).output);
        const std::string message =
            "kelvinbar-snapshot: " + file + ": this is JSON; --replay and --diff read the format text\n";
        EXPECT_EQ(run({"--replay", file}).status, 1);
        EXPECT_EQ(run({"--replay", file}).errors, message);
        EXPECT_EQ(run({"--diff", text, file}).status, 3);
        EXPECT_EQ(run({"--diff", text, file}).errors, message);
    }
}

TEST(KelvinbarSnapshot, NamesLinesOfStandardInput) {
    const Outcome outcome = run({"--replay", "-"}, "junk\n" + std::string(oneKey));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(withoutTime(outcome.output), withoutTime(oneKeySnapshot));
    EXPECT_TRUE(contains(outcome.errors, "standard input, line 1: ")) << outcome.errors;
}

TEST(KelvinbarSnapshot, FailsWhenItCannotWrite) {
    if (!std::filesystem::exists("/dev/full"))
        GTEST_SKIP() << "this system has no device that is always full";
    const TemporaryFolder folder;
    const std::string errors = folder.write("errors", "");
    EXPECT_EQ(ProgramRun(program({"--demo"}), {"/dev/null", "/dev/full", errors}).status(), 1);
    EXPECT_EQ(contentOf(errors), "kelvinbar-snapshot: cannot write the snapshot: No space left on device\n");
}

TEST(KelvinbarSnapshot, FailsWhereFilesMayNotBeThatLarge) {
    const Outcome outcome = outcomeWithSmallFiles(program({"--demo", "--format", "json"}));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "kelvinbar-snapshot: cannot write the snapshot: File too large\n");
}

TEST(KelvinbarSnapshot, FailsWhenItCannotWriteAnAnswer) {
    if (!std::filesystem::exists("/dev/full"))
        GTEST_SKIP() << "this system has no device that is always full";
    const TemporaryFolder folder;
    for (const char* const option : {"--help", "--version"}) {
        const std::string errors = folder.write(option, "");
        EXPECT_EQ(ProgramRun(program({option}), {"/dev/null", "/dev/full", errors}).status(), 1);
        EXPECT_EQ(contentOf(errors),
                  "kelvinbar-snapshot: cannot write to standard output: No space left on device\n");
    }
}

TEST(KelvinbarSnapshot, PrintsTheFormatThatIsAskedFor) {
    expectSnapshot(run({"--demo", "--format", "text"}), sampleMachines().front().text);
    EXPECT_TRUE(run({"--demo", "--format=json"}).output.starts_with("{\n  \"schema\": 1,\n"));
    EXPECT_TRUE(run({"--demo", "--format", "table"}).output.starts_with("CPU\n"));
}

TEST(KelvinbarSnapshot, NamesAnUnknownFormat) {
    expectFailure(run({"--demo", "--format", "xml"}), 2, {"--format", "xml", "jsonl"});
    expectFailure(run({"--demo", "--format", ""}), 2, {"--format"});
}

TEST(KelvinbarSnapshot, NamesNoFileOfTheUserInADocument) {
    const TemporaryFolder folder;
    const Outcome outcome = run({"--replay", folder.write("ada", oneKey), "--format", "json"});
    EXPECT_TRUE(contains(outcome.output, "\"machine\": \"a snapshot\"")) << outcome.output;
    EXPECT_FALSE(contains(outcome.output, "ada")) << outcome.output;
}

TEST(KelvinbarSnapshot, DatesAReplayAsItsSnapshotWas) {
    const Words replay{"--replay", "-"};
    const auto printed = [&](const Words& options, std::string_view text) {
        Words words = replay;
        words.insert(words.end(), options.begin(), options.end());
        return run(words, text).output;
    };
    const std::string_view date = "2026-03-01T14:05:09Z";
    EXPECT_TRUE(contains(printed({"--format", "json"}, oneKeySnapshot), date));
    EXPECT_TRUE(contains(printed({"--format", "jsonl"}, oneKeySnapshot), date));
    EXPECT_FALSE(contains(printed({"--format", "text"}, oneKeySnapshot), date));
    EXPECT_TRUE(contains(printed({"--format", "json"}, oneKey), "\"time\": \"20"));
    const auto sample = nlohmann::json::parse(run({"--demo", "--format", "json"}).output);
    EXPECT_FALSE(contains(sampleMachines().front().text, sample["time"].get<std::string>()));
}

TEST(KelvinbarSnapshot, SaysThatNobodyReadsWhatItPrints) {
    const Outcome outcome = outcomeIntoClosedPipe(program({"--demo"}));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "kelvinbar-snapshot: cannot write the snapshot: Broken pipe\n");
}

// Selection

TEST(KelvinbarSnapshot, PrintsTheSelectedReadingsAlone) {
    const Outcome outcome = run({"--demo", "--key", "TC0P", "F0Ac"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(contains(outcome.output, "\nActive keys: 2\n\nTC0P\t")) << outcome.output;
    EXPECT_EQ(run({"--demo", "--match", "FAN 0 name", "--format", "csv"}).output,
              "key,name,category,type,value,number,unit,raw,status\n"
              "F0ID,Fan 0 Name,Fans,{fds,Left side,,,000000004C6566742073696465202020,OK\n");
    EXPECT_TRUE(run({"--demo", "--category", "GPU / iGPU", "Fans", "--format", "table"})
                    .output.starts_with("GRAPHICS\n"));
}

/// The outcome for a user with these preferences; without a file if they are empty.
Outcome runWithPreferences(const Words& options, std::string_view preferences) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.path("kelvinbar"));
    if (!preferences.empty()) static_cast<void>(folder.write("kelvinbar/kelvinbar.conf", preferences));
    return outcomeOf(program(options), {}, {"XDG_CONFIG_HOME=" + folder.path("")});
}

/// Whether the table has the lines of these keys in this order.
bool hasRowsInOrder(const std::string& table, const Words& keys) {
    std::size_t place = 0;
    for (const std::string& key : keys) place = std::min(table.find("  " + key + "\n", place), table.size());
    return place < table.size();
}

TEST(KelvinbarSnapshot, KeepsTheOrderThatIsAskedForInATable) {
    const Words keys{"TC1C", "TC0P", "TC2C"};
    const auto table = [&](const Words& options) {
        Words words{"--demo", "--format", "table"};
        words.insert(words.end(), options.begin(), options.end());
        return runWithPreferences(words, "[General]\nKelvinbarMenuBarKeys=TC1C, TC0P, TC2C\n").output;
    };
    EXPECT_TRUE(hasRowsInOrder(table({"--key", "TC1C", "TC0P", "TC2C"}), keys));
    EXPECT_TRUE(hasRowsInOrder(table({"--pinned"}), keys));
    EXPECT_TRUE(hasRowsInOrder(table({"--sort", "key"}), {"TC0P", "TC1C", "TC2C"}));
    EXPECT_FALSE(hasRowsInOrder(table({"--match", "TC"}), keys));
}

TEST(KelvinbarSnapshot, NamesKeysWithoutAReading) {
    const Outcome outcome = run({"--demo", "--key", "TC0P", "XXXX", "--title"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "51.75°\n");
    EXPECT_EQ(outcome.errors, "kelvinbar-snapshot: no reading has the key XXXX\n");
}

TEST(KelvinbarSnapshot, FailsWhenNothingIsSelected) {
    for (const Words& selection :
         {Words{"--match", "toaster"}, Words{"--category", "other", "--key", "TC0P"}}) {
        Words options{"--demo"};
        options.insert(options.end(), selection.begin(), selection.end());
        expectFailure(run(options), 1, {"no reading is selected"});
    }
}

constexpr std::string_view twoPins = "[General]\nKelvinbarMenuBarKeys=TC0P, F0Ac\nKelvinbarMenuBarKey=TC0P\n";

TEST(KelvinbarSnapshot, PrintsTheTitleOfThePinnedReadings) {
    EXPECT_EQ(runWithPreferences({"--demo", "--title"}, twoPins).output, "51.75°  2156rpm\n");
    EXPECT_EQ(run({"--demo", "--title", "--key", "TC0P"}).output, "51.75°\n");
}

TEST(KelvinbarSnapshot, PrintsThePinnedReadingsInPinOrder) {
    const std::string output = runWithPreferences({"--demo", "--pinned"}, twoPins).output;
    EXPECT_LT(output.find("\nTC0P\t"), output.find("\nF0Ac\t")) << output;
    EXPECT_TRUE(contains(output, "\nActive keys: 2\n")) << output;
}

TEST(KelvinbarSnapshot, PrintsTheTitleForWaybar) {
    const std::string expected =
        "{\"text\":\"51.75°  2156rpm\",\"tooltip\":\"Kelvinbar • TC0P • CPU Proximity: 51.75 °C  |  "
        "F0Ac • Fan 0: 2156 RPM\",\"class\":\"readings\"}\n";
    EXPECT_EQ(runWithPreferences({"--demo", "--title", "--format", "waybar"}, twoPins).output, expected);
    EXPECT_EQ(runWithPreferences({"--demo", "--format", "waybar"}, twoPins).output, expected);
}

TEST(KelvinbarSnapshot, SaysThatNothingIsPinned) {
    expectFailure(runWithPreferences({"--demo", "--title"}, ""), 1, {"nothing is pinned"});
    expectFailure(runWithPreferences({"--demo", "--pinned"}, "junk"), 1, {"nothing is pinned"});
}

TEST(KelvinbarSnapshot, SummarizesAMachineInFourLines) {
    EXPECT_EQ(run({"--demo", "linux-pc", "--summary"}).output,
              "Hottest      68 °C  GPU Hotspot\nFastest fan  2350 RPM  Mainboard Fan 7\nPower        96 W\n"
              "Battery      none\n");
}

// Watching

/// A run of the program whose output the test reads line by line.
class WatchedRun {
  public:
    explicit WatchedRun(const Words& options, const Words& variables = {})
        : run_(started(options, variables)) {}

    WatchedRun(const WatchedRun&) = delete;
    WatchedRun& operator=(const WatchedRun&) = delete;

    ~WatchedRun() { closeOutput(); }

    std::string line() {
        std::string line;
        for (char character = 0; !line.ends_with('\n') && ::read(output_, &character, 1) == 1;)
            line.push_back(character);
        return line;
    }

    void closeOutput() {
        if (output_ >= 0) ::close(std::exchange(output_, -1));
    }

    void send(int signal) const { run_.send(signal); }

    int status() { return run_.status(); }

    std::string errors() { return contentOf(folder_.path("errors")); }

  private:
    ProgramRun started(const Words& options, const Words& variables) {
        const std::string pipe = folder_.path("pipe");
        EXPECT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
        output_ = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC); // does not wait for the program
        ProgramRun run(program(options), {"/dev/null", pipe, folder_.write("errors", "")}, variables);
        ::fcntl(output_, F_SETFL, 0);
        return run;
    }

    TemporaryFolder folder_;
    int output_ = -1;
    ProgramRun run_;
};

TEST(KelvinbarSnapshot, PrintsAgainAndAgainUntilASignal) {
    for (const int signal : {SIGINT, SIGTERM}) {
        WatchedRun watched({"--demo", "--watch", "0.1", "--title", "--key", "TC0P"});
        for (int tick = 0; tick < 3; ++tick) EXPECT_EQ(watched.line(), "51.75°\n");
        watched.send(signal);
        while (!watched.line().empty()) {
        }
        EXPECT_EQ(watched.status(), 0);
        EXPECT_EQ(watched.errors(), "");
    }
}

TEST(KelvinbarSnapshot, EndsAtOnceWhenASignalComesWhileItWaits) {
    WatchedRun watched({"--demo", "--watch", "3600", "--title", "--key", "TC0P"});
    EXPECT_EQ(watched.line(), "51.75°\n");
    watched.send(SIGTERM);
    EXPECT_EQ(watched.line(), "");
    EXPECT_EQ(watched.status(), 0);
}

TEST(KelvinbarSnapshot, EndsAtOnceWhenNobodyReadsWhatItWatches) {
    WatchedRun watched({"--demo", "--watch", "3600", "--format", "jsonl"});
    EXPECT_TRUE(watched.line().starts_with("{\"schema\":1,"));
    watched.closeOutput();
    EXPECT_EQ(watched.status(), 0);
    EXPECT_EQ(watched.errors(), "");
}

TEST(KelvinbarSnapshot, AppendsRowsUnderOneHeading) {
    WatchedRun watched({"--demo", "--watch", "0.1", "--format", "csv", "--key", "TC0P", "F0Mn"});
    EXPECT_EQ(watched.line(), "time,CPU Proximity (°C),Fan 0 Minimum (RPM)\n");
    EXPECT_TRUE(watched.line().ends_with("Z,51.75,1980\n"));
    EXPECT_TRUE(watched.line().ends_with("Z,51.75,1980\n"));
}

/// Preferences as the desktop program stores them: a file that is replaced.
class PinFolder {
  public:
    PinFolder() { std::filesystem::create_directory(folder_.path("kelvinbar")); }

    void pin(std::string_view keys) const {
        const std::string text = "[General]\nKelvinbarMenuBarKeys=" + std::string(keys) + "\n";
        std::filesystem::rename(folder_.write("new", text), folder_.path("kelvinbar/kelvinbar.conf"));
    }

    [[nodiscard]] Words variables() const { return {"XDG_CONFIG_HOME=" + folder_.path("")}; }

  private:
    TemporaryFolder folder_;
};

/// The first line that differs from `line`, or the end.
std::string lineAfter(const std::string& line, WatchedRun& watched) {
    std::string next = line;
    while (next == line) next = watched.line();
    return next;
}

TEST(KelvinbarSnapshot, FollowsThePinsThatItWatches) {
    const PinFolder folder;
    WatchedRun watched({"--demo", "--title", "--watch", "0.1"}, folder.variables());
    EXPECT_EQ(watched.line(), "\n");
    folder.pin("TC0P");
    EXPECT_EQ(lineAfter("\n", watched), "51.75°\n");
    folder.pin("F0Ac, TC0P");
    EXPECT_EQ(lineAfter("51.75°\n", watched), "2156rpm  51.75°\n");
    folder.pin("");
    EXPECT_EQ(lineAfter("2156rpm  51.75°\n", watched), "\n");
    watched.send(SIGTERM);
    while (!watched.line().empty()) {
    }
    EXPECT_EQ(watched.status(), 0);
    EXPECT_EQ(watched.errors(), "");
}

std::string statusIn(const std::string& document) {
    return nlohmann::json::parse(document)["status"].get<std::string>();
}

TEST(KelvinbarSnapshot, CountsWhatIsSelectedInItsStatus) {
    const Words selection{"--demo", "--key", "TC0P", "F0Mn", "--format"};
    const auto with = [&](const Words& options) {
        Words words = selection;
        words.insert(words.end(), options.begin(), options.end());
        return words;
    };
    const std::string status = statusIn(run(with({"json"})).output);
    EXPECT_TRUE(status.starts_with("Loaded 2 ")) << status;
    WatchedRun watched(with({"jsonl", "--watch", "0.1"}));
    for (int tick = 0; tick < 3; ++tick) EXPECT_EQ(statusIn(watched.line()), status);
    EXPECT_FALSE(statusIn(run({"--demo", "--format", "json"}).output).starts_with("Loaded 2 "));
}

TEST(KelvinbarSnapshot, DoesNotCountItsOwnCostInItsStatus) {
    const Words nowhere{"DBUS_SESSION_BUS_ADDRESS=", "XDG_RUNTIME_DIR=/nowhere"};
    const Words options{"--demo", "--self", "--format", "json", "--category", "kelvinbar"};
    const std::string status = statusIn(outcomeOf(program(options), {}, nowhere).output);
    EXPECT_TRUE(status.starts_with("Loaded 0 ")) << status;
}

TEST(KelvinbarSnapshot, ASelectionOfNothingIsNoFailureOfSensors) {
    const PinFolder folder;
    WatchedRun watched({"--demo", "--pinned", "--format", "jsonl", "--watch", "0.1"}, folder.variables());
    for (int tick = 0; tick < 3; ++tick) {
        const std::string status = statusIn(watched.line());
        EXPECT_TRUE(status.starts_with("Loaded 0 ")) << status;
    }
}

TEST(KelvinbarSnapshot, TellsWaybarThatNothingIsPinned) {
    const PinFolder folder;
    WatchedRun watched({"--demo", "--format", "waybar", "--watch", "0.1"}, folder.variables());
    const std::string empty = "{\"text\":\"\",\"tooltip\":\"Kelvinbar - double-click up to 6 sensors to show "
                              "them here\",\"class\":\"empty\"}\n";
    EXPECT_EQ(watched.line(), empty);
    folder.pin("TC0P");
    EXPECT_TRUE(contains(lineAfter(empty, watched), "\"class\":\"readings\""));
}

TEST(KelvinbarSnapshot, BeginsRowsWhenSomethingIsPinned) {
    const PinFolder folder;
    WatchedRun watched({"--demo", "--pinned", "--format", "csv", "--watch", "0.1"}, folder.variables());
    folder.pin("TC0P");
    EXPECT_EQ(watched.line(), "time,CPU Proximity (°C)\n");
    EXPECT_TRUE(watched.line().ends_with("Z,51.75\n"));
    folder.pin("F0Ac");
    std::string row = "Z,51.75\n";
    while (row.ends_with("Z,51.75\n")) row = watched.line();
    EXPECT_TRUE(row.ends_with("Z,\n")) << row;
}

TEST(KelvinbarSnapshot, DatesTheRowsOfAReplayAsItsSnapshotWas) {
    const TemporaryFolder folder;
    const std::string file = folder.write("file", oneKeySnapshot);
    for (const std::string format : {"csv", "table"}) {
        WatchedRun watched({"--replay", file, "--watch", "--format", format});
        const std::string first = watched.line();
        const std::string dated = format == "csv" ? watched.line() : first;
        EXPECT_TRUE(dated.starts_with("2026-03-01T14:05:09Z")) << dated;
    }
}

TEST(KelvinbarSnapshot, RepeatsNoTimeWhenItReadsSeveralTimesASecond) {
    for (const std::string format : {"csv", "jsonl"}) {
        WatchedRun watched({"--demo", "--watch", "0.1", "--format", format, "--key", "TC0P"});
        if (format == "csv") static_cast<void>(watched.line()); // the heading
        const std::regex time("\\d{4}-[-0-9T:]+\\.\\d{3}Z");
        std::set<std::string> times;
        for (int tick = 0; tick < 5; ++tick) {
            const std::string line = watched.line();
            std::smatch found;
            EXPECT_TRUE(std::regex_search(line, found, time)) << line;
            times.insert(found.str());
        }
        EXPECT_EQ(times.size(), 5U);
    }
}

TEST(KelvinbarSnapshot, FailsWhenItCannotWriteWhatItWatches) {
    if (!std::filesystem::exists("/dev/full"))
        GTEST_SKIP() << "this system has no device that is always full";
    const TemporaryFolder folder;
    const std::string errors = folder.write("errors", "");
    EXPECT_EQ(ProgramRun(program({"--demo", "--watch"}), {"/dev/null", "/dev/full", errors}).status(), 1);
    EXPECT_EQ(contentOf(errors), "kelvinbar-snapshot: cannot write the readings: No space left on device\n");
}

// Comparison

constexpr std::string_view warmerKey = "TC0P\tsp78\t\t\tRAW=2900\n";

TEST(KelvinbarSnapshot, ComparesTwoSnapshots) {
    const TemporaryFolder folder;
    const std::string before = folder.write("before", oneKey);
    const std::string after = folder.write("after", warmerKey);
    const Outcome outcome = run({"--diff", before, after});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "~ TC0P  CPU Proximity  40.50 °C → 41 °C (+0.5)\n");
    EXPECT_EQ(outcome.errors, "");
}

constexpr std::string_view nearlyNoCurrent = "chip-isa-0/curr1\tchip\tCurrent\t-0.001 A\tRAW=-1\n";

TEST(KelvinbarSnapshot, PrintsNoSignBeforeZero) {
    for (const std::string format : {"json", "csv", "table"}) {
        const Outcome outcome = run({"--replay", "-", "--format", format}, nearlyNoCurrent);
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        EXPECT_FALSE(std::regex_search(outcome.output, std::regex("-0(?![.\\d/-])"))) << outcome.output;
    }
    EXPECT_EQ(run({"--replay", "-", "--title", "--match", "Current"}, nearlyNoCurrent).output, "0 A\n");
    const TemporaryFolder folder;
    const std::string before = folder.write("before", "chip-isa-0/curr1\tchip\tCurrent\t2 A\tRAW=2\n");
    EXPECT_EQ(run({"--diff", before, "-"}, nearlyNoCurrent).output,
              "~ chip-isa-0/curr1  Current  2 A → 0 A (-2)\n");
}

TEST(KelvinbarSnapshot, IsSilentAboutEqualSnapshots) {
    const TemporaryFolder folder;
    const std::string before = folder.write("before", oneKey);
    for (const Words& options :
         {Words{"--diff", before, before},
          Words{"--diff", before, folder.write("after", warmerKey), "--tolerance", "0.5"}}) {
        const Outcome outcome = run(options);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.output, "");
        EXPECT_EQ(outcome.errors, "");
    }
}

TEST(KelvinbarSnapshot, ComparesASnapshotWithThisMachine) {
    const TemporaryFolder folder;
    const Outcome outcome =
        run({"--diff", folder.write("other", "ZZZZ\tioreg\tx\t1 RPM\tRAW=\n" + std::string(oneKey))});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(contains(outcome.output, "- TC0P ")) << outcome.output;
    EXPECT_TRUE(contains(outcome.output, "+ N")) << outcome.output; // facts of the system
}

TEST(KelvinbarSnapshot, ComparesTheSelectedReadings) {
    const TemporaryFolder folder;
    const std::string before = folder.write("before", oneKey);
    const std::string after = folder.write("after", std::string(oneKey) + "TC0D\tsp78\t\t\tRAW=2900\n");
    EXPECT_EQ(run({"--diff", before, after}).status, 1);
    EXPECT_EQ(run({"--diff", before, after, "--key", "TC0P"}).status, 0);
    expectFailure(run({"--diff", before, after, "--match", "toaster"}), 3, {"no reading is selected"});
}

// Masks

constexpr std::string_view hiddenDevices =
    "enx001122334455-pci-0100/temp1\tenx001122334455\tEthernet\t40 °C\tRAW=40000\n"
    "hid-aa:bb:cc:dd:ee:ff-battery/capacity\tperipheral\tDevice Battery\t80 %\tRAW=80\n"
    "hid-11:22:33:44:55:66-battery/capacity\tperipheral\tDevice Battery 2\t70 %\tRAW=70\n"
    "hid-4058-c1-2a-9f-battery/capacity\tperipheral\tDevice Battery 3\t60 %\tRAW=60\n";

TEST(KelvinbarSnapshot, ReplaysWhatItHasMasked) {
    const Outcome first = run({"--replay", "-"}, hiddenDevices);
    EXPECT_TRUE(contains(first.output, "\nhid-xxxxxx81-battery/capacity\t")) << first.output;
    expectSnapshot(run({"--replay", "-"}, first.output), first.output);
}

TEST(KelvinbarSnapshot, AMaskedSnapshotDiffersInNothingFromItsMachine) {
    const TemporaryFolder folder;
    const std::string masked = folder.write("masked", run({"--replay", "-"}, hiddenDevices).output);
    const Outcome outcome = run({"--diff", "-", masked}, hiddenDevices);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "");
}

TEST(KelvinbarSnapshot, ComparesTheOtherDevicesWhenOneWasRemoved) {
    const TemporaryFolder folder;
    const std::string masked = folder.write("masked", run({"--replay", "-"}, hiddenDevices).output);
    const std::string_view others = hiddenDevices.substr(hiddenDevices.find('\n') + 1);
    EXPECT_EQ(run({"--diff", masked, "-"}, others).output,
              "- enxxxxxxxxxxx47-pci-0100/temp1  Ethernet  40 °C\n");
}

TEST(KelvinbarSnapshot, TakesKeysAsTheMaskedTextHasThem) {
    const Words options{"--replay",
                        "-",
                        "--title",
                        "--key",
                        "hid-xxxxxx81-battery/capacity",
                        "enxxxxxxxxxxx47-pci-0100/temp1"};
    const Outcome outcome = run(options, hiddenDevices);
    EXPECT_EQ(outcome.output, "60 %  40°\n");
    EXPECT_EQ(outcome.errors, "");
}

TEST(KelvinbarSnapshot, PrintsDifferencesAsJson) {
    const TemporaryFolder folder;
    const std::string before = folder.write("before", oneKey);
    const Outcome outcome = run({"--format", "json", "--diff", before, "-"}, warmerKey);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(outcome.output.starts_with("{\n  \"schema\": 1,\n  \"appeared\": [],")) << outcome.output;
    EXPECT_TRUE(outcome.output.ends_with("}\n")) << outcome.output;
}

TEST(KelvinbarSnapshot, TellsFailuresOfAComparisonFromDifferences) {
    const TemporaryFolder folder;
    const std::string file = folder.write("file", oneKey);
    expectFailure(run({"--diff", folder.path("missing"), file}), 3, {folder.path("missing")});
    expectFailure(run({"--diff", file, folder.path("missing")}), 3, {folder.path("missing")});
    expectFailure(run({"--diff", folder.write("junk", "junk\n"), file}), 3, {"no line of a snapshot"});
    const std::string errors = folder.write("errors", "");
    if (!std::filesystem::exists("/dev/full")) return;
    EXPECT_EQ(ProgramRun(program({"--diff", file, "-"}), {folder.write("in", warmerKey), "/dev/full", errors})
                  .status(),
              3);
    EXPECT_EQ(contentOf(errors),
              "kelvinbar-snapshot: cannot write the differences: No space left on device\n");
}

TEST(KelvinbarSnapshot, IdentifiesNothingAmongNoReadings) {
    expectFailure(run({"--identify", "--match", "toaster"}), 1, {"no reading is selected"});
}

TEST(KelvinbarSnapshot, IdentifiesNothingAmongFactsOfTheSystem) {
    expectFailure(run({"--identify", "--key", "NLPM"}), 1, {"there is no sensor that could be identified"});
}

TEST(KelvinbarSnapshot, FailsWithoutAStandardOutput) {
    const TemporaryFolder folder;
    const std::string errors = folder.write("errors", "");
    EXPECT_EQ(ProgramRun(program({"--demo"}), {"", "", errors}).status(), 1);
    EXPECT_EQ(contentOf(errors), "kelvinbar-snapshot: cannot write the snapshot: Bad file descriptor\n");
}

/// A run of the program at a pseudo-terminal.
class TerminalRun {
  public:
    /// Without a size, the terminal does not tell one.
    TerminalRun(const Words& options, const Words& variables, TerminalSize size = {})
        : terminal_(opened(size)), run_(program(options), streams(), variables) {}

    TerminalRun(const TerminalRun&) = delete;
    TerminalRun& operator=(const TerminalRun&) = delete;

    ~TerminalRun() { ::close(terminal_); }

    void resize(TerminalSize size) const { setSize(terminal_, size); }

    /// All up to the end of the output or of a page of a watch.
    std::string page() { return textUntil("\x1b[J"); }

    /// All up to `end`, or to the end of the output.
    std::string textUntil(std::string_view end) {
        std::string text;
        for (char character = 0; !text.ends_with(end) && ::read(terminal_, &character, 1) == 1;) {
            if (character != '\r') text.push_back(character);
        }
        return text;
    }

    /// Ends the run if it goes on; the exit status.
    int status() {
        run_.terminate();
        while (!page().empty()) {
        }
        return run_.status();
    }

  private:
    static int opened(TerminalSize size) {
        const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY);
        EXPECT_EQ(::grantpt(terminal), 0);
        EXPECT_EQ(::unlockpt(terminal), 0);
        setSize(terminal, size);
        return terminal;
    }

    static void setSize(int terminal, TerminalSize size) {
        struct winsize set{};

        set.ws_col = static_cast<unsigned short>(size.columns);
        set.ws_row = static_cast<unsigned short>(size.rows);
        EXPECT_EQ(::ioctl(terminal, TIOCSWINSZ, &set), 0); // NOLINT(cppcoreguidelines-pro-type-vararg)
    }

    ProgramRun::Streams streams() const {
        const std::string name = ::ptsname(terminal_); // NOLINT(concurrency-mt-unsafe): one thread
        return {"/dev/null", name, folder_.write("errors", "")};
    }

    TemporaryFolder folder_;
    int terminal_;
    ProgramRun run_;
};

bool hasPseudoTerminals() {
    const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY);
    return terminal >= 0 && ::close(terminal) == 0;
}

/// What the program prints on a terminal; no value if this system gives none.
std::optional<std::string> printedAtTerminal(const Words& options, const Words& variables = {}) {
    if (!hasPseudoTerminals()) return std::nullopt;
    TerminalRun run(options, variables);
    std::string output = run.page();
    EXPECT_EQ(run.status(), 0);
    return output;
}

/// What is typed at a terminal begins on a line of its own again.
TEST(KelvinbarSnapshot, EndsTheLastLineAtATerminal) {
    const TemporaryFolder folder;
    const auto output = printedAtTerminal({"--replay", folder.write("file", oneKey)});
    if (!output) GTEST_SKIP() << "this system gives no pseudo-terminals";
    EXPECT_EQ(withoutTime(*output), withoutTime(oneKeySnapshot) + "\n");
}

TEST(KelvinbarSnapshot, ColoursATableAtATerminalUnlessTheUserRefuses) {
    const Words options{"--demo", "--format", "table", "--key", "TC0P"};
    const auto coloured = printedAtTerminal(options, {"TERM=xterm", "NO_COLOR="});
    if (!coloured) GTEST_SKIP() << "this system gives no pseudo-terminals";
    EXPECT_EQ(*coloured, "\x1b[1mCPU\x1b[0m\n  CPU Proximity  51.75°  \x1b[2mTC0P\x1b[0m\n");
    EXPECT_EQ(printedAtTerminal(options, {"TERM=xterm", "NO_COLOR=1"}),
              "CPU\n  CPU Proximity  51.75°  TC0P\n");
}

TEST(KelvinbarSnapshot, DrawsAPageInPlaceAtATerminal) {
    const auto output =
        printedAtTerminal({"--demo", "--watch", "3600", "--summary", "--key", "TC0P"}, {"TERM=xterm"});
    if (!output) GTEST_SKIP() << "this system gives no pseudo-terminals";
    EXPECT_EQ(*output, "\x1b[HHottest      51.75 °C  CPU Proximity\x1b[K\nFastest fan  none\x1b[K\n"
                       "Power        none\x1b[K\nBattery      none\x1b[K\n\x1b[J");
}

TEST(KelvinbarSnapshot, AppendsPagesOnATerminalThatOnlyPrints) {
    if (!hasPseudoTerminals()) GTEST_SKIP() << "this system gives no pseudo-terminals";
    for (const std::string terminal : {"TERM=dumb", "TERM="}) {
        TerminalRun run({"--demo", "--watch", "0.1", "--summary", "--key", "TC0P"}, {terminal});
        for (int tick = 0; tick < 2; ++tick) {
            EXPECT_EQ(run.textUntil("\n\n"), "Hottest      51.75 °C  CPU Proximity\nFastest fan  none\n"
                                             "Power        none\nBattery      none\n\n");
        }
        EXPECT_EQ(run.status(), 0);
    }
}

/// The lines of a page that is drawn in place, without colours.
std::vector<std::string> linesOfPage(const std::string& page) {
    static const std::regex sequence("\x1b\\[[0-9]*[HKJm]");
    std::istringstream stream(std::regex_replace(page, sequence, ""));
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

void expectToFit(const std::string& page, TerminalSize size) {
    EXPECT_TRUE(page.starts_with("\x1b[H")) << page;
    const auto lines = linesOfPage(page);
    EXPECT_EQ(lines.size(), size.rows - 1) << page;
    for (const std::string& line : lines) EXPECT_LE(characterCount(line), size.columns) << line;
    EXPECT_TRUE(lines.back().ends_with(" more lines") || lines.back().ends_with("…")) << lines.back();
}

TEST(KelvinbarSnapshot, DrawsNoMoreOfATableThanTheTerminalShows) {
    if (!hasPseudoTerminals()) GTEST_SKIP() << "this system gives no pseudo-terminals";
    constexpr TerminalSize usual{.columns = 80, .rows = 24};
    constexpr TerminalSize smaller{.columns = 20, .rows = 7};
    TerminalRun run({"--demo", "--watch", "0.1"}, {"TERM=xterm", "NO_COLOR="}, usual);
    expectToFit(run.page(), usual);
    run.resize(smaller);
    std::string page = run.page();
    while (linesOfPage(page).size() == usual.rows - 1) page = run.page(); // drawn before
    expectToFit(page, smaller);
    run.resize({.columns = 200, .rows = 200});
    while (linesOfPage(page).size() == smaller.rows - 1) page = run.page();
    EXPECT_GT(linesOfPage(page).size(), usual.rows);
    EXPECT_FALSE(contains(page, "…")) << page;
    EXPECT_EQ(run.status(), 0);
}

// The doctor

const Words personalVariables{"HOME=/home/some-person", "XDG_CONFIG_HOME=", "XDG_RUNTIME_DIR="};

TEST(KelvinbarSnapshotDoctor, ExaminesThisMachine) {
    const Outcome outcome = outcomeOf(program({"--doctor"}), {}, personalVariables);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_TRUE(
        std::regex_search(outcome.output, std::regex("^kelvinbar-snapshot \\d+\\.\\d+\\.\\d+ --doctor\n")))
        << outcome.output;
    for (const std::string_view title : {"\nReadings\n", "\nCost of reading\n", "\nSources\n", "\nTray\n"}) {
        EXPECT_TRUE(contains(outcome.output, title)) << title << outcome.output;
    }
    EXPECT_TRUE(contains(outcome.output, "Run \"kelvinbar --doctor\"")) << outcome.output;
}

TEST(KelvinbarSnapshotDoctor, PrintsADocument) {
    const Outcome outcome = run({"--doctor", "--format", "json"});
    EXPECT_EQ(outcome.status, 0);
    const auto document = nlohmann::json::parse(outcome.output);
    EXPECT_EQ(document["schema"], 1);
    EXPECT_EQ(document["sections"].back()["title"], "Tray");
    for (const auto& section : document["sections"]) EXPECT_TRUE(section["findings"].is_array());
}

TEST(KelvinbarSnapshotDoctor, TellsItsOwnCostIfItIsAsked) {
    const Words nowhere{"DBUS_SESSION_BUS_ADDRESS=", "XDG_RUNTIME_DIR=/nowhere"};
    const Outcome text = outcomeOf(program({"--doctor", "--self"}), {}, nowhere);
    EXPECT_EQ(text.status, 0);
    EXPECT_TRUE(std::regex_search(text.output, std::regex("\nKelvinbar\n  -   program: this one, .*\n"
                                                          "(.*\n)*  ok  Resident Memory: .* MB\n")))
        << text.output;
    const Outcome json = outcomeOf(program({"--doctor", "--self", "--format", "json"}), {}, nowhere);
    EXPECT_EQ(nlohmann::json::parse(json.output)["sections"].back()["title"], "Kelvinbar");
}

TEST(KelvinbarSnapshotDoctor, NamesNobody) {
    std::array<char, 256> host{};
    ASSERT_EQ(::gethostname(host.data(), host.size() - 1), 0);
    const Outcome outcome = outcomeOf(program({"--doctor"}), {}, personalVariables);
    EXPECT_FALSE(contains(outcome.output, "some-person")) << outcome.output;
    EXPECT_TRUE(contains(outcome.output, "~/.config/kelvinbar/kelvinbar.conf")) << outcome.output;
    EXPECT_FALSE(contains(outcome.output, host.data())) << outcome.output;
    EXPECT_FALSE(std::regex_search(outcome.output, std::regex("([0-9a-f]{2}:){5}[0-9a-f]{2}")))
        << outcome.output;
}

TEST(KelvinbarSnapshotDoctor, FailsWhenItCannotPrint) {
    const TemporaryFolder folder;
    for (const std::string output : {"/dev/full", ""}) {
        const std::string errors = folder.path("errors");
        EXPECT_EQ(ProgramRun(program({"--doctor"}), {"/dev/null", output, errors}).status(), 1);
        EXPECT_TRUE(contains(contentOf(errors), "cannot write what was found: ")) << contentOf(errors);
        std::filesystem::remove(errors);
    }
}

TEST(KelvinbarSnapshotDoctor, RefusesOptionsThatContradictIt) {
    for (const Words& options :
         {Words{"--demo"}, Words{"--replay", "-"}, Words{"--watch"}, Words{"--diff", "-"}, Words{"--title"},
          Words{"--summary"}, Words{"--pinned"}, Words{"--key", "TC0P"}, Words{"--match", "x"},
          Words{"--category", "cpu"}, Words{"--sort", "name"}, Words{"--format", "csv"}}) {
        Words words{"--doctor"};
        words.insert(words.end(), options.begin(), options.end());
        expectFailure(run(words), 2);
    }
}

} // namespace
} // namespace kelvinbar::kelvinbar_snapshot_test
