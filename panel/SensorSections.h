#pragma once

#include "catalogue/KeySet.h"
#include "catalogue/SMCReading.h"
#include "panel/PanelColor.h"
#include "sensors/MachineTexts.h"

#include <string_view>
#include <vector>

namespace kelvinbar {

/// Readings in an order of their own. They belong to the list they were taken from and are valid as long as
/// that is.
using ReadingList = std::vector<const SMCReading*>;

/// One section of the panel as it is drawn.
struct SensorSectionModel {
    std::string_view id; ///< stable; the list of cards is keyed by it
    std::string_view title;
    std::string_view subtitle;
    std::string_view icon; ///< name of the symbol
    Accent accent = Accent::grey;
    ReadingList readings; ///< the rows, filtered and in order
};

/// The readings that the panel counts, in their order.
ReadingList visibleReadings(const std::vector<SMCReading>& readings, const KeySet& hiddenKeys);

/// The rows of each section: those of the visible readings whose category belongs to it, what matters most
/// first, then by name in the order in which people list names. Stable.
ReadingList cpuReadings(const ReadingList& visible);
ReadingList graphicsReadings(const ReadingList& visible);
ReadingList memoryReadings(const ReadingList& visible);
ReadingList storageReadings(const ReadingList& visible);
ReadingList fanReadings(const ReadingList& visible);
ReadingList voltageReadings(const ReadingList& visible);
ReadingList powerReadings(const ReadingList& visible);
ReadingList thermalReadings(const ReadingList& visible);

/// What a reading is, by the words in its key and name: smaller comes first in its section.
int sortPriority(const SMCReading& reading);

/// The sections that have rows, in the order of the panel.
/// `memorySubtitle` outlives the result.
std::vector<SensorSectionModel> sectionModels(const ReadingList& visible,
                                              std::string_view memorySubtitle = MachineTexts().memoryCard);

} // namespace kelvinbar
