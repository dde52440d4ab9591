// The table of rules in docs/linux.md is the one in the program.

#include "base/Text.h"
#include "machines/linux/naming/SensorRules.h"

#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar {

namespace {

std::string_view nameOf(SensorKind kind) {
    switch (kind) {
    case SensorKind::temperature:
        return "temperature";
    case SensorKind::voltage:
        return "voltage";
    case SensorKind::current:
        return "current";
    case SensorKind::power:
        return "power";
    case SensorKind::energy:
        return "energy";
    case SensorKind::fan:
        return "fan";
    case SensorKind::charge:
        return "charge";
    case SensorKind::count:
        return "count";
    case SensorKind::duration:
        return "duration";
    case SensorKind::percent:
        return "percent";
    case SensorKind::flag:
        return "flag";
    case SensorKind::text:
        return "text";
    default:
        return "a kind without a name here";
    }
}

std::string code(std::string_view text) {
    return text.empty() ? std::string() : std::string("`").append(replacedAll(text, "|", "\\|")).append("`");
}

std::string rowOf(const SensorRule& rule) {
    std::string row = "| ";
    for (const std::string& cell : {code(rule.chips), std::string(nameOf(rule.kind)), code(rule.labels),
                                    code(rule.keys), code(rule.type), code(rule.coveredBy)}) {
        row.append(cell).append(" | ");
    }
    row.pop_back();
    return row;
}

std::vector<std::string> documentedRows() {
    std::ifstream document(KELVINBAR_ROOT "/docs/linux.md");
    std::vector<std::string> rows;
    bool isInTable = false;
    for (std::string line; std::getline(document, line);) {
        if (line.starts_with("| Chips")) isInTable = true;
        if (line.empty()) isInTable = false;
        if (isInTable && line.starts_with("| `")) rows.push_back(line);
    }
    return rows;
}

TEST(SensorRulesDocument, HasTheRulesOfTheProgramInTheirOrder) {
    std::vector<std::string> rows;
    for (const SensorRule& rule : sensorRules()) rows.push_back(rowOf(rule));
    EXPECT_EQ(documentedRows(), rows);
}

} // namespace

} // namespace kelvinbar
