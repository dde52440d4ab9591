#pragma once

#include "catalogue/KeySet.h"
#include "catalogue/SMCReading.h"
#include "panel/PanelColor.h"
#include "sensors/MachineTexts.h"

#include <string_view>
#include <vector>

/// Which section a reading is in, and the order of rows and sections. Pure functions over the store's
/// readings; nothing is copied.
namespace kelvinbar {

/// Pointers to readings, in an order of their own. They point into the vector that the readings were taken
/// from, and dangle when that changes.
using ReadingList = std::vector<const SMCReading*>;

/// One section of the panel as it is drawn.
struct SensorSectionModel {
    std::string_view id; ///< identifies the card
    std::string_view title;
    std::string_view subtitle;
    std::string_view icon; ///< name of the symbol
    Accent accent = Accent::grey;
    ReadingList readings; ///< the rows, filtered and in order
};

/// The readings that are not hidden, in their order. The panel counts these.
ReadingList visibleReadings(const std::vector<SMCReading>& readings, const KeySet& hiddenKeys);

/// The rows of each section: the visible readings of its categories, by priority, then by name in natural
/// order. Stable.
ReadingList cpuReadings(const ReadingList& visible);
ReadingList graphicsReadings(const ReadingList& visible);
ReadingList memoryReadings(const ReadingList& visible);
ReadingList storageReadings(const ReadingList& visible);
ReadingList fanReadings(const ReadingList& visible);
ReadingList voltageReadings(const ReadingList& visible);
ReadingList powerReadings(const ReadingList& visible);
ReadingList thermalReadings(const ReadingList& visible);

/// The rank of a reading in its section, from words in its key and name; smaller ranks come first.
int sortPriority(const SMCReading& reading);

/// The non-empty sections, in the order of the panel. `memorySubtitle` outlives the result.
std::vector<SensorSectionModel> sectionModels(const ReadingList& visible,
                                              std::string_view memorySubtitle = MachineTexts().memoryCard);

} // namespace kelvinbar
