#include "tools/IdentificationReport.h"

#include "base/Text.h"
#include "machines/linux/naming/LabelStatement.h"
#include "tools/JsonReading.h"
#include "tools/PrintedText.h"
#include "tools/formats/JsonFormat.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <string_view>
#include <vector>

namespace kelvinbar {

namespace {

using Responses = std::vector<Response>;
using ResponseRow = std::array<std::string, 5>;

Responses likelyResponses(const Responses& ranked) {
    Responses likely;
    std::ranges::copy_if(ranked, std::back_inserter(likely),
                         [](const Response& response) { return response.score >= likelyScore; });
    return likely;
}

std::string withUnit(std::string text, std::string_view unit) {
    return unit.empty() ? text : text.append(" ").append(unit);
}

ResponseRow responseRow(const Response& response, const SMCReading& reading) {
    const std::string& unit = reading.unit;
    return {std::to_string(std::lround(100 * response.score)) + " %",
            withUnit(changeText(response.change, unit), unit),
            withUnit(numberText(response.rest, unit), unit), printableText(reading.name),
            printableText(response.key)};
}

std::string columnsText(const std::vector<ResponseRow>& rows) {
    constexpr std::size_t numberColumns = 3;
    const auto widths = columnWidths(rows);
    std::string text;
    for (const ResponseRow& row : rows) {
        for (std::size_t column = 0; column + 1 < row.size(); ++column) {
            const bool isAlignedRight = column < numberColumns;
            const auto& field = row.at(column);
            text.append(isAlignedRight ? rightAligned(field, widths.at(column))
                                       : padded(field, widths.at(column)));
            text.append("  ");
        }
        text.append(row.back()).append("\n");
    }
    return text;
}

std::string responsesText(const Responses& named, const IdentificationRecord& record) {
    std::vector<ResponseRow> rows{{"Score", "Change", "At rest", "Name", "Key"}};
    for (const Response& response : named) {
        rows.push_back(responseRow(response, record.readings.at(response.key)));
    }
    return columnsText(rows);
}

/// Empty if none of the readings can be named.
std::string configurationText(const Responses& named, const IdentificationRecord& record) {
    std::string statements;
    for (const Response& response : named) {
        const auto feature = labelledFeature(response.key);
        if (!feature) continue;
        const std::string& name = record.readings.at(response.key).name;
        statements.append("\n").append(labelStatement(*feature, printableText(name)));
    }
    if (statements.empty()) return {};
    return "\nTo name one of them, put its lines into a file in /etc/sensors.d, with your name for it:\n" +
           statements;
}

std::string_view wordFor(IdentificationEnd end) {
    switch (end) {
    case IdentificationEnd::planned:
        return "planned";
    case IdentificationEnd::interrupted:
        return "interrupted";
    case IdentificationEnd::nearLimit:
        return "near critical limit";
    case IdentificationEnd::silentSensor:
        return "no answer";
    case IdentificationEnd::noLoad:
        return "no load";
    }
    return {};
}

Json jsonOfResponse(const Response& response, const SMCReading& reading) {
    Json object{{"key", response.key},     {"name", reading.name},   {"category", rawValue(reading.category)},
                {"unit", reading.unit},    {"rest", response.rest},  {"change", response.change},
                {"noise", response.noise}, {"score", response.score}};
    if (response.correlation) object["correlation"] = *response.correlation;
    if (const auto feature = labelledFeature(response.key)) {
        object["sensorsChip"] = feature->chip;
        object["sensorsFeature"] = feature->feature;
    }
    return object;
}

} // namespace

std::string identificationText(const IdentificationRecord& record) {
    const Responses likely = likelyResponses(rankedResponses(record.recording));
    if (likely.empty()) return "No reading responded clearly.\n";
    const Responses named(
        likely.begin(),
        std::next(likely.begin(), static_cast<std::ptrdiff_t>(std::min(likely.size(), mostNamedReadings))));
    std::string text = responsesText(named, record);
    if (likely.size() > named.size()) {
        text.append("and ").append(std::to_string(likely.size() - named.size())).append(" more\n");
    }
    return text + configurationText(named, record);
}

std::string identificationJson(const IdentificationRecord& record) {
    const bool hasLoad =
        std::ranges::find(record.recording.phases, LoadPhase::load) != record.recording.phases.end();
    Json document{{"schema", jsonSchemaVersion},
                  {"mode", hasLoad ? "load" : "by hand"},
                  {"end", wordFor(record.end)},
                  {"ranking", Json::array()}};
    for (const Response& response : rankedResponses(record.recording)) {
        document["ranking"].push_back(jsonOfResponse(response, record.readings.at(response.key)));
    }
    return jsonText(document, 2) + "\n";
}

} // namespace kelvinbar
