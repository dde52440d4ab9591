#include "store/SnapshotExport.h"

#include "base/AddressMask.h"
#include "base/Calendar.h"
#include "sensors/RawReading.h"
#include "store/ReadingOrder.h"

namespace kelvinbar {

namespace {

using ReadingPointers = std::vector<const SMCReading*>;

std::string textOfLines(const ReadingPointers& readings, std::chrono::system_clock::time_point time) {
    std::string text(snapshotTitle);
    text.append("\nGenerated: ").append(iso8601Text(time));
    text.append("\nActive keys: ").append(std::to_string(readings.size())).append("\n");
    for (const SMCReading* const reading : readings) {
        text.append("\n").append(reading->key).append("\t").append(reading->type);
        text.append("\t").append(reading->name).append("\t").append(reading->displayValue());
        text.append("\tRAW=").append(reading->raw);
    }
    return text;
}

} // namespace

void maskAddresses(std::vector<SMCReading>& readings) {
    std::vector<std::string*> texts;
    for (SMCReading& reading : readings) {
        // Keys, types and names of a controller's readings come from the catalogue, and are never addresses.
        if (!isSelfNamedKey(reading.key)) continue;
        texts.insert(texts.end(), {&reading.key, &reading.type, &reading.name});
    }
    maskAddresses(texts);
}

std::string snapshotText(const std::vector<SMCReading>& readings,
                         std::chrono::system_clock::time_point time) {
    std::vector<SMCReading> masked = readings;
    maskAddresses(masked);
    // Sorted by what is shown: a mask can stand at another place than its address.
    return textOfLines(sortedByKey(masked), time);
}

std::string snapshotTextInOrder(const std::vector<SMCReading>& readings,
                                std::chrono::system_clock::time_point time) {
    std::vector<SMCReading> masked = readings;
    maskAddresses(masked);
    ReadingPointers pointers;
    pointers.reserve(masked.size());
    for (const SMCReading& reading : masked) pointers.push_back(&reading);
    return textOfLines(pointers, time);
}

} // namespace kelvinbar
