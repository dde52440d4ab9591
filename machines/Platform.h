#pragma once

#include "base/Finding.h"
#include "base/Log.h"
#include "base/Value.h"
#include "sensors/Machine.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvinbar {

/// The machine that the program runs on. Defined by the folder of the operating system that the build is for;
/// only composition roots call it. It opens nothing: a source opens its files or its driver when it is first
/// read.
///
/// `log` outlives the machine.
Machine makePlatform(Log& log);

/// What the sources of `machine`, made by `makePlatform`, found and left out, which drivers they miss, and
/// the configuration that they and the programs use. Reads all sensors; may block as long as a pass.
std::vector<FindingSection> platformFindings(const Machine& machine);

/// The name of the demo machine that resembles the platform's own machines most; one of demoMachineNames().
std::string_view usualDemoMachine();

/// The lists of texts among the preferences that the desktop program has stored for this user, such as the
/// pinned keys; empty if it has stored none. No value on platforms where only that program can read them.
/// Reads a small file.
std::optional<Dictionary> storedPreferenceLists();

/// A text that changes when those preferences are stored anew; empty without any, and on platforms where they
/// cannot be read. Looks at the file without reading it.
std::string storedPreferencesStamp();

} // namespace kelvinbar
