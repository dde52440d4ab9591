#include "tools/formats/TextFormat.h"

#include "store/SnapshotExport.h"

namespace kelvinbar {

ReportWriter makeTextWriter(const FormatSettings& settings) {
    const bool endsItsLine = settings.isTerminal || settings.isSeries;
    const auto textOf = settings.isOrdered ? snapshotTextInOrder : snapshotText;
    return [endsItsLine, textOf](const Report& report) {
        std::string text = textOf(report.readings, report.time);
        if (endsItsLine) text.append("\n");
        return text;
    };
}

} // namespace kelvinbar
