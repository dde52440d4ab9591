#pragma once

#include <span>
#include <string_view>

namespace kelvinbar {

/// A made-up machine that is part of the program, as a snapshot text.
struct SampleMachine {
    std::string_view name; ///< by which a user asks for it
    std::string_view text;
};

/// An Intel notebook, an Apple Silicon desktop, an AMD PC with an SMC emulator and registry fans, and an AMD
/// PC under Linux with a drive that sleeps.
std::span<const SampleMachine> sampleMachines();

} // namespace kelvinbar
