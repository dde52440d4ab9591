#pragma once

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

} // namespace kelvinbar
