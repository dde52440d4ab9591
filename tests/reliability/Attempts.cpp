#include "tests/reliability/Attempts.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <new>
#include <stdexcept>
#include <string>
#include <sys/mman.h>
#include <sys/wait.h>

#include <gtest/gtest.h>
#include <unistd.h>

namespace kelvinbar::fakes {

namespace {

namespace fs = std::filesystem;

constexpr std::int64_t attemptsPerChild = 100;
constexpr unsigned secondsPerChild = 300;
constexpr std::size_t mostFailures = 10;

std::int64_t openFiles() {
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
}

/// What children tell their parent, in memory that both share.
class Progress {
  public:
    struct Figures {
        std::int64_t number = 0; ///< of the last attempt
        std::int64_t tried = 0;
        bool isOver = false;
    };

    Progress()
        : memory_(
              ::mmap(nullptr, sizeof(Figures), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) {
        if (memory_ == MAP_FAILED) throw std::runtime_error("no memory to share");
        figures_ = new (memory_) Figures;
    }

    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    ~Progress() { ::munmap(memory_, sizeof(Figures)); }

    Figures& operator*() { return *figures_; }

    Figures* operator->() { return figures_; }

  private:
    void* memory_;
    Figures* figures_ = nullptr;
};

/// Of the test that runs; a child has those of its parent, too.
int failuresSoFar() {
    return testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count();
}

using Attempt = std::function<std::int64_t(std::int64_t number)>;

/// Ends at a failure, or when the attack is over. The end looks for leaks where a sanitizer does.
[[noreturn]] void attemptBlock(Progress::Figures& progress, const Attempt& attempt) {
    ::alarm(secondsPerChild);
    const std::int64_t filesBefore = openFiles();
    const int failuresBefore = failuresSoFar();
    for (std::int64_t made = 0; made < attemptsPerChild && !progress.isOver; ++made) {
        ++progress.number;
        const std::int64_t tried = attempt(progress.number);
        EXPECT_EQ(openFiles(), filesBefore) << "open files";
        if (failuresSoFar() != failuresBefore)
            std::exit(EXIT_FAILURE); // NOLINT(concurrency-mt-unsafe): one thread
        progress.tried += tried;
        progress.isOver = tried == 0;
    }
    std::exit(EXIT_SUCCESS); // NOLINT(concurrency-mt-unsafe): one thread
}

std::string endOf(int status) {
    return WIFSIGNALED(status) ? "ended by signal " + std::to_string(WTERMSIG(status))
                               : "ended with status " + std::to_string(WEXITSTATUS(status));
}

} // namespace

std::int64_t attemptEach(std::string_view what, const Attempt& attempt) {
    Progress progress;
    for (std::size_t failures = 0; !progress->isOver && failures < mostFailures;) {
        std::fflush(nullptr); // or children would print it again
        const pid_t child = ::fork();
        if (child == 0) attemptBlock(*progress, attempt);
        int status = -1;
        ::waitpid(child, &status, 0);
        if (status == 0) continue;
        ++failures;
        ADD_FAILURE() << what << ' ' << progress->number << ' ' << endOf(status);
    }
    return progress->tried;
}

} // namespace kelvinbar::fakes
