#include "tools/formats/CsvFormat.h"

#include "base/Calendar.h"
#include "tools/PrintedText.h"
#include "tools/cost/OwnReadings.h"

#include <algorithm>
#include <initializer_list>
#include <vector>

namespace kelvinbar {

namespace {

std::string quotedIfNeeded(std::string_view field) {
    std::string text = printableText(field);
    if (text.find_first_of(",\"") == std::string::npos) return text;
    std::string quoted = "\"";
    for (const char character : text) quoted.append(character == '"' ? 2 : 1, character);
    return quoted.append("\"");
}

std::string csvLine(const std::vector<std::string>& fields) {
    std::string line;
    for (const std::string& field : fields) {
        line.append(line.empty() ? "" : ",").append(quotedIfNeeded(field));
    }
    return line.append("\n");
}

std::string csvNumber(const SMCReading& reading) {
    return reading.numericValue ? shortestText(*reading.numericValue) : std::string();
}

std::string csvList(const Report& report) {
    std::string text =
        csvLine({"key", "name", "category", "type", "value", "number", "unit", "raw", "status"});
    for (const SMCReading& reading : report.readings) {
        text.append(csvLine({reading.key, reading.name, std::string(categoryTitle(reading)), reading.type,
                             reading.value, csvNumber(reading), reading.unit, reading.raw, reading.status}));
    }
    return text;
}

/// A series: a line for each report, under the readings of the first that has any.
class CsvSeries {
  public:
    explicit CsvSeries(TimePrecision precision) : precision_(precision) {}

    std::string line(const Report& report) {
        if (keys_.empty() && report.readings.empty()) return {};
        std::string text = keys_.empty() ? begin(report) : "";
        std::vector<std::string> fields{iso8601Text(report.time, precision_)};
        for (const std::string& key : keys_) fields.push_back(cell(report, key));
        return text.append(csvLine(fields));
    }

  private:
    std::string begin(const Report& report) {
        std::vector<std::string> headings{"time"};
        for (const SMCReading& reading : report.readings) {
            keys_.push_back(reading.key);
            headings.push_back(heading(report, reading));
        }
        return csvLine(headings);
    }

    /// Names of a controller's readings may repeat; keys do not.
    static std::string heading(const Report& report, const SMCReading& reading) {
        const bool isUnique = std::ranges::count(report.readings, reading.name, &SMCReading::name) == 1;
        std::string text =
            isUnique && !reading.name.empty() ? reading.name : reading.name + " " + reading.key;
        if (isOwnReading(reading)) text.append(" of the ").append(reading.type);
        if (!reading.unit.empty()) text.append(" (").append(reading.unit).append(")");
        return text;
    }

    static std::string cell(const Report& report, const std::string& key) {
        const auto found = std::ranges::find(report.readings, key, &SMCReading::key);
        if (found == report.readings.end()) return {};
        return found->numericValue ? csvNumber(*found) : found->value;
    }

    TimePrecision precision_;
    std::vector<std::string> keys_;
};

} // namespace

ReportWriter makeCsvWriter(const FormatSettings& settings) {
    if (!settings.isSeries) return csvList;
    return [series = CsvSeries(settings.precision)](const Report& report) mutable {
        return series.line(report);
    };
}

} // namespace kelvinbar
