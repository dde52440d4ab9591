#include "tools/doctor/OwnCostFindings.h"

#include "tools/cost/OwnReadings.h"

#include <string>
#include <variant>

namespace kelvinbar {

namespace {

constexpr auto subject = "program";

Finding findingWithout(NoAnswer reason) {
    switch (reason) {
    case NoAnswer::cannotAsk:
        return {.subject = subject,
                .state = FindingState::note,
                .found = "this one, since the tray program can be asked with libsystemd only",
                .advice = "Install the package libsystemd0"};
    case NoAnswer::notRunning:
        return {
            .subject = subject, .state = FindingState::note, .found = "this one, since no tray program runs"};
    case NoAnswer::unreachable:
        return {.subject = subject,
                .state = FindingState::problem,
                .found = "this one, since the session bus cannot be reached",
                .advice = "Run it inside the session of the desktop"};
    case NoAnswer::silent:
        return {.subject = subject,
                .state = FindingState::problem,
                .found = "this one, since the tray program does not answer",
                .advice = "If the tray program hangs, end it and start it again"};
    }
    return {};
}

} // namespace

FindingSection ownCostFindings(const TrayAnswer& answer, const ProgramCost& own) {
    const auto* const cost = std::get_if<ProgramCost>(&answer);
    FindingSection section{.title = std::string(ownCategoryTitle), .findings = {}};
    section.findings.push_back(cost != nullptr ? Finding{.subject = subject, .found = "the tray program"}
                                               : findingWithout(std::get<NoAnswer>(answer)));
    for (const SMCReading& reading : ownReadings(cost != nullptr ? *cost : own, {})) {
        section.findings.push_back({.subject = reading.name, .found = reading.displayValue()});
    }
    return section;
}

} // namespace kelvinbar
