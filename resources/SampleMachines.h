#pragma once

#include <span>
#include <string_view>

namespace kelvinbar {

/// A made-up machine as a snapshot text, embedded in the program.
struct SampleMachine {
    std::string_view name; ///< selects the machine on a command line
    std::string_view text;
};

/// An Intel notebook, an Apple Silicon desktop, an AMD PC with an emulated SMC and registry fans, and an AMD
/// PC under Linux with a drive that sleeps. Static lifetime.
std::span<const SampleMachine> sampleMachines();

} // namespace kelvinbar
