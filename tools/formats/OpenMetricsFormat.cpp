#include "tools/formats/OpenMetricsFormat.h"

#include "base/Text.h"
#include "catalogue/BaseUnit.h"
#include "sensors/RawReading.h"
#include "tools/PrintedText.h"
#include "tools/cost/OwnReadings.h"

#include <map>
#include <optional>

namespace kelvinbar {

namespace {

/// A family with its samples, one a line.
struct MetricFamily {
    std::string help;
    std::string_view unit; ///< empty for none
    std::string samples;
};

/// By name.
using MetricFamilies = std::map<std::string, MetricFamily, std::less<>>;

std::string escapedLabel(std::string_view value) {
    std::string text = replacedAll(printableText(value), "\\", "\\\\");
    return replacedAll(text, "\"", "\\\"");
}

void appendLabel(std::string& labels, std::string_view name, std::string_view value) {
    labels.append(labels.empty() ? "" : ",").append(name).append("=\"");
    labels.append(escapedLabel(value)).append("\"");
}

/// The part of a self-named key that names the chip.
std::string_view chipIn(const SMCReading& reading) {
    if (!isSelfNamedKey(reading.key)) return {};
    return std::string_view(reading.key).substr(0, reading.key.rfind('/'));
}

std::string labelsOf(const SMCReading& reading) {
    std::string labels;
    appendLabel(labels, "key", reading.key);
    appendLabel(labels, "name", reading.name);
    appendLabel(labels, "category", categoryTitle(reading));
    if (isOwnReading(reading)) {
        appendLabel(labels, "program", reading.type);
        return labels;
    }
    if (const auto chip = chipIn(reading); !chip.empty()) appendLabel(labels, "chip", chip);
    return labels;
}

void addMetric(MetricFamilies& families, const std::string& name, const MetricFamily& family,
               std::string_view labels, std::string_view value) {
    auto& samples = families.try_emplace(name, family).first->second.samples;
    samples.append(name).append("{").append(labels).append("} ").append(value).append("\n");
}

void addReading(MetricFamilies& families, const SMCReading& reading) {
    std::string labels = labelsOf(reading);
    if (!reading.numericValue) {
        appendLabel(labels, "value", reading.value);
        addMetric(families, "kelvinbar_text_info",
                  {.help = "Readings that are texts", .unit = {}, .samples = {}}, labels, "1");
        return;
    }
    const auto base = baseUnitOf(reading.unit);
    if (!base) {
        addMetric(families, "kelvinbar_value", {.help = "Readings without a unit", .unit = {}, .samples = {}},
                  labels, shortestText(*reading.numericValue));
        return;
    }
    const std::string quantity(base->quantity);
    const std::string unit(base->name);
    addMetric(families, "kelvinbar_" + quantity + "_" + unit,
              {.help = "Readings in " + unit, .unit = base->name, .samples = {}}, labels,
              shortestText(base->converted(*reading.numericValue)));
}

std::string metricsText(const Report& report) {
    MetricFamilies families;
    for (const SMCReading& reading : report.readings) addReading(families, reading);
    std::string text;
    for (const auto& [name, family] : families) {
        text.append("# TYPE ").append(name).append(" gauge\n");
        if (!family.unit.empty()) {
            text.append("# UNIT ").append(name).append(" ").append(family.unit).append("\n");
        }
        text.append("# HELP ").append(name).append(" ").append(family.help).append("\n");
        text.append(family.samples);
    }
    return text.append("# EOF\n");
}

} // namespace

ReportWriter makeOpenMetricsWriter(const FormatSettings& /*settings*/) { return metricsText; }

} // namespace kelvinbar
