#pragma once

#include <string>
#include <vector>

namespace kelvinbar {

/// What the program knows of itself and the panel tells. What is empty is not told.
struct ProgramFacts {
    std::string version{};
    std::string author{};
    std::string contact{};          ///< an e-mail address
    std::string donationPage{};     ///< a web address
    std::string preferencesPlace{}; ///< a file
    std::string program{};          ///< the file that is started
};

/// The lines of the About popover: version and licence, the preferences, how to see the log.
std::vector<std::string> programLines(const ProgramFacts& facts);

} // namespace kelvinbar
