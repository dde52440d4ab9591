#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <system_error>

/// The standard streams of the process: input, output and errors, with the descriptors 0 to 2.
namespace kelvinbar {

/// Opens the null device on standard streams that the process was started without. Otherwise the next file or
/// connection would get such a descriptor, and what the program prints. Using such a stream still fails, as
/// if it were closed. Does nothing if the system has no null device.
///
/// First in every main(), before anything else opens a descriptor.
void openClosedStandardStreams();

/// Whether standard output is a terminal. Any thread.
bool isStandardOutputTerminal();

/// In characters; 0 if it is not known.
struct TerminalSize {
    std::size_t columns = 0;
    std::size_t rows = 0;
};

/// The size that the terminal on standard output has now. Any thread.
TerminalSize standardOutputSize();

/// Whether terminals take control sequences, by the user's environment: no if TERM is missing, empty or
/// "dumb". Reads the environment.
bool takesControlSequences();

/// Whether the user's environment wants colours on terminals that take control sequences: no if NO_COLOR is
/// set to anything. Reads the environment.
bool wantsColours();

/// Makes writes fail that otherwise end the process: with EPIPE to a pipe or connection that nobody reads any
/// more, since a session's terminal and services may end first, and with EFBIG to a file that has the largest
/// size which the process may write. Early in main(), before anything is written.
void letWritesFail();

/// Writes `text` as a whole, at once. Returns why it could not, such as a disk that is full; part of the text
/// may be written then. Blocks as long as the reader does, on non-blocking streams, too.
std::error_code writeToStandardOutput(std::string_view text);

/// The sentence for an error of `writeToStandardOutput`: "cannot write the snapshot: No space left on device"
/// for "the snapshot".
std::string writeFailure(std::string_view what, std::error_code error);

} // namespace kelvinbar
