#include "tools/formats/TitleFormat.h"

#include "base/Text.h"
#include "store/MenuBarText.h"
#include "tools/PrintedText.h"

namespace kelvinbar {

ReportWriter makeTitleWriter(const FormatSettings& /*settings*/) {
    return
        [](const Report& report) { return printableText(trimmed(menuBarTitleText(report.readings))) + "\n"; };
}

} // namespace kelvinbar
