#pragma once

#include "base/Log.h"
#include "sensors/Machine.h"

#include <filesystem>
#include <memory>

namespace kelvinbar {

/// The machine whose kernel publishes itself in proc/ and sys/ below `root`: Apple's controller where there
/// is one, then the kernel's sensors for what it does not measure. `log` outlives the machine.
Machine makeLinuxMachine(const std::filesystem::path& root, std::shared_ptr<const MonotonicClock> clock,
                         Log& log);

} // namespace kelvinbar
