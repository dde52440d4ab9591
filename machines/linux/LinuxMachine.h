#pragma once

#include "machines/linux/OnceLog.h"
#include "sensors/Machine.h"

#include <filesystem>
#include <memory>

namespace kelvinbar {

/// The machine whose kernel publishes itself in proc/ and sys/ below `root`. `log` is told once what of it is
/// left out and why; it is called from the thread that reads.
Machine makeLinuxMachine(const std::filesystem::path& root, std::shared_ptr<const MonotonicClock> clock,
                         OnceLog::Sink log);

} // namespace kelvinbar
