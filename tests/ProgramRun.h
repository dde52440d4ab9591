#pragma once

#include "tests/FileContent.h"
#include "tests/tools/TemporaryFolder.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <sys/wait.h>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <unistd.h>

extern char** environ; // NOLINT(readability-redundant-declaration): not every system's header has it

namespace kelvinbar {

using Words = std::vector<std::string>;

/// One run of a program as a user starts it, begun with the constructor.
class ProgramRun {
  public:
    /// Files. An empty name leaves the stream closed.
    struct Streams {
        std::string input;
        std::string output;
        std::string errors;
    };

    /// `words`: the program and its options; `variables`: "NAME=value" besides the tests' own environment.
    ProgramRun(Words words, const Streams& streams, const Words& variables = {}) {
        Words environment = environmentWith(variables);
        posix_spawn_file_actions_t actions{};
        posix_spawn_file_actions_init(&actions);
        addStream(actions, STDIN_FILENO, streams.input, O_RDONLY);
        addStream(actions, STDOUT_FILENO, streams.output, O_WRONLY | O_CREAT | O_NOCTTY);
        addStream(actions, STDERR_FILENO, streams.errors, O_WRONLY | O_CREAT);
        const int code = posix_spawn(&process_, words.front().c_str(), &actions, nullptr,
                                     pointersTo(words).data(), pointersTo(environment).data());
        posix_spawn_file_actions_destroy(&actions);
        EXPECT_EQ(code, 0) << words.front();
    }

    /// Waits for the end; the exit status, or -1 when the process did not exit by itself.
    [[nodiscard]] int status() const {
        int status = 0;
        if (waitpid(process_, &status, 0) != process_ || !WIFEXITED(status)) return -1;
        return WEXITSTATUS(status);
    }

    void terminate() const { send(SIGTERM); }

    void send(int signal) const { ::kill(process_, signal); }

    [[nodiscard]] pid_t process() const { return process_; }

  private:
    static void addStream(posix_spawn_file_actions_t& actions, int stream, const std::string& file,
                          int flags) {
        if (file.empty()) {
            posix_spawn_file_actions_addclose(&actions, stream);
        } else {
            posix_spawn_file_actions_addopen(&actions, stream, file.c_str(), flags, 0600);
        }
    }

    static std::vector<char*> pointersTo(Words& words) {
        std::vector<char*> pointers;
        for (std::string& word : words) pointers.push_back(word.data());
        pointers.push_back(nullptr);
        return pointers;
    }

    /// The tests' environment with their locale of a decimal comma asked for, and without a choice of what is
    /// logged.
    static Words environmentWith(const Words& variables) {
        Words environment = variables;
        environment.emplace_back("LC_ALL=de_DE.UTF-8");
        for (char** entry = environ; *entry != nullptr; ++entry) {
            const std::string_view variable = *entry;
            const bool isReplaced = variable.starts_with("LC_ALL=") || variable.starts_with("KELVINBAR_LOG=");
            if (!isReplaced) environment.emplace_back(variable);
        }
        return environment;
    }

    pid_t process_ = -1;
};

/// What a program left when it ended.
struct Outcome {
    int status = -1; ///< exit status; -1 when the process did not exit by itself
    std::string output;
    std::string errors;
};

/// Runs a program to its end with `input` on its standard input.
inline Outcome outcomeOf(Words words, std::string_view input = {}, const Words& variables = {}) {
    const TemporaryFolder folder;
    const ProgramRun::Streams streams{folder.write("input", input), folder.write("output", ""),
                                      folder.write("errors", "")};
    Outcome outcome;
    outcome.status = ProgramRun(std::move(words), streams, variables).status();
    outcome.output = contentOf(streams.output);
    outcome.errors = contentOf(streams.errors);
    return outcome;
}

/// Runs a program to its end with a standard output that is a pipe without a reader.
inline Outcome outcomeIntoClosedPipe(const Words& words, const Words& variables = {}) {
    constexpr int inherited = 7;
    std::array<int, 2> pipe{};
    EXPECT_EQ(::pipe(pipe.data()), 0);
    ::close(pipe[0]);
    EXPECT_EQ(::dup2(pipe[1], inherited), inherited);
    ::close(pipe[1]);
    Words shell{"/bin/sh", "-c", "exec \"$@\" >&7", "sh"};
    shell.insert(shell.end(), words.begin(), words.end());
    Outcome outcome = outcomeOf(shell, {}, variables);
    ::close(inherited);
    return outcome;
}

/// Runs a program to its end that may write no more than 512 bytes into a file.
inline Outcome outcomeWithSmallFiles(const Words& words, const Words& variables = {}) {
    Words shell{"/bin/sh", "-c", "ulimit -f 1; exec \"$@\"", "sh"};
    shell.insert(shell.end(), words.begin(), words.end());
    return outcomeOf(shell, {}, variables);
}

} // namespace kelvinbar
