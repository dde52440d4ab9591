#include "tools/SnapshotCommandLine.h"

#include "base/NumberText.h"
#include "base/Text.h"
#include "process/StandardStreams.h"
#include "resources/SampleMachines.h"
#include "tools/PrintedText.h"
#include "tools/ProgramErrors.h"
#include "tools/cost/OwnReadings.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <iostream>
#include <memory>
#include <sstream>
#include <utility>
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

std::string listed(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) text.append(text.empty() ? "" : ", ").append(word);
    return text;
}

/// Refuses other words. Help names them at its end, not in the line of the option.
CLI::Validator oneOf(const std::vector<std::string>& words) { return CLI::IsMember(words).description(""); }

/// Refuses other numbers and other texts, "nan" among them.
CLI::Validator numberFrom(double least, double most) {
    const std::string complaint =
        "a number from " + shortestText(least) + " to " + shortestText(most) + " is wanted";
    const auto check = [=](const std::string& text) {
        const bool isWithin = isNumber(text) && leadingNumber(text) >= least && leadingNumber(text) <= most;
        return isWithin ? std::string() : complaint;
    };
    return {check, ""};
}

std::vector<std::string> orderNames() {
    std::vector<std::string> names;
    names.reserve(namedOrders.size());
    for (const auto& [name, order] : namedOrders) names.emplace_back(name);
    return names;
}

std::vector<std::string> allCategoryWords() {
    std::vector<std::string> words = categoryWords();
    words.emplace_back(ownCategoryWord);
    return words;
}

bool isOwnCategory(std::string_view name) { return asciiLowercased(name) == ownCategoryWord; }

/// Empty for a category, as CLI11 wants it.
std::string complaintAboutCategory(const std::string& name) {
    return categoryNamed(name) || isOwnCategory(name)
               ? std::string()
               : name + " is not a category (" + listed(categoryWords()) + ")";
}

/// One line a format, for the end of the help.
std::string formatHelp() {
    std::string text = "Formats:\n";
    for (const OutputFormat& format : outputFormats()) {
        text.append("  ").append(padded(format.name, helpColumn - 2)).append(format.summary).append("\n");
    }
    return text;
}

/// A heading with a line of words, for the end of the help.
std::string wordsHelp(const std::string& heading, const std::vector<std::string>& words) {
    return heading + ":\n  " + listed(words) + "\n";
}

/// Shows what value an option takes, and nothing else: which options exclude each other is said when it
/// matters.
class HelpFormatter final : public CLI::Formatter {
  public:
    HelpFormatter() { column_width(helpColumn); }

    std::string make_option_opts(const CLI::Option* option) const override {
        if (option->get_expected_max() == 0) return {};
        const std::string value = option->get_type_name() + (option->get_expected_max() > 1 ? "..." : "");
        return option->get_expected_min() == 0 ? " [" + value + "]" : " " + value;
    }
};

constexpr const char* closingWords =
    "Without an option, this machine is read and printed as text; with --watch, as a table.\n"
    "A sensor that does not answer in two seconds is left out and named on standard error.\n\n"
    "Exit status: 0, 1 when the input cannot be used, nothing is selected, no sensor answers,\n"
    "nothing can be written or memory runs out, 2 for a wrong option.\n"
    "With --diff: 0 for no difference, 1 for differences, 2 for a wrong option, 3 for other failures.";

/// Prints `text`; returns the exit status.
int printed(const std::string& text) {
    const auto error = writeToStandardOutput(text);
    if (!error) return 0;
    reportError(writeFailure("to standard output", error));
    return inputErrorExit;
}

/// Complains as the other messages do.
std::string failureMessage(const CLI::App* app, const CLI::Error& error) {
    return app->get_name() + ": " + error.what() + "\nRun with --help for more information.\n";
}

} // namespace

