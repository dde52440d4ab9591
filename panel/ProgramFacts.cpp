#include "panel/ProgramFacts.h"

namespace kelvinbar {

std::vector<std::string> programLines(const ProgramFacts& facts) {
    std::vector<std::string> lines;
    if (!facts.version.empty()) lines.push_back("Version " + facts.version + ", MIT License");
    if (!facts.preferencesPlace.empty()) lines.push_back("Preferences: " + facts.preferencesPlace);
    // A second start only opens the panel of the first, which does not log more for it.
    if (!facts.program.empty()) {
        lines.push_back("Log: quit, then run in a terminal\n" + facts.program + " --verbose");
    }
    return lines;
}

} // namespace kelvinbar
