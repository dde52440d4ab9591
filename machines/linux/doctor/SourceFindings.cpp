#include "machines/linux/doctor/SourceFindings.h"

#include "machines/linux/applesmc/AppleSMCDetection.h"
#include "sensors/ReadWatch.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace kelvinbar {

namespace {

/// Where the packages put the rules; README beside them says how to install them.
constexpr std::string_view rulesFolder = "/usr/share/doc/kelvinbar-snapshot/examples";

/// How many channels are named; the rest is counted.
constexpr std::size_t mostNamed = 8;

constexpr std::array reasons{
    LeftOutReason::notPermitted, LeftOutReason::silent,  LeftOutReason::unconnected,
    LeftOutReason::unreadable,   LeftOutReason::unnamed, LeftOutReason::asleep,
    LeftOutReason::switchedOff,  LeftOutReason::ignored, LeftOutReason::repeated,
    LeftOutReason::setting,
};

std::string counted(std::size_t count, std::string_view noun) {
    return std::to_string(count).append(" ").append(noun).append(count == 1 ? "" : "s");
}

std::string ruleAdvice(std::string_view rule) {
    return std::string("Let a group read them with ")
        .append(rulesFolder)
        .append("/")
        .append(rule)
        .append("; README beside it says how, and what it gives away");
}

/// What the user can do about channels that are left out; empty if nothing is wrong.
std::string adviceAgainst(LeftOutReason reason) {
    if (reason == LeftOutReason::notPermitted) return ruleAdvice("60-kelvinbar-energy.rules");
    if (reason == LeftOutReason::silent) {
        return "Restart the machine if the device does not come back; it is left alone until it answers";
    }
    return {};
}

/// Limits and repetitions are left out in any case; their names tell nothing.
bool areNamed(LeftOutReason reason) {
    return reason != LeftOutReason::setting && reason != LeftOutReason::repeated;
}

std::string listText(const std::vector<std::string_view>& channels) {
    std::string text;
    const std::size_t named = std::min(channels.size(), mostNamed);
    for (std::size_t index = 0; index < named; ++index) {
        text.append(index == 0 ? ": " : ", ").append(channels[index]);
    }
    if (named == channels.size()) return text;
    return text.append(" and ").append(std::to_string(channels.size() - named)).append(" more");
}

void appendReason(std::vector<Finding>& findings, const SourceReport& report, LeftOutReason reason) {
    std::vector<std::string_view> channels;
    for (const LeftOutChannel& channel : report.leftOut) {
        if (channel.reason == reason) channels.emplace_back(channel.channel);
    }
    if (channels.empty()) return;
    std::string advice = adviceAgainst(reason);
    std::string found = std::to_string(channels.size()).append(" ").append(textOf(reason));
    if (areNamed(reason)) found.append(listText(channels));
    findings.push_back({.subject = report.name + ", left out",
                        .state = advice.empty() ? FindingState::note : FindingState::problem,
                        .found = std::move(found),
                        .advice = std::move(advice)});
}

Finding findingOn(const SourceReport& report) {
    if (report.devices == 0) {
        return {.subject = report.name, .state = FindingState::note, .found = "the kernel has none"};
    }
    const bool hasReadings = report.readings > 0;
    return {.subject = report.name,
            .state = hasReadings ? FindingState::good : FindingState::note,
            .found = counted(report.readings, "reading") + " of " + counted(report.devices, "device")};
}

} // namespace

std::vector<Finding> sourceFindings(std::span<const SourceReport> reports) {
    std::vector<Finding> findings;
    for (const SourceReport& report : reports) {
        findings.push_back(findingOn(report));
        for (const LeftOutReason reason : reasons) appendReason(findings, report, reason);
    }
    return findings;
}

std::vector<Finding> controllerFindings(const std::filesystem::path& root) {
    constexpr auto subject = "Apple's controller";
    const DeviceVisit visit(appleSMCDevice, LogCategory::sourceSMC);
    if (!visit.isAllowed()) return {};
    switch (appleSMCAccess(root)) {
    case AppleSMCAccess::absent:
        return {};
    case AppleSMCAccess::granted:
        return {{.subject = subject, .found = "all its keys can be listed"}};
    case AppleSMCAccess::refused:
        return {{.subject = subject,
                 .state = FindingState::problem,
                 .found = "only its temperatures and fans are shown, since the administrator alone may list "
                          "its keys",
                 .advice = ruleAdvice("60-kelvinbar-applesmc.rules")}};
    }
    return {};
}

} // namespace kelvinbar
