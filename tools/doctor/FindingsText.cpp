#include "tools/doctor/FindingsText.h"

#include "base/Text.h"

#include <algorithm>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <utility>

namespace kelvinbar {

namespace {

/// How a state is written in the document.
std::string_view word(FindingState state) {
    switch (state) {
    case FindingState::good:
        return "good";
    case FindingState::note:
        return "note";
    case FindingState::problem:
        return "problem";
    }
    return {};
}

/// What precedes a finding in the text.
std::string_view mark(FindingState state) {
    switch (state) {
    case FindingState::good:
        return "  ok  ";
    case FindingState::note:
        return "  -   ";
    case FindingState::problem:
        return "  !!  ";
    }
    return {};
}

std::size_t countOf(std::span<const FindingSection> sections, FindingState state) {
    std::size_t count = 0;
    for (const FindingSection& section : sections) {
        count += static_cast<std::size_t>(std::ranges::count(section.findings, state, &Finding::state));
    }
    return count;
}

std::string summary(std::span<const FindingSection> sections) {
    const std::size_t problems = countOf(sections, FindingState::problem);
    if (problems == 0) return "Nothing is wrong.\n";
    return std::to_string(problems) + (problems == 1 ? " problem, marked !!\n" : " problems, marked !!\n");
}

/// Texts from drivers and files could end a line or move the cursor.
std::string oneLine(std::string_view text) {
    std::string line;
    line.reserve(text.size());
    for (const char character : isValidUtf8(text) ? text : std::string_view("(not legible)")) {
        const bool isControl = static_cast<unsigned char>(character) < 0x20 || character == '\x7F';
        line.push_back(isControl ? ' ' : character);
    }
    return line;
}

void append(std::string& text, const Finding& finding) {
    text.append(mark(finding.state)).append(oneLine(finding.subject)).append(": ");
    text.append(oneLine(finding.found)).append("\n");
    if (!finding.advice.empty()) text.append("      -> ").append(oneLine(finding.advice)).append("\n");
}

nlohmann::ordered_json jsonOf(const Finding& finding) {
    nlohmann::ordered_json object{
        {"subject", finding.subject}, {"state", word(finding.state)}, {"found", finding.found}};
    if (!finding.advice.empty()) object["advice"] = finding.advice;
    return object;
}

nlohmann::ordered_json jsonOf(const FindingSection& section) {
    auto findings = nlohmann::ordered_json::array();
    for (const Finding& finding : section.findings) findings.push_back(jsonOf(finding));
    return {{"title", section.title}, {"findings", std::move(findings)}};
}

} // namespace

std::string findingsText(const FindingsReport& report) {
    std::string text(report.program);
    text.append(" --doctor\n").append(summary(report.sections));
    for (const FindingSection& section : report.sections) {
        text.append("\n").append(section.title).append("\n");
        for (const Finding& finding : section.findings) append(text, finding);
    }
    return text;
}

std::string findingsJson(const FindingsReport& report) {
    nlohmann::ordered_json document{{"schema", findingsSchemaVersion},
                                    {"program", report.program},
                                    {"problems", countOf(report.sections, FindingState::problem)},
                                    {"sections", nlohmann::ordered_json::array()}};
    for (const FindingSection& section : report.sections) document["sections"].push_back(jsonOf(section));
    return document.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

} // namespace kelvinbar