SnapshotCommandLine::SnapshotCommandLine()
    : app_("Prints the sensor readings of a machine as a snapshot text.", "kelvinbar-snapshot") {
    version_ = app_.add_flag("--version", isVersion_, "Display program version information and exit");
    listedValues_ = {{"--demo", sampleNames()},
                     {"--format", formatNames()},
                     {"--sort", orderNames()},
                     {"--category", allCategoryWords()},
                     {"--completion", {completedShells.begin(), completedShells.end()}}};
    addMachineOptions();
    addSelectionOptions();
    addOutputOptions();
    addDiffOptions();
    addIdentificationOptions();
    addDoctorOption();
    addRemainingOptions();
    app_.formatter(std::make_shared<HelpFormatter>());
    app_.failure_message(failureMessage);
    app_.footer(formatHelp() + "\n" +
                wordsHelp("Categories (kelvinbar with --self only)", allCategoryWords()) + "\n" +
                wordsHelp("Made-up machines", sampleNames()) + "\n" + closingWords);
}

void SnapshotCommandLine::addMachineOptions() {
    replay_ = app_.add_option("--replay", options_.machine.replayFile,
                              "Read the machine that the snapshot text in FILE was taken on (- for standard "
                              "input)");
    replay_->type_name("FILE");
    demo_ = app_.add_option("--demo", options_.machine.sampleName,
                            "Read a made-up machine (see below), without a NAME the first");
    demo_->type_name("NAME")->expected(0, 1)->default_str(std::string(sampleMachines().front().name));
    demo_->check(oneOf(listedValues_.at("--demo")))->excludes(replay_);
}

void SnapshotCommandLine::addSelectionOptions() {
    auto* const keys = app_.add_option("--key", options_.selection.keys, "Only readings with these keys");
    keys->type_name("KEY")->group("Selection");
    app_.add_option("--category", categoryNames_, "Only readings of these categories (see below)")
        ->type_name("NAME")
        ->check(CLI::Validator(complaintAboutCategory, ""))
        ->group("Selection");
    match_ = app_.add_option("--match", options_.selection.match,
                             "Only readings with TEXT in their name or key, in any case");
    match_->type_name("TEXT")->group("Selection");
    pinned_ = app_.add_flag("--pinned", options_.isPinned, "Only the readings that are pinned to the tray")
                  ->excludes(keys)
                  ->group("Selection");
    sort_ = app_.add_option("--sort", orderName_, "Order of the readings: key, name, value or category")
                ->type_name("ORDER")
                ->check(oneOf(listedValues_.at("--sort")))
                ->group("Selection");
}

void SnapshotCommandLine::addOutputOptions() {
    app_.add_option("--format", formatName_, "How to print the readings (see below)")
        ->type_name("NAME")
        ->check(oneOf(listedValues_.at("--format")))
        ->group("Output");
    title_ = app_.add_flag("--title", isTitle_,
                           "Print one line as the tray shows it: the pinned readings, unless "
                           "others are selected");
    title_->group("Output");
    summary_ = app_.add_flag("--summary", isSummary_,
                             "Print four lines: the hottest sensor, the fastest fan, the total "
                             "power and the battery")
                   ->excludes(title_)
                   ->group("Output");
    self_ = app_.add_flag(
                    "--self", options_.hasOwnCost,
                    "Print, as the category kelvinbar, what the tray program costs, or this program if that "
                    "does not run; not with the format text, except that of the doctor")
                ->excludes(title_)
                ->group("Output");
    watch_ = app_.add_option("--watch", seconds_,
                             "Print again every SECONDS (2 unless given) until a signal or a closed pipe");
    watch_->type_name("SECONDS")->expected(0, 1)->default_str("2")->group("Output");
    watch_->check(numberFrom(fewestSeconds, mostSeconds));
}

void SnapshotCommandLine::addDiffOptions() {
    diff_ = app_.add_option("--diff", options_.compared,
                            "Print what differs between the snapshots in two FILEs, or between one and "
                            "this machine (- for standard input)");
    diff_->type_name("FILE")->expected(1, 2)->group("Comparison");
    diff_->excludes(replay_, demo_, watch_, self_, pinned_, sort_);
    app_.add_option("--tolerance", options_.tolerance, "Numbers that are no more than X apart are the same")
        ->type_name("X")
        ->check(numberFrom(0, mostTolerance))
        ->needs(diff_)
        ->group("Comparison");
}

