#include "store/SnapshotExport.h"

#include "base/Calendar.h"
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

std::string snapshotText(const std::vector<SMCReading>& readings,
                         std::chrono::system_clock::time_point time) {
    return textOfLines(sortedByKey(readings), time);
}

std::string snapshotTextInOrder(const std::vector<SMCReading>& readings,
                                std::chrono::system_clock::time_point time) {
    ReadingPointers pointers;
    pointers.reserve(readings.size());
    for (const SMCReading& reading : readings) pointers.push_back(&reading);
    return textOfLines(pointers, time);
}

} // namespace kelvinbar
