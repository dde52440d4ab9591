#include "tools/formats/JsonFormat.h"

#include "base/Calendar.h"
#include "tools/JsonReading.h"

namespace kelvinbar {

namespace {

std::string jsonDocument(const Report& report, TimePrecision precision, int indentation) {
    Json document{{"schema", jsonSchemaVersion},
                  {"machine", report.machine},
                  {"time", iso8601Text(report.time, precision)},
                  {"status", report.status},
                  {"readings", Json::array()}};
    for (const SMCReading& reading : report.readings) document["readings"].push_back(jsonOf(reading));
    return jsonText(document, indentation) + "\n";
}

} // namespace

ReportWriter makeJsonWriter(const FormatSettings& settings) {
    return
        [precision = settings.precision](const Report& report) { return jsonDocument(report, precision, 2); };
}

ReportWriter makeJsonLineWriter(const FormatSettings& settings) {
    return [precision = settings.precision](const Report& report) {
        return jsonDocument(report, precision, -1);
    };
}

} // namespace kelvinbar