void SnapshotCommandLine::addIdentificationOptions() {
    identify_ = app_.add_option("--identify", identifySeconds_,
                                "Load all processors for SECONDS (20 unless given) and print which readings "
                                "followed");
    identify_->type_name("SECONDS")->expected(0, 1)->group("Identification");
    identify_->check(numberFrom(fewestIdentifySeconds, mostIdentifySeconds));
    // Not by their names: CLI11 compares names in a way that ends the program where memory runs out.
    identify_->excludes(replay_, demo_, diff_, watch_, title_, summary_, pinned_, sort_, self_);
    app_.add_flag(
            "--by-hand", isByHand_,
            "Without a load: watch for SECONDS (60 unless given) while you blow at a fan or copy a file")
        ->needs(identify_)
        ->group("Identification");
}

void SnapshotCommandLine::addDoctorOption() {
    app_.add_flag("--doctor", options_.isDoctor,
                  "Print what is found of sensors and drivers, and what to do about what is not; as text or "
                  "json")
        ->excludes(replay_, demo_, watch_, identify_);
}

void SnapshotCommandLine::addRemainingOptions() {
    completion_ = app_.add_option("--completion", completedShell_,
                                  "Print a script that completes the options in bash, zsh or fish");
    completion_->type_name("SHELL")->check(oneOf(listedValues_.at("--completion")));
    app_.add_flag("-v,--verbose", options_.verbosity, "Log what is found and done; twice, every step");
}

std::optional<int> SnapshotCommandLine::parse(int argc, char** argv) {
    try {
        app_.parse(argc, argv);
        requireAlone(*version_);
        requireAlone(*completion_);
        finishParsing();
        if (isVersion_) return printed("kelvinbar-snapshot " KELVINBAR_VERSION "\n");
        if (completion_->count() == 0) return std::nullopt;
        return printed(completionScript(completedShell_, app_.get_name(), completedOptions()));
    } catch (const CLI::ArgumentMismatch& error) {
        std::cerr << failureMessage(&app_, CLI::ArgumentMismatch(plainComplaint(error)));
        return usageErrorExit;
    } catch (const CLI::ParseError& error) {
        std::ostringstream answer; // to --help
        return app_.exit(error, answer, std::cerr) == 0 ? printed(answer.str()) : usageErrorExit;
    }
}

/// What the parser says in numbers, in words.
std::string SnapshotCommandLine::plainComplaint(const CLI::ArgumentMismatch& error) const {
    std::string complaint = error.what();
    const std::string name = complaint.substr(0, complaint.find(':'));
    const CLI::Option* const option = app_.get_option_no_throw(name);
    if (option == nullptr) return complaint;
    const auto most = static_cast<std::size_t>(option->get_items_expected_max());
    if (option->count() <= most) return name + ": " + option->get_type_name() + " is missing";
    return name + (option == diff_ ? " takes one or two files" : " is given more than once");
}

/// An option that prints something else than readings. Throws CLI::ParseError if another one is given, too.
void SnapshotCommandLine::requireAlone(const CLI::Option& option) const {
    if (option.count() == 0) return;
    for (const CLI::Option* const other : app_.parse_order()) {
        if (other != &option) throw CLI::ExcludesError(option.get_name(), other->get_name());
    }
}

/// Throws CLI::ParseError for what the parser does not check by itself.
void SnapshotCommandLine::finishParsing() {
    // CLI11 does not validate an empty value, and takes that of a number for 0.
    if (demo_->count() > 0 && options_.machine.sampleName.empty()) {
        throw CLI::ValidationError("--demo", "NAME is empty");
    }
    if (seconds_ == 0) throw CLI::ValidationError("--watch", "SECONDS is empty");
    finishSelection();
    finishFormat();
    finishDiff();
    finishIdentification();
    finishOwnCost();
    finishDoctor();
}

void SnapshotCommandLine::finishSelection() {
    if (std::ranges::count(options_.selection.keys, "") > 0)
        throw CLI::ValidationError("--key", "KEY is empty");
    if (match_->count() > 0 && options_.selection.match.empty()) {
        throw CLI::ValidationError("--match", "TEXT is empty");
    }
    for (const std::string& name : categoryNames_) {
        if (isOwnCategory(name)) {
            options_.selection.hasOwnCategory = true;
        } else {
            options_.selection.categories.push_back(categoryNamed(name).value());
        }
    }
    for (const auto& [name, order] : namedOrders) {
        if (name == orderName_) options_.selection.order = order;
    }
}

