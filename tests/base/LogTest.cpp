#include "base/Log.h"

#include "tests/fakes/RecordingLog.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::log_test {
namespace {

using fakes::RecordingLog;
using fakes::RecordingLogSink;
using Lines = std::vector<std::string>;

constexpr std::array allCategories{LogCategory::sourceSMC,   LogCategory::sourceKernel, LogCategory::keys,
                                   LogCategory::preferences, LogCategory::tray,         LogCategory::panel,
                                   LogCategory::login};

static_assert(allCategories.size() == logCategoryCount);

/// The most detailed level that each category shows, in the order of the categories.
std::vector<LogLevel> levelsOf(const Log& log) {
    std::vector<LogLevel> levels;
    for (const LogCategory category : allCategories) {
        LogLevel shown = LogLevel::error;
        for (const LogLevel level : {LogLevel::warning, LogLevel::info, LogLevel::debug}) {
            if (log.isOn(category, level)) shown = level;
        }
        levels.push_back(shown);
    }
    return levels;
}

std::vector<LogLevel> all(LogLevel level) { return std::vector(logCategoryCount, level); }

std::vector<LogLevel> chosen(std::string_view choice, std::size_t verbosity = 0) {
    RecordingLogSink sink;
    const Log log(sink, choice, verbosity);
    EXPECT_EQ(sink.lines, Lines());
    return levelsOf(log);
}

// Levels

TEST(Log, ShowsWarningsAndErrorsUnlessMoreIsAskedFor) { EXPECT_EQ(chosen(""), all(LogLevel::warning)); }

TEST(Log, ShowsErrorsOfEveryCategoryWhateverIsChosen) {
    const RecordingLog quiet("error");
    for (const LogCategory category : allCategories) {
        EXPECT_TRUE(quiet.log.isOn(category, LogLevel::error));
        EXPECT_FALSE(quiet.log.isOn(category, LogLevel::warning));
    }
}

TEST(Log, TakesABareLevelForAllCategories) {
    EXPECT_EQ(chosen("error"), all(LogLevel::error));
    EXPECT_EQ(chosen("warning"), all(LogLevel::warning));
    EXPECT_EQ(chosen("info"), all(LogLevel::info));
    EXPECT_EQ(chosen("debug"), all(LogLevel::debug));
}

TEST(Log, TakesALevelForEachCategory) {
    const std::array<std::string_view, logCategoryCount> names{
        "source.smc", "source.kernel", "keys", "preferences", "tray", "panel", "login"};
    for (std::size_t index = 0; index < names.size(); ++index) {
        auto expected = all(LogLevel::warning);
        expected[index] = LogLevel::debug;
        EXPECT_EQ(chosen(std::string(names[index]) + "=debug"), expected) << names[index];
    }
}

TEST(Log, TakesSeveralWordsOfWhichLaterOnesWin) {
    auto expected = all(LogLevel::info);
    expected[static_cast<std::size_t>(LogCategory::tray)] = LogLevel::debug;
    EXPECT_EQ(chosen("keys=debug,info,tray=error,tray=debug"), expected);
}

TEST(Log, IgnoresSpacesEmptyWordsAndCase) {
    auto expected = all(LogLevel::info);
    expected[static_cast<std::size_t>(LogCategory::tray)] = LogLevel::debug;
    EXPECT_EQ(chosen(", Info ,, TRAY = Debug ,"), expected);
}

TEST(Log, ShowsAtLeastInfoWithVerboseAndDebugWhenItIsGivenTwice) {
    EXPECT_EQ(chosen("", 1), all(LogLevel::info));
    EXPECT_EQ(chosen("", 2), all(LogLevel::debug));
    EXPECT_EQ(chosen("", 3), all(LogLevel::debug));
    EXPECT_EQ(chosen("error", 1), all(LogLevel::info));
}

TEST(Log, KeepsWhatIsChosenInMoreDetailThanVerboseShows) {
    auto expected = all(LogLevel::info);
    expected[static_cast<std::size_t>(LogCategory::login)] = LogLevel::debug;
    EXPECT_EQ(chosen("login=debug,keys=error", 1), expected);
}

TEST(Log, ReportsEachUnknownWordOnceAndUsesTheOthers) {
    const RecordingLog recording("loud,trya=debug,tray=loud,loud,keys=info,=debug,tray=");
    EXPECT_EQ(recording.lines(),
              Lines({R"(kelvinbar: KELVINBAR_LOG: "loud" is not known and is ignored)",
                     R"(kelvinbar: KELVINBAR_LOG: "trya=debug" is not known and is ignored)",
                     R"(kelvinbar: KELVINBAR_LOG: "tray=loud" is not known and is ignored)",
                     R"(kelvinbar: KELVINBAR_LOG: "=debug" is not known and is ignored)",
                     R"(kelvinbar: KELVINBAR_LOG: "tray=" is not known and is ignored)"}));
    auto expected = all(LogLevel::warning);
    expected[static_cast<std::size_t>(LogCategory::keys)] = LogLevel::info;
    EXPECT_EQ(levelsOf(recording.log), expected);
}

TEST(Log, ReadsItsChoiceFromTheEnvironment) {
    setenv("KELVINBAR_LOG", "tray=debug", 1); // NOLINT(concurrency-mt-unsafe): no other thread runs
    EXPECT_EQ(logChoiceOfEnvironment(), "tray=debug");
    unsetenv("KELVINBAR_LOG"); // NOLINT(concurrency-mt-unsafe)
    EXPECT_EQ(logChoiceOfEnvironment(), "");
}

// Lines

TEST(Log, WritesWarningsAndErrorsAsMessagesToTheUser) {
    RecordingLog recording;
    recording.log.write(LogCategory::preferences, LogLevel::warning, "the file is damaged");
    recording.log.write(LogCategory::login, LogLevel::error, "the entry cannot be written");
    EXPECT_EQ(recording.lines(),
              Lines({"kelvinbar: the file is damaged", "kelvinbar: the entry cannot be written"}));
}

TEST(Log, WritesInfoAndDebugWithCategoryAndLevel) {
    RecordingLog recording("debug");
    recording.log.write(LogCategory::sourceSMC, LogLevel::info, "opened");
    recording.log.write(LogCategory::tray, LogLevel::debug, [] { return std::string("a host appeared"); });
    EXPECT_EQ(recording.lines(),
              Lines({"kelvinbar: source.smc info: opened", "kelvinbar: tray debug: a host appeared"}));
}

TEST(Log, WritesNothingThatIsOff) {
    RecordingLog recording("tray=debug");
    recording.log.write(LogCategory::panel, LogLevel::info, "opened");
    recording.log.once(LogCategory::panel, LogLevel::debug, [] { return "opened"; });
    EXPECT_EQ(recording.lines(), Lines());
}

TEST(Log, FormatsNothingThatIsOff) {
    RecordingLog recording("keys=info");
    int formatted = 0;
    const auto text = [&formatted] { return "text " + std::to_string(++formatted); };
    recording.log.write(LogCategory::keys, LogLevel::debug, text);
    recording.log.write(LogCategory::tray, LogLevel::info, text);
    recording.log.once(LogCategory::tray, LogLevel::info, text);
    EXPECT_EQ(formatted, 0);
    recording.log.write(LogCategory::keys, LogLevel::info, text);
    EXPECT_EQ(formatted, 1);
}

TEST(Log, WritesOneLineForATextWithLineEnds) {
    RecordingLog recording;
    recording.log.write(LogCategory::keys, LogLevel::warning, "a\r\nkelvinbar: b\n");
    EXPECT_EQ(recording.lines(), Lines({"kelvinbar: a  kelvinbar: b "}));
}

TEST(Log, WritesATextOnceHoweverOftenItIsFound) {
    RecordingLog recording;
    for (const char* const chip : {"nct6775", "it87", "nct6775"}) {
        recording.log.once(LogCategory::keys, LogLevel::warning,
                           [chip] { return std::string(chip) + " is left out"; });
    }
    EXPECT_EQ(recording.lines(), Lines({"kelvinbar: nct6775 is left out", "kelvinbar: it87 is left out"}));
}

TEST(Log, RepeatsWhatIsNotWrittenOnce) {
    RecordingLog recording;
    for (int time = 0; time < 2; ++time) recording.log.write(LogCategory::keys, LogLevel::warning, "again");
    EXPECT_EQ(recording.lines(), Lines({"kelvinbar: again", "kelvinbar: again"}));
}

TEST(Log, LetsATextLogWhileItIsBuilt) {
    RecordingLog recording;
    recording.log.once(LogCategory::keys, LogLevel::warning, [&recording] {
        recording.log.write(LogCategory::keys, LogLevel::warning, "inner");
        return "outer";
    });
    EXPECT_EQ(recording.lines(), Lines({"kelvinbar: inner", "kelvinbar: outer"}));
}

// Threads

/// Notes whether two threads ever are in it at once.
class ExclusiveSink final : public LogSink {
  public:
    void write(std::string_view line) override {
        if (inside_.exchange(true)) wasShared = true;
        std::this_thread::yield(); // lets another thread in if nothing keeps it out
        lines.emplace_back(line);
        inside_ = false;
    }

    std::atomic<bool> wasShared = false;
    std::vector<std::string> lines;

  private:
    std::atomic<bool> inside_ = false;
};

TEST(Log, WritesEveryLineOfEveryThreadWholeAndOneAtATime) {
    constexpr int threadCount = 4;
    constexpr int lineCount = 500;
    ExclusiveSink sink;
    Log log(sink);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([&log, thread] {
            for (int line = 0; line < lineCount; ++line) {
                log.write(LogCategory::sourceKernel, LogLevel::warning,
                          [&] { return std::to_string(thread) + " " + std::to_string(line); });
                log.once(LogCategory::sourceKernel, LogLevel::warning,
                         [&] { return "all " + std::to_string(line); });
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_FALSE(sink.wasShared);
    EXPECT_EQ(sink.lines.size(), (threadCount + 1) * lineCount);
    EXPECT_EQ(std::set(sink.lines.begin(), sink.lines.end()).size(), sink.lines.size());
}

} // namespace
} // namespace kelvinbar::log_test
