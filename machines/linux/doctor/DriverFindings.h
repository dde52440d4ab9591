#pragma once

#include "base/Finding.h"

#include <filesystem>
#include <vector>

namespace kelvinbar {

/// Which drivers read the processor, the mainboard, the drives and the graphics cards of the machine below
/// `root`, the directory that holds proc/ and sys/, and which are missing although the machine probably needs
/// them, with the command that loads each.
///
/// Limits: a virtual machine is expected to have no sensors but those of a card, and only x86 machines need
/// drivers that are not loaded by themselves. That a mainboard has a monitoring chip is assumed for desktop
/// cases. Nothing is written, and no device is woken.
std::vector<Finding> driverFindings(const std::filesystem::path& root);

} // namespace kelvinbar
