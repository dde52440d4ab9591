#include "store/SnapshotExport.h"

#include "base/AddressMask.h"
#include "base/Calendar.h"
#include "sensors/RawReading.h"
#include "store/ReadingOrder.h"

#include <utility>

namespace kelvinbar {

namespace {

using ReadingPointers = std::vector<const SMCReading*>;

/// Keys, types and names of a controller's readings come from the catalogue, and are never addresses.
SMCReading maskedReading(SMCReading reading, AddressMask& mask) {
    if (!isSelfNamedKey(reading.key)) return reading;
    reading.key = mask.masked(reading.key);
    reading.type = mask.masked(reading.type);
    reading.name = mask.masked(reading.name);
    return reading;
}

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
    AddressMask mask;
    for (SMCReading& reading : readings) reading = maskedReading(std::move(reading), mask);
}

std::string snapshotText(const std::vector<SMCReading>& readings,
                         std::chrono::system_clock::time_point time) {
    std::vector<SMCReading> masked;
    masked.reserve(readings.size());
    for (const SMCReading* const reading : sortedByKey(readings)) masked.push_back(*reading);
    maskAddresses(masked);
    // Sorted again: a mask can stand at another place than its address.
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
