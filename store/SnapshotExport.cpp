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
    AddressMask mask;
    for (const SMCReading* const reading : readings) {
        const SMCReading shown = maskedReading(*reading, mask);
        text.append("\n").append(shown.key).append("\t").append(shown.type);
        text.append("\t").append(shown.name).append("\t").append(shown.displayValue());
        text.append("\tRAW=").append(shown.raw);
    }
    return text;
}

} // namespace

std::string snapshotText(const std::vector<SMCReading>& readings,
                         std::chrono::system_clock::time_point time) {
    return textOfLines(sortedByKey(readings), time);
}

void maskAddresses(std::vector<SMCReading>& readings) {
    AddressMask mask;
    for (SMCReading& reading : readings) reading = maskedReading(std::move(reading), mask);
}

std::string snapshotTextInOrder(const std::vector<SMCReading>& readings,
                                std::chrono::system_clock::time_point time) {
    ReadingPointers pointers;
    pointers.reserve(readings.size());
    for (const SMCReading& reading : readings) pointers.push_back(&reading);
    return textOfLines(pointers, time);
}

} // namespace kelvinbar
