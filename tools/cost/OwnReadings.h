#pragma once

#include "catalogue/SMCReading.h"
#include "process/ProgramCost.h"

#include <string_view>
#include <vector>

/// What the program itself costs, as readings. They are no sensor's, and none of the catalogue's categories
/// is theirs. Pure functions; any thread.
namespace kelvinbar {

/// Title of their category, and its word on the command line.
inline constexpr std::string_view ownCategoryTitle = "Kelvinbar";
inline constexpr std::string_view ownCategoryWord = "kelvinbar";

/// One reading for each number that is known, with keys such as "kelvinbar/cpu-time". Their type is
/// `program`: whose cost it is.
std::vector<SMCReading> ownReadings(const ProgramCost& cost, std::string_view program);

/// Whether `ownReadings` made it.
bool isOwnReading(const SMCReading& reading);

/// The title of the reading's category. Refers to text of static lifetime.
std::string_view categoryTitle(const SMCReading& reading);

} // namespace kelvinbar
