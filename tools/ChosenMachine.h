#pragma once

#include "base/Log.h"
#include "sensors/Machine.h"

#include <optional>
#include <string>

namespace kelvinbar {

/// Which machine to read: this one unless a member is set.
struct MachineChoice {
    std::optional<std::string> replayFile; ///< a snapshot text; "-" for standard input
    std::string sampleName;                ///< of a made-up machine; empty for none

    /// For people: "this machine", "the sample amd-pc", "a snapshot". Names no file.
    [[nodiscard]] std::string description() const;
};

/// The machine, or no value after printing the reason. Lines of a snapshot that cannot be used are printed
/// and skipped. Blocks until the end of the input. `log` outlives the machine.
std::optional<Machine> chosenMachine(const MachineChoice& choice, Log& log);

} // namespace kelvinbar
