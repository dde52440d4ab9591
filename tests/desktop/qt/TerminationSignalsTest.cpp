#include "desktop/qt/TerminationSignals.h"

#include "tests/ProgramRun.h"
#include "tests/desktop/EventLoop.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>
#include <unistd.h>

namespace kelvinbar::termination_signals_test {

namespace {

void doNothing(int /*number*/) {}

/// Sets the action for a signal, and restores the earlier one in the end.
class ActionScope {
  public:
    ActionScope(int number, void (*handler)(int)) : number_(number) {
        struct sigaction action{};

        action.sa_handler = handler;
        ::sigaction(number, &action, &earlier_);
    }

    ActionScope(const ActionScope&) = delete;
    ActionScope& operator=(const ActionScope&) = delete;

    ~ActionScope() { ::sigaction(number_, &earlier_, nullptr); }

  private:
    int number_;

    struct sigaction earlier_{};
};

auto handlerOf(int number) {
    struct sigaction action{};

    ::sigaction(number, nullptr, &action);
    return action.sa_handler;
}

/// A second process with an event loop, which prints "ready", and "told" for each call of its handler.
class SignalledProgram {
  public:
    explicit SignalledProgram(const char* option) {
        EXPECT_EQ(::pipe(pipe_.data()), 0);
        const std::string output = "/dev/fd/" + std::to_string(pipe_[1]);
        run_.emplace(Words{"/proc/self/exe", option}, ProgramRun::Streams{"/dev/null", output, "/dev/null"});
        ::close(pipe_[1]); // so that the end of the program ends its output
        EXPECT_EQ(line(), "ready");
    }

    SignalledProgram(const SignalledProgram&) = delete;
    SignalledProgram& operator=(const SignalledProgram&) = delete;

    ~SignalledProgram() { ::close(pipe_[0]); }

    void send(int number) const { run_->send(number); }

    /// The next line that it prints; empty at its end.
    [[nodiscard]] std::string line() const {
        std::string text;
        for (char character = 0; ::read(pipe_[0], &character, 1) == 1 && character != '\n';) {
            text += character;
        }
        return text;
    }

    /// Waits for its end. The exit status, or -1 if a signal ended it.
    [[nodiscard]] int status() const { return run_->status(); }

  private:
    std::array<int, 2> pipe_{};
    std::optional<ProgramRun> run_;
};

TEST(TerminationSignals, EachOfThemIsToldInTheEventLoopAndLeavesTheExitStatusToTheProgram) {
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        const SignalledProgram program("--end-by-signal");
        program.send(number);
        EXPECT_EQ(program.line(), "told") << number;
        EXPECT_EQ(program.status(), 0) << number;
    }
}

TEST(TerminationSignals, ASecondOneDuringASlowShutdownEndsTheProgramAtOnce) {
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        const SignalledProgram program("--end-slowly");
        program.send(number);
        ASSERT_EQ(program.line(), "told") << number;
        program.send(number);
        EXPECT_EQ(program.line(), "") << number;
        EXPECT_EQ(program.status(), -1) << number;
    }
}

TEST(TerminationSignals, OneOfAnotherNumberDuringTheShutdownDoesNotEndTheProgram) {
    bool isTold = false;
    const TerminationSignals watch([&] { isTold = true; });
    ::raise(SIGTERM);
    ASSERT_TRUE(waitFor([&] { return isTold; }));
    EXPECT_EQ(handlerOf(SIGTERM), SIG_DFL);
    EXPECT_NE(handlerOf(SIGHUP), SIG_DFL); // a session manager sends it right after SIGTERM
}

TEST(TerminationSignals, ASecondOneEndsAShutdownThatNoSignalBegan) {
    const SignalledProgram program("--quit");
    EXPECT_EQ(program.line(), "survived one");
    EXPECT_EQ(program.line(), "");
    EXPECT_EQ(program.status(), -1);
}

TEST(TerminationSignals, SeveralBeforeTheEventLoopNoticesThemAreToldOnce) {
    int told = 0;
    const TerminationSignals watch([&] { ++told; });
    for (const int number : {SIGTERM, SIGTERM, SIGHUP}) ::raise(number);
    EXPECT_EQ(told, 0);
    EXPECT_TRUE(waitFor([&] { return told > 0; }));
    runEventLoop(std::chrono::milliseconds(20));
    EXPECT_EQ(told, 1);
}

TEST(TerminationSignals, AnIgnoredHangupStaysIgnored) {
    const ActionScope nohup(SIGHUP, SIG_IGN);
    const SignalledProgram program("--end-by-signal");
    program.send(SIGHUP);
    program.send(SIGTERM);
    EXPECT_EQ(program.line(), "told");
    EXPECT_EQ(program.line(), "");
    EXPECT_EQ(program.status(), 0);
    const TerminationSignals watch([] { ADD_FAILURE() << "told"; });
    EXPECT_EQ(handlerOf(SIGHUP), SIG_IGN);
}

TEST(TerminationSignals, TheDestructorRestoresWhatWasThereBefore) {
    const ActionScope own(SIGTERM, doNothing);
    const ActionScope background(SIGINT, SIG_IGN);
    {
        const TerminationSignals watch([] {});
        EXPECT_NE(handlerOf(SIGTERM), doNothing);
    }
    EXPECT_EQ(handlerOf(SIGTERM), doNothing);
    EXPECT_EQ(handlerOf(SIGINT), SIG_IGN);
    EXPECT_EQ(handlerOf(SIGHUP), SIG_DFL);
}

TEST(TerminationSignals, TheErrorNumberOfInterruptedCodeIsKept) {
    const TerminationSignals watch([] {});
    constexpr int moreThanThePipeHolds = 70'000;
    for (int count = 0; count < moreThanThePipeHolds; ++count) {
        errno = ENOENT;
        ::raise(SIGTERM);
        ASSERT_EQ(errno, ENOENT) << count;
    }
}

} // namespace
} // namespace kelvinbar::termination_signals_test
