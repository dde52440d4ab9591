#include "machines/linux/doctor/ConfigurationFindings.h"

#include "machines/linux/files/SystemFile.h"

#include <cstddef>
#include <string>
#include <utility>

namespace kelvinbar {

namespace {

/// What is wrong in the files; the first error is told.
Finding errorsFinding(const std::string& subject, const std::vector<std::string>& errors) {
    std::string found = errors.front();
    const std::size_t others = errors.size() - 1;
    if (others > 0) {
        found.append(", and ")
            .append(std::to_string(others))
            .append(others == 1 ? " more error" : " more errors");
    }
    return {.subject = subject,
            .state = FindingState::problem,
            .found = std::move(found),
            .advice = "Correct the line; what libsensors cannot read does not count"};
}

/// Without files, nobody misses what refuses them.
Finding refusalFinding(const std::string& subject, const ConfigurationReport& configuration) {
    if (!configuration.hasFiles) {
        return {.subject = subject,
                .state = FindingState::note,
                .found = configuration.description,
                .advice = "Install the package libsensors5 if you want to name sensors in /etc/sensors.d"};
    }
    return {.subject = subject,
            .state = FindingState::problem,
            .found = configuration.description,
            .advice =
                "Install or repair the package libsensors5; until then /etc/sensors3.conf and the files "
                "in /etc/sensors.d do not count"};
}

void appendConfiguration(std::vector<Finding>& findings, const SourceReport& report) {
    const ConfigurationReport& configuration = report.configuration;
    const std::string subject = "configuration of " + report.name;
    if (configuration.description.empty()) return;
    findings.push_back(configuration.isUsed ? Finding{.subject = subject, .found = configuration.description}
                                            : refusalFinding(subject, configuration));
    if (!configuration.errors.empty()) {
        findings.push_back(errorsFinding(subject + ", errors", configuration.errors));
    }
}

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
    for (const SourceReport& report : reports) appendConfiguration(findings, report);
    findings.push_back(preferencesFinding(preferences));
    return findings;
}

} // namespace kelvinbar
