#pragma once

#include <array>
#include <csignal>
#include <span>
#include <utility>
#include <vector>

namespace kelvinbar {

/// Writes the number of each signal that comes, as a byte, into a pipe: what a program may do in a signal
/// handler is little. A signal that the starter of the process ignores stays ignored. The destructor restores
/// what was there before. One object at a time; main thread.
class SignalPipe {
  public:
    /// `flags` are those of sigaction().
    SignalPipe(std::span<const int> numbers, int flags);
    SignalPipe(const SignalPipe&) = delete;
    SignalPipe& operator=(const SignalPipe&) = delete;
    ~SignalPipe();

    /// False if the system has no pipe for it: the signals then act as without this object.
    [[nodiscard]] bool isOpen() const { return ends_[0] >= 0; }

    /// Reading from it does not block.
    [[nodiscard]] int readEnd() const { return ends_[0]; }

    /// Restores the signal's usual effect.
    static void release(int number);

    /// Of each signal that has not been released, only the next one is still written.
    void writeOneMoreOfEach() const;

  private:
    void close();

    std::array<int, 2> ends_{-1, -1};
    std::vector<std::pair<int, struct sigaction>> earlier_; ///< what each signal did before
};

} // namespace kelvinbar
