// The programs with a panel as a user starts them: processes with options, exit status and messages.

#include "base/Text.h"
#include "tests/ProgramRun.h"

#include <array>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <optional>
#include <regex>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/types.h>
#include <system_error>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <unistd.h>

namespace kelvinbar::kelvinbar_app_test {

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

TEST(KelvinbarApp, FailsWhenItCannotWriteAnAnswer) {
    const TemporaryFolder folder;
    for (const char* const option : {"--help", "--version"}) {
        for (const std::string output : {"/dev/full", ""}) {
            const std::string errors = folder.path(option);
            EXPECT_EQ(ProgramRun({KELVINBAR, option}, {"/dev/null", output, errors}, noDisplay).status(), 1);
            const std::string reason = output.empty() ? "Bad file descriptor" : "No space left on device";
            EXPECT_EQ(contentOf(errors), "kelvinbar: cannot write to standard output: " + reason + "\n");
            std::filesystem::remove(errors);
        }
    }
}

TEST(KelvinbarApp, FailsWhenNobodyReadsAnAnswer) {
    for (const char* const option : {"--help", "--version"}) {
        const Outcome outcome = outcomeIntoClosedPipe({KELVINBAR, option}, noDisplay);
        EXPECT_EQ(outcome.status, 1) << option;
        EXPECT_EQ(outcome.errors, "kelvinbar: cannot write to standard output: Broken pipe\n");
    }
}

TEST(KelvinbarApp, FailsWhereFilesMayNotBeThatLarge) {
    const Outcome outcome = outcomeWithSmallFiles({KELVINBAR, "--help"}, noDisplay);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "kelvinbar: cannot write to standard output: File too large\n");
}