void SnapshotCommandLine::finishFormat() {
    const bool isWaybar = formatName_ == "waybar";
    if (isSummary_ && !formatName_.empty()) throw CLI::ExcludesError("--summary", "--format");
    if (isTitle_ && !formatName_.empty() && !isWaybar) {
        throw CLI::ValidationError("--title", "the only --format of a title is waybar");
    }
    const bool isWatched = watch_->count() > 0;
    options_.format = findOutputFormat(formatName_.empty() ? (isWatched ? "table" : "text") : formatName_);
    if (isSummary_) options_.format = &summaryFormat();
    if (isTitle_ && !isWaybar) options_.format = &titleFormat();
    if ((isTitle_ || isWaybar) && options_.selection.isEverything()) options_.isPinned = true;
    if (!isWatched) return;
    if (options_.format->repetition == Repetition::never) {
        throw CLI::ValidationError("--watch", formatName_ + " is one document; use jsonl or csv instead");
    }
    options_.interval =
        std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::duration<double>(seconds_));
}

void SnapshotCommandLine::finishDiff() const {
    if (options_.compared.empty()) return;
    const bool isDiffFormat = formatName_.empty() || formatName_ == "text" || formatName_ == "json";
    if (!isDiffFormat || isTitle_ || isSummary_) {
        throw CLI::ValidationError("--diff", "differences are printed as text or json");
    }
    if (std::ranges::count(options_.compared, "-") > 1) {
        throw CLI::ValidationError("--diff", "standard input is one snapshot, not two");
    }
}

void SnapshotCommandLine::finishIdentification() {
    if (identify_->count() == 0) return;
    if (!formatName_.empty() && formatName_ != "text" && formatName_ != "json") {
        throw CLI::ValidationError("--identify", "what responded is printed as text or json");
    }
    const double usual = isByHand_ ? usualWatchSeconds : usualLoadSeconds;
    const double seconds = identifySeconds_ > 0 ? identifySeconds_ : usual;
    options_.identification = IdentificationPlan{
        .isByHand = isByHand_,
        .time = std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::duration<double>(seconds))};
}

/// The text stays what --replay and the panel know; a title and a summary are about sensors. The doctor has
/// formats of its own.
void SnapshotCommandLine::finishOwnCost() const {
    if (!options_.hasOwnCost) {
        if (!options_.selection.hasOwnCategory) return;
        throw CLI::ValidationError("--category", "kelvinbar is a category with --self only");
    }
    if (options_.isDoctor) return;
    const std::string_view format = options_.format->name;
    if (format == "text" || format == "summary" || format == "waybar") {
        throw CLI::ValidationError("--self", "does not go with the format " + std::string(format));
    }
}

void SnapshotCommandLine::finishDoctor() const {
    if (!options_.isDoctor) return;
    const bool isItsFormat = formatName_.empty() || formatName_ == "text" || formatName_ == "json";
    if (!isItsFormat) throw CLI::ValidationError("--doctor", "it prints text or json");
    const bool isSelected = !options_.selection.isEverything() || options_.isPinned || !orderName_.empty();
    if (isSelected || isTitle_ || isSummary_ || !options_.compared.empty()) {
        throw CLI::ValidationError("--doctor", "it examines the whole machine and prints no readings");
    }
}

// Completion

std::vector<CompletedOption> SnapshotCommandLine::completedOptions() const {
    std::vector<CompletedOption> completed;
    for (const CLI::Option* const option : app_.get_options()) {
        CompletedOption entry{.names = {}, .help = option->get_description(), .valueName = {}, .values = {}};
        for (const std::string& name : option->get_snames()) entry.names.push_back("-" + name);
        for (const std::string& name : option->get_lnames()) entry.names.push_back("--" + name);
        if (option->get_expected_max() > 0) entry.valueName = option->get_type_name();
        entry.isFile = entry.valueName == "FILE";
        entry.isOptional = option->get_expected_min() == 0;
        entry.isRepeated = option->get_expected_max() > 1;
        const auto values = listedValues_.find(entry.names.back());
        if (values != listedValues_.end()) entry.values = values->second;
        completed.push_back(std::move(entry));
    }
    return completed;
}

} // namespace kelvinbar
