// Preloaded into a console program, runs it as often as it allocates: each time in a child of its own, in
// which the allocation of that number fails. Every child must write the same as without a failure, or
// nothing, say that there is not enough memory, and exit 1. Prints how often it was run; the exit status is 1
// if a child did anything else.

#include "tests/reliability/memory/FailingFunctions.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <string>
#include <sys/mman.h>
#include <sys/wait.h>

#include <unistd.h>

namespace {

std::atomic<bool> isCounting{false};
std::atomic<std::int64_t> allocations{0};
std::atomic<std::int64_t> failing{0}; ///< 0 for none

using Main = int (*)(int, char**, char**);

Main programMain = nullptr;

/// What a child wrote, and how it ended.
struct Run {
    std::string output;
    std::string errors;
    int status = 0; ///< as of waitpid
};

std::string contentOf(int file) {
    std::string content(static_cast<std::size_t>(::lseek(file, 0, SEEK_END)), '\0');
    const bool isWhole =
        ::pread(file, content.data(), content.size(), 0) == static_cast<ssize_t>(content.size());
    ::close(file);
    return isWhole ? content : std::string();
}

/// The second line of a snapshot tells when it was taken.
std::string withoutTime(const std::string& snapshot) {
    const std::size_t start = snapshot.find("\nGenerated: ");
    return start == std::string::npos ? snapshot : snapshot.substr(snapshot.find('\n', start + 1));
}

[[noreturn]] void runAsChild(int output, int errors, std::int64_t number, int count, char** words,
                             char** environment) {
    ::dup2(output, STDOUT_FILENO);
    ::dup2(errors, STDERR_FILENO);
    failing = number;
    isCounting = true;
    const int status = programMain(count, words, environment);
    isCounting = false;
    // The number of allocations, for the parent.
    if (number == 0) static_cast<void>(std::fprintf(stderr, "%lld", static_cast<long long>(allocations)));
    static_cast<void>(std::fflush(nullptr));
    ::_exit(status);
}

Run run(std::int64_t number, int count, char** words, char** environment) {
    const int output = ::memfd_create("output", MFD_CLOEXEC);
    const int errors = ::memfd_create("errors", MFD_CLOEXEC);
    const pid_t child = ::fork();
    if (child == 0) runAsChild(output, errors, number, count, words, environment);
    Run result;
    ::waitpid(child, &result.status, 0);
    result.output = withoutTime(contentOf(output));
    result.errors = contentOf(errors);
    return result;
}

bool isRight(const Run& result, const Run& whole) {
    if (!WIFEXITED(result.status)) return false;
    if (WEXITSTATUS(result.status) == 0) return result.output == whole.output;
    const bool saysWhy = result.errors.find("memory") != std::string::npos;
    return WEXITSTATUS(result.status) == 1 && saysWhy &&
           (result.output.empty() || result.output == whole.output);
}

int runForEach(int count, char** words, char** environment) {
    const Run whole = run(0, count, words, environment);
    const std::int64_t last = std::atoll(whole.errors.c_str());
    std::int64_t runs = 0;
    std::int64_t wrong = 0;
    for (std::int64_t number = 1; number <= last; ++number) {
        const Run result = run(number, count, words, environment);
        ++runs;
        if (isRight(result, whole)) continue;
        ++wrong;
        static_cast<void>(std::fprintf(stderr, "allocation %lld: status %#x, %s\n",
                                       static_cast<long long>(number), static_cast<unsigned>(result.status),
                                       result.errors.c_str()));
    }
    static_cast<void>(std::printf("%lld of %lld runs wrong\n", static_cast<long long>(wrong),
                                  static_cast<long long>(runs)));
    return wrong == 0 && runs > 0 ? 0 : 1;
}

} // namespace

namespace kelvinbar::fakes {

/// Counts the allocation.
bool isAllocationToFail() { return isCounting && ++allocations == failing; }

} // namespace kelvinbar::fakes

extern "C" {

/// Called by the start code of every program, with its main.
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the C library's name
[[gnu::visibility("default")]] int __libc_start_main(Main main, int count, char** words, void (*init)(),
                                                     void (*fini)(), void (*end)(), void* stack) {
    using Start = int (*)(Main, int, char**, void (*)(), void (*)(), void (*)(), void*);
    programMain = main;
    const auto start = reinterpret_cast<Start>(::dlsym(RTLD_NEXT, "__libc_start_main"));
    return start(runForEach, count, words, init, fini, end, stack);
}

} // extern "C"
