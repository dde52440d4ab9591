#pragma once

#include "base/Finding.h"

#include <string>
#include <vector>

/// Findings are published. What could tell whose they are is hidden here, whoever has written it.
namespace kelvinbar {

/// A folder of the user, and what stands for it.
struct PersonalPath {
    std::string folder; ///< absolute
    std::string standIn;
};

/// The user's folders according to the environment: the home folder and those of the XDG base directories.
/// Reads the environment.
std::vector<PersonalPath> personalPaths();

/// Replaces the folders in all texts, the first of `paths` first, and masks hardware addresses and
/// serial numbers.
void hidePerson(std::vector<FindingSection>& sections, const std::vector<PersonalPath>& paths);

} // namespace kelvinbar
