#pragma once

#include "fuzz/InputText.h"

#include <cstddef>
#include <ostream>
#include <sstream>
#include <streambuf>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <vector>

#include <unistd.h>

/// Command lines as inputs: a word a line.
namespace kelvinbar::fuzz {

inline std::vector<std::string> commandWords(std::string_view input) {
    constexpr std::size_t mostWords = 64;
    std::vector<std::string> words;
    for (const std::string_view word : parts(input, '\n', mostWords)) words.emplace_back(word);
    return words;
}

/// As `main` gets them; the words must stay.
inline std::vector<char*> argumentsOf(std::vector<std::string>& words) {
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    return arguments;
}

/// Keeps what is printed on a stream from the fuzzer's own output.
class Captured {
  public:
    explicit Captured(std::ostream& stream) : stream_(stream), before_(stream.rdbuf(text_.rdbuf())) {}

    Captured(const Captured&) = delete;
    Captured& operator=(const Captured&) = delete;

    ~Captured() { stream_.rdbuf(before_); }

    [[nodiscard]] bool isEmpty() const { return text_.view().empty(); }

  private:
    std::ostringstream text_;
    std::ostream& stream_;
    std::streambuf* before_;
};

/// The same of what is written to standard output past its stream.
class CapturedOutput {
  public:
    CapturedOutput() { ::dup2(file_, STDOUT_FILENO); }

    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;

    ~CapturedOutput() {
        ::dup2(before_, STDOUT_FILENO);
        ::close(before_);
        ::close(file_);
    }

    [[nodiscard]] bool isEmpty() const { return ::lseek(file_, 0, SEEK_END) == 0; }

  private:
    const int before_ = ::dup(STDOUT_FILENO);
    const int file_ = ::memfd_create("output", MFD_CLOEXEC);
};

} // namespace kelvinbar::fuzz
