#include "machines/linux/doctor/ConfigurationFindings.h"

#include "machines/linux/files/SystemFile.h"

namespace kelvinbar {

namespace {

Finding preferencesFinding(const std::filesystem::path& file) {
    Finding finding{.subject = "preferences", .found = file.native()};
    if (file.empty()) {
        finding.state = FindingState::problem;
        finding.found = "have no place";
        finding.advice = "Set HOME or XDG_CONFIG_HOME, so that pins and settings can be kept";
    } else if (!isThere(file)) {
        finding.state = FindingState::note;
        finding.found.append(", not written yet");
    } else if (!OpenFile(openRegularFile(file)).isOpen()) {
        finding.state = FindingState::problem;
        finding.found.append(" cannot be read");
        finding.advice = "Move it away or make it a regular file that you may read and write";
    }
    return finding;
}

} // namespace

std::vector<Finding> configurationFindings(std::span<const SourceReport> reports,
                                           const std::filesystem::path& preferences) {
    std::vector<Finding> findings;
    for (const SourceReport& report : reports) {
        if (report.configuration.empty()) continue;
        findings.push_back({.subject = "configuration of " + report.name, .found = report.configuration});
    }
    findings.push_back(preferencesFinding(preferences));
    return findings;
}

} // namespace kelvinbar
