#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace kelvinbar::fakes {

/// What is wrong with a call on files.
enum class Fault : std::uint8_t {
    fails,   ///< with an error
    isShort, ///< half of what was asked for; a folder ends early
    lies,    ///< a number that no sensor has, a file that is none, an entry that is not there
    floods,  ///< as much as fits, without an end of the line
};

inline constexpr std::array allFaults{Fault::fails, Fault::isShort, Fault::lies, Fault::floods};

/// A call that goes wrong.
struct FaultyCall {
    std::int64_t number; ///< counted from 1
    Fault fault;
};

/// Lets calls of open, read, pread, opendir and readdir go wrong while it lives. The program replaces the C
/// library's functions. One at a time, one thread.
class SystemCallFaults {
  public:
    explicit SystemCallFaults(std::vector<FaultyCall> faulty);
    SystemCallFaults(const SystemCallFaults&) = delete;
    SystemCallFaults& operator=(const SystemCallFaults&) = delete;
    ~SystemCallFaults();

    /// The files and folders of the calls that went wrong.
    [[nodiscard]] static const std::vector<std::string>& paths();
};

} // namespace kelvinbar::fakes
