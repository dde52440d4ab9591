// The programs with a panel as a user starts them: processes with options, exit status and messages.

#include "base/Text.h"
#include "tests/ProgramRun.h"

#include <array>
#include <cstddef>
#include <regex>
#include <string>
#include <sys/types.h>

#include <gtest/gtest.h>
#include <unistd.h>

namespace kelvinbar {

namespace {

const Words noDisplay{"DISPLAY=", "WAYLAND_DISPLAY=", "QT_QPA_PLATFORM=xcb"};
const Words hiddenScreen{"QT_QPA_PLATFORM=offscreen", "DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent"};

TEST(KelvinbarApp, ExplainsItsOptionsWithoutADisplay) {
    for (const char* const option : {"--help", "-h"}) {
        const Outcome outcome = outcomeOf({KELVINBAR, option}, {}, noDisplay);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.errors, "");
        EXPECT_TRUE(outcome.output.starts_with("Usage: kelvinbar [")) << outcome.output;
        for (const char* const word : {"--verbose", "--help", "--version", "KELVINBAR_LOG"}) {
            EXPECT_TRUE(contains(outcome.output, word)) << word;
        }
    }
}

TEST(KelvinbarApp, TellsItsNameAndVersion) {
    const std::regex version(" \\d+\\.\\d+\\.\\d+\n");
    const Outcome outcome = outcomeOf({KELVINBAR, "--version"}, {}, noDisplay);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(std::regex_replace(outcome.output, version, ""), "kelvinbar");
    EXPECT_EQ(std::regex_replace(outcomeOf({KELVINBAR_DEMO, "--version"}, {}, noDisplay).output, version, ""),
              "kelvinbar-demo");
}

TEST(KelvinbarApp, RefusesUnknownOptionsWithoutADisplay) {
    for (const char* const option : {"--unknown", "--verbose=2", "--"}) {
        const Outcome outcome = outcomeOf({KELVINBAR, "--verbose", option, "--help"}, {}, noDisplay);
        EXPECT_EQ(outcome.status, 2) << option;
        EXPECT_EQ(outcome.output, "");
        EXPECT_EQ(outcome.errors, std::string("kelvinbar: unknown argument \"") + option +
                                      "\"\nUsage: kelvinbar [--verbose] [--help] [--version]\n");
    }
}

TEST(KelvinbarApp, RefusesWhatTheToolkitDoesNotKnowEither) {
    for (const char* const argument : {"-verbose", "-x", "file", "linux-pc", "-"}) {
        const Outcome outcome = outcomeOf({KELVINBAR, "-platform", "offscreen", argument}, {}, hiddenScreen);
        EXPECT_EQ(outcome.status, 2) << argument;
        EXPECT_TRUE(
            contains(outcome.errors, std::string("kelvinbar: unknown argument \"") + argument + "\"\n"))
            << outcome.errors;
    }
}

TEST(KelvinbarDemo, ListsItsMachinesInItsHelp) {
    const Outcome outcome = outcomeOf({KELVINBAR_DEMO, "--help"}, {}, noDisplay);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(outcome.output.starts_with("Usage: kelvinbar-demo [--verbose] [--help] [--version] [NAME]\n"))
        << outcome.output;
    EXPECT_TRUE(contains(outcome.output, "intel-notebook, apple-silicon-desktop, amd-pc, linux-pc"))
        << outcome.output;
    EXPECT_FALSE(contains(outcomeOf({KELVINBAR, "--help"}, {}, noDisplay).output, "NAME"));
}

TEST(KelvinbarDemo, RefusesAnUnknownMachineAndListsThoseThereAre) {
    for (const char* const name : {"toaster", "LINUX-PC", ""}) {
        const Outcome outcome = outcomeOf({KELVINBAR_DEMO, name}, {}, hiddenScreen);
        EXPECT_EQ(outcome.status, 2) << name;
        const std::string message = std::string("kelvinbar-demo: unknown machine \"") + name +
                                    "\"; there are intel-notebook, apple-silicon-desktop, amd-pc, linux-pc\n";
        EXPECT_TRUE(outcome.errors.ends_with(message)) << outcome.errors;
    }
}

TEST(KelvinbarDemo, RefusesASecondMachineAndUnknownOptions) {
    for (const Words& arguments :
         {Words{"linux-pc", "amd-pc"}, Words{"linux-pc", "-x"}, Words{"-x", "toaster"}}) {
        Words words{KELVINBAR_DEMO};
        words.insert(words.end(), arguments.begin(), arguments.end());
        const Outcome outcome = outcomeOf(words, {}, hiddenScreen);
        EXPECT_EQ(outcome.status, 2);
        EXPECT_TRUE(contains(outcome.errors, "kelvinbar-demo: unknown argument \"")) << outcome.errors;
    }
}

/// Starts the program, terminates it once its log holds `text`, and returns the log.
std::string logUntil(const std::string& text, const Words& options, const Words& variables) {
    std::array<int, 2> pipe{};
    EXPECT_EQ(::pipe(pipe.data()), 0);
    const TemporaryFolder folder;
    Words words{KELVINBAR_DEMO};
    words.insert(words.end(), options.begin(), options.end());
    Words environment = hiddenScreen;
    environment.insert(environment.end(), variables.begin(), variables.end());
    environment.push_back("XDG_CONFIG_HOME=" + folder.path(""));
    const ProgramRun program(words, {"/dev/null", "/dev/null", "/dev/fd/" + std::to_string(pipe[1])},
                             environment);
    ::close(pipe[1]); // so that a program which ends early ends the log
    std::string log;
    std::array<char, 4096> chunk{};
    while (!contains(log, text)) {
        const ssize_t size = ::read(pipe[0], chunk.data(), chunk.size());
        if (size <= 0) break;
        log.append(chunk.data(), static_cast<std::size_t>(size));
    }
    program.terminate();
    EXPECT_EQ(program.status(), 0);
    ::close(pipe[0]);
    return log;
}

TEST(KelvinbarDemo, ShowsTheMachineThatTheUserNames) {
    for (const std::string name : {"intel-notebook", "apple-silicon-desktop", "amd-pc", "linux-pc"}) {
        const std::string line = "kelvinbar: keys info: reading the sample " + name + "\n";
        EXPECT_TRUE(contains(logUntil(line, {name}, {"KELVINBAR_LOG=keys=info"}), line)) << name;
    }
}

TEST(KelvinbarDemo, ShowsAMachineOfThePlatformWithoutAName) {
    const std::string line = "kelvinbar: keys info: reading the sample " KELVINBAR_USUAL_DEMO "\n";
    EXPECT_TRUE(contains(logUntil(line, {}, {"KELVINBAR_LOG=keys=info"}), line));
}

TEST(KelvinbarApp, LogsItsStartWithVerbose) {
    const std::string log = logUntil("kelvinbar: tray info: no watcher runs\n", {"--verbose"}, {});
    EXPECT_TRUE(contains(log, "/kelvinbar/kelvinbar-demo.conf holds 0 values\n")) << log;
    EXPECT_TRUE(contains(log, "kelvinbar: tray info: no watcher runs\n")) << log;
    EXPECT_FALSE(contains(log, " debug: ")) << log;
}

TEST(KelvinbarApp, LogsEveryStepWithVerboseGivenTwice) {
    const std::string log = logUntil("kelvinbar: tray debug: readings are ", {"-vv"}, {});
    EXPECT_TRUE(contains(log, "kelvinbar: tray debug: readings are ")) << log;
}

TEST(KelvinbarApp, LogsTheCategoriesThatTheEnvironmentChooses) {
    const std::string log =
        logUntil("kelvinbar: tray info: no watcher runs\n", {}, {"KELVINBAR_LOG=tray=info"});
    EXPECT_TRUE(contains(log, "kelvinbar: tray info: no watcher runs\n")) << log;
    EXPECT_FALSE(contains(log, "kelvinbar: preferences ")) << log;
}

} // namespace

} // namespace kelvinbar
