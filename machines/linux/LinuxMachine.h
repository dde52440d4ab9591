#pragma once

#include "base/Log.h"
#include "sensors/Machine.h"

#include <chrono>
#include <filesystem>
#include <memory>

namespace kelvinbar {

/// The machine whose kernel exposes itself in proc/ and sys/ below `root`, which is "/" or a recorded tree.
/// Its sources, in order:
/// - the SMC of an Apple computer, if there is one and its keys may be listed
/// - the kernel's sensors, without those that the SMC already measures
///
/// The user's libsensors configuration only applies to "/", since that library cannot read another root.
/// `log` outlives the machine. A device whose read takes `answerLimit` is set aside (ReadWatch.h).
Machine makeLinuxMachine(const std::filesystem::path& root, std::shared_ptr<const MonotonicClock> clock,
                         Log& log, std::chrono::milliseconds answerLimit = ReadWatch::usualLimit);

} // namespace kelvinbar
