#include "tools/formats/TableFormat.h"

#include "base/Calendar.h"
#include "base/Text.h"
#include "panel/SensorRowTexts.h"
#include "panel/SensorSections.h"
#include "tools/PrintedText.h"
#include "tools/cost/OwnReadings.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace kelvinbar {

namespace {

// Control sequences of terminals (ECMA-48, "select graphic rendition").
constexpr std::string_view boldText = "\x1b[1m";
constexpr std::string_view faintText = "\x1b[2m";
constexpr std::string_view plainText = "\x1b[0m";

struct TableRow {
    std::string name;
    std::string value;
    std::string key;
};

struct TableGroup {
    std::string_view title;
    std::vector<TableRow> rows;
};

TableRow tableRow(const SMCReading& reading) {
    return {printableText(rowName(reading)), printableText(rowValue(reading)), printableText(reading.key)};
}

TableGroup tableGroup(std::string_view title, const ReadingList& readings) {
    TableGroup group{title, {}};
    for (const SMCReading* const reading : readings) group.rows.push_back(tableRow(*reading));
    return group;
}

/// What no section of the panel shows.
ReadingList readingsOutside(const std::vector<SensorSectionModel>& sections, ReadingList readings) {
    for (const SensorSectionModel& section : sections) {
        std::erase_if(readings, [&](const SMCReading* reading) {
            return std::ranges::find(section.readings, reading) != section.readings.end();
        });
    }
    return readings;
}

/// Removes them from `readings`.
ReadingList takeOwnReadings(ReadingList& readings) {
    const auto own = std::stable_partition(readings.begin(), readings.end(),
                                           [](const SMCReading* each) { return !isOwnReading(*each); });
    ReadingList taken(own, readings.end());
    readings.erase(own, readings.end());
    return taken;
}

/// Undoes the order of the panel.
void putInOrderOfReport(ReadingList& readings) { std::ranges::sort(readings); }

std::vector<TableGroup> tableGroups(const std::vector<SMCReading>& readings, bool isOrdered) {
    ReadingList visible = visibleReadings(readings, {});
    const ReadingList own = takeOwnReadings(visible);
    auto sections = sectionModels(visible);
    if (isOrdered) {
        for (SensorSectionModel& section : sections) putInOrderOfReport(section.readings);
    }
    std::vector<TableGroup> groups;
    groups.reserve(sections.size() + 2);
    for (const SensorSectionModel& section : sections) {
        groups.push_back(tableGroup(section.title, section.readings));
    }
    const ReadingList others = readingsOutside(sections, visible);
    if (!others.empty()) groups.push_back(tableGroup("OTHER", others));
    if (!own.empty()) groups.push_back(tableGroup("KELVINBAR", own));
    return groups;
}

/// The number of characters in the longest of these fields.
std::size_t widthOf(const std::vector<TableGroup>& groups, std::string TableRow::* field) {
    std::size_t width = 0;
    for (const TableGroup& group : groups) {
        for (const TableRow& row : group.rows) width = std::max(width, characterCount(row.*field));
    }
    return width;
}

std::string painted(std::string_view paint, const std::string& text, bool isColoured) {
    return isColoured ? std::string(paint).append(text).append(plainText) : text;
}

std::string tableText(const Report& report, const FormatSettings& settings) {
    const std::vector<TableGroup> groups = tableGroups(report.readings, settings.isOrdered);
    const std::size_t nameWidth = widthOf(groups, &TableRow::name);
    const std::size_t valueWidth = widthOf(groups, &TableRow::value);
    std::string text;
    if (settings.isSeries) text.append(iso8601Text(report.time)).append("\n");
    for (const TableGroup& group : groups) {
        text.append(text.empty() ? "" : "\n");
        text.append(painted(boldText, std::string(group.title), settings.isColoured)).append("\n");
        for (const TableRow& row : group.rows) {
            text.append("  ").append(padded(row.name, nameWidth)).append("  ");
            text.append(rightAligned(row.value, valueWidth)).append("  ");
            text.append(painted(faintText, row.key, settings.isColoured)).append("\n");
        }
    }
    return text;
}

} // namespace

ReportWriter makeTableWriter(const FormatSettings& settings) {
    return [settings](const Report& report) { return tableText(report, settings); };
}

} // namespace kelvinbar