TEST(KelvinbarApp, RefusesUnknownOptionsWithoutADisplay) {
    for (const char* const option : {"--unknown", "--verbose=2", "--"}) {
        const Outcome outcome = outcomeOf({KELVINBAR, "--verbose", option, "--help"}, {}, noDisplay);
        EXPECT_EQ(outcome.status, 2) << option;
        EXPECT_EQ(outcome.output, "");
        EXPECT_EQ(outcome.errors, std::string("kelvinbar: unknown argument \"") + option +
                                      "\"\nUsage: kelvinbar [--verbose] [--help] [--version] [--autostart] "
                                      "[--doctor [--format FORMAT] [--self]]\n");
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
    EXPECT_TRUE(outcome.output.starts_with(
        "Usage: kelvinbar-demo [--verbose] [--help] [--version] [--autostart] [NAME]\n"))
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

/// A program whose standard error is read while it runs. Its other streams are closed.
class LoggingProgram {
  public:
    LoggingProgram(const Words& words, const Words& variables) {
        EXPECT_EQ(::pipe2(pipe_.data(), O_CLOEXEC), 0); // the program must not be its own reader
        run_.emplace(words, ProgramRun::Streams{"", "", "/dev/fd/" + std::to_string(pipe_[1])}, variables);
        ::close(pipe_[1]); // so that a program which ends early ends the log
    }

    LoggingProgram(const LoggingProgram&) = delete;
    LoggingProgram& operator=(const LoggingProgram&) = delete;

    ~LoggingProgram() { closeLog(); }

    /// The log, read until it holds `text` or the program ends.
    [[nodiscard]] const std::string& logUntil(const std::string& text) {
        std::array<char, 4096> chunk{};
        while (!contains(log_, text)) {
            const ssize_t size = ::read(pipe_[0], chunk.data(), chunk.size());
            if (size <= 0) break;
            log_.append(chunk.data(), static_cast<std::size_t>(size));
        }
        return log_;
    }

    /// Leaves the program without anybody who reads what it writes.
    void closeLog() {
        if (pipe_[0] >= 0) ::close(std::exchange(pipe_[0], -1));
    }

    void send(int signal) const { run_->send(signal); }

    /// Where one of its descriptors leads.
    [[nodiscard]] std::string target(int descriptor) const {
        const std::filesystem::path files = "/proc/" + std::to_string(run_->process()) + "/fd";
        std::error_code error;
        return std::filesystem::read_symlink(files / std::to_string(descriptor), error);
    }

    [[nodiscard]] int status() const { return run_->status(); }

  private:
    std::array<int, 2> pipe_{};
    std::optional<ProgramRun> run_;
    std::string log_;
};

/// Starts the program, terminates it once its log holds `text`, and returns the log.
std::string logUntil(const std::string& text, const Words& options, const Words& variables) {
    const TemporaryFolder folder;
    Words words{KELVINBAR_DEMO};
    words.insert(words.end(), options.begin(), options.end());
    Words environment = hiddenScreen;
    environment.insert(environment.end(), variables.begin(), variables.end());
    environment.push_back("XDG_CONFIG_HOME=" + folder.path(""));
    environment.push_back("XDG_RUNTIME_DIR=" + folder.path(""));
    LoggingProgram program(words, environment);
    const std::string log = program.logUntil(text);
    program.send(SIGTERM);
    EXPECT_EQ(program.status(), 0);
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

TEST(KelvinbarApp, HasTheNullDeviceInPlaceOfStreamsThatItIsStartedWithout) {
    const TemporaryFolder folder;
    Words environment = hiddenScreen;
    environment.push_back("XDG_CONFIG_HOME=" + folder.path(""));
    environment.push_back("XDG_RUNTIME_DIR=" + folder.path(""));
    LoggingProgram program({KELVINBAR_DEMO, "-vv"}, environment);
    EXPECT_TRUE(contains(program.logUntil("readings are"), "readings are"));
    EXPECT_EQ(program.target(0), "/dev/null");
    EXPECT_EQ(program.target(1), "/dev/null");
    program.send(SIGTERM);
    EXPECT_EQ(program.status(), 0);
}

/// A start with preferences of its own.
class StartWithPreferences : public testing::Test {
  protected:
    StartWithPreferences() { std::filesystem::create_directory(folder_.path("kelvinbar")); }

    /// Starts `program` and ends it once its log holds `text`. Returns the log.
    [[nodiscard]] std::string logUntil(const std::string& text, const char* program) const {
        Words environment = hiddenScreen;
        environment.push_back("XDG_CONFIG_HOME=" + folder_.path(""));
        environment.push_back("XDG_RUNTIME_DIR=" + folder_.path(""));
        LoggingProgram run({program, "-vv"}, environment);
        std::string log = run.logUntil(text);
        run.send(SIGTERM);
        EXPECT_EQ(run.status(), 0);
        return log;
    }

    TemporaryFolder folder_;
};

TEST_F(StartWithPreferences, ThatAreAPipeIsNotHeldUp) {
    ASSERT_EQ(::mkfifo(folder_.path("kelvinbar/kelvinbar-demo.conf").c_str(), 0600), 0);
    const std::string log = logUntil("readings are", KELVINBAR_DEMO);
    EXPECT_TRUE(contains(log, "kelvinbar-demo.conf cannot be read: it is no regular file\n")) << log;
    EXPECT_TRUE(contains(log, "readings are")) << log;
}

TEST_F(StartWithPreferences, RemembersAPinWhoseSensorIsMissing) {
    const std::string file =
        folder_.write("kelvinbar/kelvinbar.conf", "[General]\nKelvinbarMenuBarKeys=none-virtual-0/temp1\n");
    const std::string line = "kelvinbar: preferences debug: KelvinbarMenuBarKeys is removed\n";
    const std::string log = logUntil(line, KELVINBAR);
    EXPECT_TRUE(contains(log, line)) << log;
    const std::string content = contentOf(file);
    EXPECT_TRUE(contains(content, "KelvinbarAbsentPins=0\\t")) << content;
    EXPECT_TRUE(contains(content, "\\tnone-virtual-0/temp1\n")) << content;
    EXPECT_FALSE(contains(content, "KelvinbarMenuBarKeys")) << content;
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

// Displays

TEST(KelvinbarApp, SaysInOneSentenceThatNoDisplayCanBeOpened) {
    struct Case {
        Words options;
        Words variables;
        std::string tried;
    };

    const std::vector<Case> cases{
        {{}, {"DISPLAY=:65000"}, " with DISPLAY=:65000; "},
        {{}, {"WAYLAND_DISPLAY=kelvinbar-none"}, " with WAYLAND_DISPLAY=kelvinbar-none; "},
        {{}, {}, ", because neither DISPLAY nor WAYLAND_DISPLAY is set; "},
        {{}, {"QT_QPA_PLATFORM=nonsense"}, " with QT_QPA_PLATFORM=nonsense; "},
        {{"-platform", "nonsense"}, {}, " with -platform nonsense; "},
    };
    for (const auto& [options, variables, tried] : cases) {
        const TemporaryFolder folder;
        Words words{KELVINBAR};
        words.insert(words.end(), options.begin(), options.end());
        Words environment = variables;
        for (const char* const name : {"DISPLAY=", "WAYLAND_DISPLAY=", "QT_QPA_PLATFORM="}) {
            environment.emplace_back(name); // the first of a name counts
        }
        environment.push_back("XDG_RUNTIME_DIR=" + folder.path(""));
        environment.emplace_back("DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent");
        const Outcome outcome = outcomeOf(words, {}, environment);
        EXPECT_EQ(outcome.status, 1) << tried;
        EXPECT_EQ(outcome.errors.find('\n'), outcome.errors.size() - 1) << outcome.errors;
        EXPECT_TRUE(outcome.errors.starts_with("kelvinbar: no display can be opened" + tried))
            << outcome.errors;
    }
}

// A second start

/// A session bus that starts no services.
constexpr std::string_view busConfiguration =
    "<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen><auth>EXTERNAL</auth><policy "
    "context=\"default\">"
    "<allow send_destination=\"*\"/><allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>";

/// A session with a bus, a runtime folder and preferences of its own.
class Session {
  public:
    Session() {
        EXPECT_EQ(::pipe(addressPipe_.data()), 0);
        bus_.emplace(Words{KELVINBAR_DBUS_DAEMON,
                           "--config-file=" + folder_.write("bus.conf", busConfiguration), "--nofork",
                           "--print-address=" + std::to_string(addressPipe_[1])},
                     ProgramRun::Streams{"/dev/null", "/dev/null", "/dev/null"});
        ::close(addressPipe_[1]);
        for (char character = 0; ::read(addressPipe_[0], &character, 1) == 1 && character != '\n';) {
            address_ += character;
        }
        ::close(addressPipe_[0]);
    }

    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    ~Session() {
        bus_->terminate();
        static_cast<void>(bus_->status());
    }

    /// The environment of a program on `platform`, which need not be there.
    [[nodiscard]] Words variables(const std::string& platform, const std::string& display = {}) const {
        return {"QT_QPA_PLATFORM=" + platform,
                "DISPLAY=" + display,
                "WAYLAND_DISPLAY=",
                "XDG_SESSION_ID=",
                "DBUS_SESSION_BUS_ADDRESS=" + address_,
                "XDG_CONFIG_HOME=" + folder_.path(""),
                "XDG_RUNTIME_DIR=" + folder_.path("")};
    }

    /// The path of the program's autostart entry, whose folder is there.
    [[nodiscard]] std::string autostartEntry() const {
        std::filesystem::create_directory(folder_.path("autostart"));
        return folder_.path("autostart/org.kelvinbar.Demo.desktop");
    }

  private:
    TemporaryFolder folder_;
    std::array<int, 2> addressPipe_{};
    std::optional<ProgramRun> bus_;
    std::string address_;
};

class SecondProgramStart : public testing::Test {
  protected:
    void SetUp() override {
        EXPECT_TRUE(contains(first_.logUntil("readings are"), "readings are"));
        environment_ = session_.variables("nonsense");
    }

    void TearDown() override {
        first_.send(SIGTERM);
        EXPECT_EQ(first_.status(), 0);
    }

    [[nodiscard]] Outcome secondStart(const Words& options = {}) const {
        Words words{KELVINBAR_DEMO};
        words.insert(words.end(), options.begin(), options.end());
        return outcomeOf(words, {}, environment_);
    }

    Session session_;
    LoggingProgram first_{{KELVINBAR_DEMO, "-vv"}, session_.variables("offscreen", ":5")};
    Words environment_; ///< of the second start
};

TEST_F(SecondProgramStart, OpensThePanelOfTheFirstWithoutADisplay) {
    const Outcome outcome = secondStart();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_TRUE(contains(first_.logUntil("panel info: opened"), "panel info: opened"));
}

TEST_F(SecondProgramStart, RefusesAWrongArgumentInsteadOfOpeningThePanel) {
    EXPECT_EQ(secondStart({"toaster"}).status, 2);
}

TEST_F(SecondProgramStart, OnAnotherDisplaySaysWhereTheFirstRuns) {
    environment_ = session_.variables("nonsense", ":6");
    const Outcome outcome = secondStart();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(outcome.errors.starts_with("kelvinbar: it already runs on display :5 (process "))
        << outcome.errors;
}

TEST_F(SecondProgramStart, SaysThatTheFirstHangs) {
    first_.send(SIGSTOP);
    const Outcome outcome = secondStart();
    first_.send(SIGCONT);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(contains(outcome.errors, "but does not answer; end it with \"kill -KILL ")) << outcome.errors;
}

TEST_F(SecondProgramStart, WithOptionsOfTheToolkitHandsOverToo) {
    EXPECT_EQ(secondStart({"-platform", "offscreen"}).status, 0);
    EXPECT_TRUE(contains(first_.logUntil("panel info: opened"), "panel info: opened"));
}

TEST_F(SecondProgramStart, AtLoginOpensNothing) {
    const Outcome outcome = secondStart({"--autostart", "--verbose"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(contains(outcome.errors, "another instance runs already\n")) << outcome.errors;
}

TEST_F(SecondProgramStart, ByASessionManagerThatRestoresASessionOpensNothing) {
    const Outcome outcome = secondStart({"--verbose", "-platform", "offscreen", "-session", "id"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(contains(outcome.errors, "another instance runs already\n")) << outcome.errors;
}

TEST(KelvinbarApp, AClosedLogDoesNotEndIt) {
    Words environment = noDisplay;
    environment.emplace_back("DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent");
    LoggingProgram program({KELVINBAR, "-vv"}, environment);
    program.closeLog(); // before it has begun to write
    EXPECT_EQ(program.status(), 1);
}

TEST(KelvinbarApp, RenewsAStaleAutostartEntryAtItsStart) {
    const Session session;
    std::ofstream(session.autostartEntry()) << "[Desktop Entry]\nExec=/opt/gone/kelvinbar-demo --autostart\n";
    LoggingProgram program({KELVINBAR_DEMO, "-v"}, session.variables("offscreen"));
    const std::string written = session.autostartEntry() + " is written\n";
    EXPECT_TRUE(contains(program.logUntil(written), written));
    EXPECT_EQ(contentOf(session.autostartEntry()),
              "[Desktop Entry]\nExec=\"" KELVINBAR_DEMO "\" \"--autostart\"\n");
    program.send(SIGTERM);
    EXPECT_EQ(program.status(), 0);
}

TEST(KelvinbarApp, AFirstStartWithoutATraySaysSoAndOpensThePanel) {
    const Session session;
    LoggingProgram program({KELVINBAR_DEMO, "-v"}, session.variables("offscreen"));
    const std::string& log = program.logUntil("panel info: opened");
    EXPECT_TRUE(contains(log, "kelvinbar: no tray shows the status item; to open the panel, run \"")) << log;
    EXPECT_TRUE(contains(log, "panel info: opened")) << log;
    program.send(SIGTERM);
    EXPECT_EQ(program.status(), 0);
}

TEST(KelvinbarApp, OfTwoSimultaneousStartsOneRemains) {
    const Session session;
    const Words command{KELVINBAR_DEMO, "-vv"};
    LoggingProgram one(command, session.variables("offscreen"));
    LoggingProgram other(command, session.variables("offscreen"));
    const std::string running = "tray debug: readings are";
    const bool isOneRunning = contains(one.logUntil(running), running);
    const bool isOtherRunning = contains(other.logUntil(running), running);
    EXPECT_NE(isOneRunning, isOtherRunning);
    if (isOneRunning) one.send(SIGTERM);
    if (isOtherRunning) other.send(SIGTERM);
    EXPECT_EQ(one.status(), 0);
    EXPECT_EQ(other.status(), 0);
}

// The doctor

/// In a session without a display and a bus.
Outcome doctor(const Words& options, const Words& variables = {}) {
    Words words{KELVINBAR, "--doctor"};
    words.insert(words.end(), options.begin(), options.end());
    Words environment{"HOME=/home/some-person", "XDG_CONFIG_HOME=", "XDG_CURRENT_DESKTOP=GNOME",
                      "DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent"};
    environment.insert(environment.end(), noDisplay.begin(), noDisplay.end());
    environment.insert(environment.end(), variables.begin(), variables.end());
    return outcomeOf(words, {}, environment);
}

TEST(KelvinbarDoctor, ExaminesMachineAndSessionWithoutADisplay) {
    const Outcome outcome = doctor({});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "");
    EXPECT_TRUE(std::regex_search(outcome.output, std::regex("^kelvinbar \\d+\\.\\d+\\.\\d+ --doctor\n")))
        << outcome.output;
    for (const char* const words : {"\nSources\n", "\nCost of reading\n", "desktop: GNOME\n",
                                    "dbus-run-session", "toolkit: Qt ", "~/.config/kelvinbar"}) {
        EXPECT_TRUE(contains(outcome.output, words)) << words << outcome.output;
    }
    EXPECT_FALSE(contains(outcome.output, "some-person")) << outcome.output;
}

TEST(KelvinbarDoctor, SaysWhatItCannotAskWithoutABus) {
    const Outcome outcome = doctor({});
    for (const char* const words : {"session bus: the one at DBUS_SESSION_BUS_ADDRESS cannot be reached",
                                    "tray: no XEmbed tray", "status item: none"}) {
        EXPECT_TRUE(contains(outcome.output, words)) << words << outcome.output;
    }
    EXPECT_FALSE(contains(outcome.output, "watcher")) << outcome.output;
}

TEST(KelvinbarDoctor, PrintsADocument) {
    for (const Words& options : {Words{"--format", "json"}, Words{"--format=json"}}) {
        const Outcome outcome = doctor(options);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_TRUE(outcome.output.starts_with("{\n  \"schema\": 1,\n  \"program\": \"kelvinbar "))
            << outcome.output;
        EXPECT_TRUE(outcome.output.ends_with("}\n"));
    }
    EXPECT_EQ(doctor({"--format", "text"}).status, 0);
}

TEST(KelvinbarDoctor, TellsItsOwnCostIfItIsAsked) {
    EXPECT_FALSE(contains(doctor({}).output, "\nKelvinbar\n"));
    const Outcome outcome = doctor({"--self"});
    EXPECT_EQ(outcome.status, 0);
    for (const char* const words :
         {"\nKelvinbar\n", "session bus cannot be reached\n", "  ok  CPU Time a Minute: "}) {
        EXPECT_TRUE(contains(outcome.output, words)) << words << outcome.output;
    }
    EXPECT_TRUE(contains(doctor({"--self", "--format", "json"}).output, "\"title\": \"Kelvinbar\""));
}

TEST(KelvinbarDoctor, RefusesOptionsThatContradictIt) {
    for (const Words& options : {Words{"--autostart"}, Words{"--format", "csv"}, Words{"--format"},
                                 Words{"-platform", "offscreen"}, Words{"file"}}) {
        const Outcome outcome = doctor(options);
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.output, "");
        EXPECT_TRUE(contains(outcome.errors, "doctor")) << outcome.errors;
    }
    EXPECT_EQ(outcomeOf({KELVINBAR, "--format", "json"}, {}, noDisplay).status, 2);
    EXPECT_EQ(outcomeOf({KELVINBAR, "--self"}, {}, noDisplay).status, 2);
    EXPECT_EQ(outcomeOf({KELVINBAR_DEMO, "--doctor"}, {}, noDisplay).status, 2);
}

TEST(KelvinbarDoctor, FailsWhenItCannotPrint) {
    const TemporaryFolder folder;
    const std::string errors = folder.path("errors");
    EXPECT_EQ(ProgramRun({KELVINBAR, "--doctor"}, {"/dev/null", "/dev/full", errors}, noDisplay).status(), 1);
    EXPECT_TRUE(contains(contentOf(errors), "kelvinbar: cannot write what was found: ")) << contentOf(errors);
}

} // namespace
} // namespace kelvinbar::kelvinbar_app_test
