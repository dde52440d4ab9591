#include "tools/SnapshotWarnings.h"

#include "tools/ProgramErrors.h"

#include <utility>

namespace kelvinbar {

void reportMissingKeys(const std::vector<SMCReading>& readings, const ReadingSelection& selection) {
    for (const std::string& key : missingKeys(readings, selection)) {
        reportError("no reading has the key " + key);
    }
}

bool reportSelection(const std::vector<SMCReading>& readings, const ReadingSelection& selection) {
    reportMissingKeys(readings, selection);
    if (selection.isEverything() || !selectedReadings(readings, selection).empty()) return true;
    reportError("no reading is selected");
    return false;
}

void SilenceReport::report(const std::vector<SilentDevice>& silent) {
    std::set<std::string> files;
    for (const SilentDevice& device : silent) {
        if (!files_.contains(device.file)) reportError("no answer from " + device.file);
        files.insert(device.file);
    }
    files_ = std::move(files);
}

} // namespace kelvinbar
