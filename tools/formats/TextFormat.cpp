#include "tools/formats/TextFormat.h"

#include "store/SnapshotExport.h"

namespace kelvinbar {

ReportWriter makeTextWriter(const FormatSettings& settings) {
    const bool endsItsLine = settings.isTerminal || settings.isSeries;
    return [endsItsLine](const Report& report) {
        std::string text = snapshotTextInOrder(report.readings, report.time);
        if (endsItsLine) text.append("\n");
        return text;
    };
}

} // namespace kelvinbar
