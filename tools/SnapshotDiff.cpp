#include "tools/SnapshotDiff.h"

#include "base/NaturalOrder.h"
#include "base/Text.h"
#include "store/ReadingOrder.h"
#include "tools/JsonReading.h"
#include "tools/PrintedText.h"
#include "tools/formats/JsonFormat.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <string_view>

namespace kelvinbar {

namespace {

bool haveSameValue(const ReadingPair& pair, double tolerance) {
    const auto& [before, after] = pair;
    if (before.unit != after.unit) return false;
    if (!before.numericValue || !after.numericValue) return before.displayValue() == after.displayValue();
    return std::fabs(*after.numericValue - *before.numericValue) <= tolerance;
}

std::vector<SMCReading> withoutKeysOf(const std::vector<SMCReading>& others,
                                      const std::vector<SMCReading>& readings) {
    std::vector<SMCReading> missing;
    for (const SMCReading* const reading : sortedByKey(readings)) {
        const bool isInOthers = std::ranges::find(others, reading->key, &SMCReading::key) != others.end();
        if (!isInOthers) missing.push_back(*reading);
    }
    return missing;
}

std::vector<ReadingPair> commonReadings(const std::vector<SMCReading>& before,
                                        const std::vector<SMCReading>& after) {
    std::vector<ReadingPair> pairs;
    for (const SMCReading* const earlier : sortedByKey(before)) {
        const auto later = std::ranges::find(after, earlier->key, &SMCReading::key);
        if (later != after.end()) pairs.push_back({*earlier, *later});
    }
    return pairs;
}

/// Mark, key, name, and what differs.
using DiffRow = std::array<std::string, 4>;

/// The number of the reading after minus that before, with its sign and unit; empty where there is none.
std::string differenceText(const ReadingPair& pair) {
    const auto& [before, after] = pair;
    if (!before.numericValue || !after.numericValue || before.unit != after.unit) return {};
    return " (" + changeText(*after.numericValue - *before.numericValue, before.unit) + ")";
}

std::string arrow(std::string_view before, std::string_view after) {
    return std::string(before).append(" → ").append(after);
}

void addRows(std::vector<DiffRow>& rows, std::string_view mark, const std::vector<SMCReading>& readings) {
    for (const SMCReading& reading : readings) {
        rows.push_back({std::string(mark), reading.key, reading.name, reading.displayValue()});
    }
}

std::vector<DiffRow> diffRows(const SnapshotDiff& diff) {
    std::vector<DiffRow> rows;
    addRows(rows, "+", diff.appeared);
    addRows(rows, "-", diff.vanished);
    for (const auto& [before, after] : diff.renamed) {
        rows.push_back({"=", after.key, after.name, "was " + before.name});
    }
    for (const ReadingPair& pair : diff.changed) {
        const auto& [before, after] = pair;
        rows.push_back({"~", after.key, after.name,
                        arrow(before.displayValue(), after.displayValue()) + differenceText(pair)});
    }
    std::ranges::stable_sort(rows, comesBeforeNaturally, [](const DiffRow& row) { return row[1]; });
    return rows;
}

Json jsonOfPairs(const std::vector<ReadingPair>& pairs) {
    Json list = Json::array();
    for (const auto& [before, after] : pairs) {
        list.push_back({{"key", after.key}, {"before", jsonOf(before)}, {"after", jsonOf(after)}});
    }
    return list;
}

Json jsonOfReadings(const std::vector<SMCReading>& readings) {
    Json list = Json::array();
    for (const SMCReading& reading : readings) list.push_back(jsonOf(reading));
    return list;
}

} // namespace

SnapshotDiff diffOf(const std::vector<SMCReading>& before, const std::vector<SMCReading>& after,
                    double tolerance) {
    SnapshotDiff diff{.appeared = withoutKeysOf(before, after),
                      .vanished = withoutKeysOf(after, before),
                      .renamed = {},
                      .changed = {}};
    for (const ReadingPair& pair : commonReadings(before, after)) {
        if (pair.before.name != pair.after.name) diff.renamed.push_back(pair);
        if (!haveSameValue(pair, tolerance)) diff.changed.push_back(pair);
    }
    return diff;
}

std::string diffText(const SnapshotDiff& diff) {
    std::vector<DiffRow> rows = diffRows(diff);
    for (DiffRow& row : rows) {
        for (std::string& field : row) field = printableText(field);
    }
    const auto widths = columnWidths(rows);
    std::string text;
    for (const DiffRow& row : rows) {
        text.append(row[0]).append(" ").append(padded(row[1], widths[1])).append("  ");
        text.append(padded(row[2], widths[2])).append("  ").append(row[3]).append("\n");
    }
    return text;
}

std::string diffJson(const SnapshotDiff& diff) {
    const Json document{{"schema", jsonSchemaVersion},
                        {"appeared", jsonOfReadings(diff.appeared)},
                        {"vanished", jsonOfReadings(diff.vanished)},
                        {"renamed", jsonOfPairs(diff.renamed)},
                        {"changed", jsonOfPairs(diff.changed)}};
    return jsonText(document, 2) + "\n";
}

} // namespace kelvinbar
