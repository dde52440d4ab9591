#include "tools/IdentificationPrinter.h"

#include "base/Text.h"
#include "tests/FileContent.h"
#include "tests/fakes/FakeMachine.h"
#include "tests/tools/TemporaryFolder.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <string>
#include <sys/types.h>
#include <sys/wait.h>
#include <thread>

#include <gtest/gtest.h>
#include <unistd.h>

namespace kelvinbar::identification_printer_test {

namespace {

/// A process of its own, which signals may end, that identifies the sensors of a made-up machine.
class IdentifyingProcess {
  public:
    IdentifyingProcess(const fakes::FakeMachine& fake, const ReadingSelection& selection) {
        process_ = ::fork();
        if (process_ == 0) ::_exit(identify(fake, selection));
    }

    void send(int signal) const { ::kill(process_, signal); }

    /// Waits for the end.
    [[nodiscard]] int status() const {
        int status = -1;
        return ::waitpid(process_, &status, 0) == process_ && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    [[nodiscard]] std::string errors() const { return contentOf(errors_); }

  private:
    [[nodiscard]] int identify(const fakes::FakeMachine& fake, const ReadingSelection& selection) const {
        if (std::freopen(errors_.c_str(), "w", stderr) == nullptr) return -1;
        SnapshotTaker taker;
        const IdentificationPlan plan{.isByHand = true, .time = std::chrono::hours(1)};
        return printIdentification({.plan = plan, .selection = selection}, fake.machine(), taker);
    }

    TemporaryFolder folder_;
    std::string errors_ = folder_.write("errors", "");
    pid_t process_ = -1;
};

TEST(PrintIdentification, EndsAtOnceOnASignal) {
    const fakes::FakeMachine fake;
    fake.driver->addKeyCount(2).add("TC0P", "sp78", {0x28, 0x80});
    for (const int number : {SIGINT, SIGTERM}) {
        const IdentifyingProcess process(fake, {});
        while (!contains(process.errors(), "Leave the machine alone")) std::this_thread::yield();
        process.send(number);
        EXPECT_EQ(process.status(), 1);
        EXPECT_TRUE(process.errors().ends_with("ended before anything could respond\n")) << process.errors();
    }
}

TEST(PrintIdentification, RefusesAMachineWithoutSensorsAtOnce) {
    const fakes::FakeMachine fake;
    fake.system->thermal = 2;
    const IdentifyingProcess process(fake, {});
    EXPECT_EQ(process.status(), 1);
    EXPECT_EQ(process.errors(), "kelvinbar-snapshot: there is no sensor that could be identified\n");
}

} // namespace
} // namespace kelvinbar::identification_printer_test
