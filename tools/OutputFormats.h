#pragma once

#include "base/Calendar.h"
#include "tools/Report.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

/// The formats in which readings are printed. A format is a function that makes a writer, in a file of its
/// own below formats/; this is the table of them.
namespace kelvinbar {

/// What a writer knows of where its text goes.
struct FormatSettings {
    bool isTerminal = false;                          ///< somebody looks at the output
    bool isColoured = false;                          ///< and wants colours
    bool isSeries = false;                            ///< more reports follow the first
    bool isOrdered = false;                           ///< the user has chosen the order of the readings
    TimePrecision precision = TimePrecision::seconds; ///< that tells the reports of a series apart
};

/// Returns a report as text. All text of one series comes from one writer, which may remember what it wrote
/// before, such as a heading. Main thread.
using ReportWriter = std::function<std::string(const Report&)>;

/// How a format repeats.
enum class Repetition : std::uint8_t {
    lines, ///< one report is one line, appended to those before
    pages, ///< one report is several lines, drawn over those before on a terminal
    never, ///< one report is a whole document
};

struct OutputFormat {
    std::string_view name;    ///< on the command line
    std::string_view summary; ///< for its help
    Repetition repetition = Repetition::never;
    ReportWriter (*makeWriter)(const FormatSettings& settings) = nullptr;
};

/// In the order in which help lists them; the first is the usual one. Static lifetime.
std::span<const OutputFormat> outputFormats();

/// What --title and --summary print. Static lifetime.
const OutputFormat& titleFormat();
const OutputFormat& summaryFormat();

/// The format of this name; null if there is none.
const OutputFormat* findOutputFormat(std::string_view name);

} // namespace kelvinbar
