#include "tools/formats/WaybarFormat.h"

#include "base/Text.h"
#include "store/MenuBarText.h"
#include "tools/JsonReading.h"
#include "tools/PrintedText.h"

namespace kelvinbar {

namespace {

std::string asMarkup(std::string_view text) {
    const std::string withoutEntities = replacedAll(printableText(text), "&", "&amp;");
    return replacedAll(replacedAll(withoutEntities, "<", "&lt;"), ">", "&gt;");
}

std::string waybarLine(const Report& report) {
    const bool isEmpty = report.readings.empty();
    const Json line{{"text", asMarkup(trimmed(menuBarTitleText(report.readings)))},
                    {"tooltip", asMarkup(menuBarToolTipText(report.readings))},
                    {"class", isEmpty ? "empty" : "readings"}};
    return jsonText(line, -1) + "\n";
}

} // namespace

ReportWriter makeWaybarWriter(const FormatSettings& /*settings*/) { return waybarLine; }

} // namespace kelvinbar
