#include "process/EndSignals.h"

#include <array>
#include <chrono>
#include <csignal>
#include <functional>
#include <sys/types.h>
#include <sys/wait.h>

#include <gtest/gtest.h>
#include <unistd.h>

namespace kelvinbar::end_signals_test {

namespace {

using namespace std::chrono_literals;

constexpr auto longTime = 1h;

/// How `run` ends in a child process: its exit status, 0 for true; or minus the signal that ends it.
int outcomeInChild(const std::function<bool()>& run) {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(run() ? 0 : 1);
    int status = -1;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

TEST(EndSignals, EndAWait) {
    for (const int number : {SIGINT, SIGTERM}) {
        EXPECT_EQ(outcomeInChild([number] {
                      const EndSignals signals;
                      std::raise(number);
                      return signals.comeWithin(longTime) && signals.comeWithin(0s);
                  }),
                  0);
    }
}

TEST(EndSignals, EndAWaitThatHasBegun) {
    EXPECT_EQ(outcomeInChild([] {
                  const EndSignals signals;
                  const pid_t parent = ::getpid();
                  if (::fork() == 0) {
                      ::kill(parent, SIGTERM);
                      ::_exit(0);
                  }
                  return signals.comeWithin(longTime);
              }),
              0);
}

TEST(EndSignals, DoNotComeByThemselves) {
    EXPECT_EQ(outcomeInChild([] { return !EndSignals().comeWithin(1ms); }), 0);
}

TEST(EndSignals, EndTheProcessTheSecondTime) {
    EXPECT_EQ(outcomeInChild([] {
                  const EndSignals signals;
                  std::raise(SIGINT);
                  std::raise(SIGINT);
                  return true;
              }),
              -SIGINT);
}

TEST(EndSignals, StayIgnoredWhereTheStarterIgnoresThem) {
    EXPECT_EQ(outcomeInChild([] {
                  static_cast<void>(std::signal(SIGINT, SIG_IGN));
                  const EndSignals signals;
                  std::raise(SIGINT);
                  return !signals.comeWithin(0s);
              }),
              0);
}

TEST(EndSignals, EndTheProcessAgainAfterwards) {
    EXPECT_EQ(outcomeInChild([] {
                  {
                      const EndSignals signals;
                  }
                  std::raise(SIGTERM);
                  return true;
              }),
              -SIGTERM);
}

TEST(EndSignals, ComeWhenNobodyReadsTheOutput) {
    EXPECT_EQ(outcomeInChild([] {
                  std::array<int, 2> pipe{};
                  if (::pipe(pipe.data()) != 0) return false;
                  ::dup2(pipe[1], STDOUT_FILENO);
                  const EndSignals signals;
                  const bool isEarly = signals.comeWithin(0s);
                  ::close(pipe[0]);
                  return !isEarly && signals.comeWithin(longTime);
              }),
              0);
}

} // namespace
} // namespace kelvinbar::end_signals_test
