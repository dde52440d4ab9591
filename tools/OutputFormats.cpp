#include "tools/OutputFormats.h"

#include "tools/formats/CsvFormat.h"
#include "tools/formats/JsonFormat.h"
#include "tools/formats/OpenMetricsFormat.h"
#include "tools/formats/SummaryFormat.h"
#include "tools/formats/TableFormat.h"
#include "tools/formats/TextFormat.h"
#include "tools/formats/TitleFormat.h"
#include "tools/formats/WaybarFormat.h"

#include <algorithm>
#include <array>

namespace kelvinbar {

namespace {

constexpr std::array<OutputFormat, 7> formats{{
    {"text", "a snapshot that --replay and --diff read", Repetition::pages, makeTextWriter},
    {"json", "one JSON document", Repetition::never, makeJsonWriter},
    {"jsonl", "the same on one line", Repetition::lines, makeJsonLineWriter},
    {"csv", "a row a reading; with --watch a row a time and a column a reading", Repetition::lines,
     makeCsvWriter},
    {"openmetrics", "for Prometheus, in base units", Repetition::never, makeOpenMetricsWriter},
    {"table", "for people, grouped as in the panel", Repetition::pages, makeTableWriter},
    {"waybar", "the title with a tooltip and a class, as Waybar takes them", Repetition::lines,
     makeWaybarWriter},
}};

constexpr OutputFormat titleLines{"title", "", Repetition::lines, makeTitleWriter};
constexpr OutputFormat summaryLines{"summary", "", Repetition::pages, makeSummaryWriter};

} // namespace

std::span<const OutputFormat> outputFormats() { return formats; }

const OutputFormat& titleFormat() { return titleLines; }

const OutputFormat& summaryFormat() { return summaryLines; }

const OutputFormat* findOutputFormat(std::string_view name) {
    const auto* const found = std::ranges::find(formats, name, &OutputFormat::name);
    return found == formats.end() ? nullptr : found;
}

} // namespace kelvinbar
