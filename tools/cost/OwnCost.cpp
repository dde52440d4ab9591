#include "tools/cost/OwnCost.h"

#include "tools/cost/OwnReadings.h"

#include <string_view>
#include <utility>
#include <variant>

namespace kelvinbar {

namespace {

/// Empty where nobody expects an answer.
std::string_view failureText(NoAnswer reason) {
    switch (reason) {
    case NoAnswer::cannotAsk:
    case NoAnswer::notRunning:
        return {};
    case NoAnswer::unreachable:
        return "the session bus cannot be reached";
    case NoAnswer::silent:
        return "the tray program does not answer";
    }
    return {};
}

} // namespace

ProgramCost costOfThisProgram(const CostMeter& meter, std::optional<std::size_t> accesses) {
    ProgramCost cost = programCost(meter.cost());
    cost.accessesOfLastPass = accesses;
    return cost;
}

OwnCost::OwnCost(std::function<TrayAnswer()> ask, std::function<void(const std::string&)> report)
    : ask_(std::move(ask)), report_(std::move(report)) {}

std::vector<SMCReading> OwnCost::readings(std::optional<std::size_t> accesses) {
    if (subject_ != Subject::thisProgram) {
        const TrayAnswer answer = ask_();
        if (subject_ == Subject::unknown) choose(answer);
        if (subject_ == Subject::trayProgram) return readingsOfTray(answer);
    }
    return ownReadings(costOfThisProgram(meter_, accesses), "console program");
}

void OwnCost::choose(const TrayAnswer& answer) {
    const auto* const reason = std::get_if<NoAnswer>(&answer);
    subject_ = reason == nullptr ? Subject::trayProgram : Subject::thisProgram;
    const std::string_view failure = reason == nullptr ? "" : failureText(*reason);
    if (failure.empty()) return;
    report_(std::string(failure).append("; what is printed is the cost of this program"));
}

/// Says once that there is no answer, until there has been one again.
std::vector<SMCReading> OwnCost::readingsOfTray(const TrayAnswer& answer) {
    const auto* const cost = std::get_if<ProgramCost>(&answer);
    const bool wasAway = std::exchange(isAway_, cost == nullptr);
    if (cost != nullptr) return ownReadings(*cost, "tray program");
    if (!wasAway) report_("the tray program does not answer any more; its cost is left out until it does");
    return {};
}

} // namespace kelvinbar
