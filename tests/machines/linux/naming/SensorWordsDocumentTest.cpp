// The tables in docs/linux.md are the same as those in the program.

#include "base/Text.h"
#include "catalogue/SMCCategory.h"
#include "machines/linux/naming/SensorWords.h"

#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::sensor_words_document_test {

namespace {

std::string code(std::string_view text) {
    return std::string("`").append(replacedAll(text, "|", "\\|")).append("`");
}

std::string kindName(std::optional<SensorKind> kind) {
    if (!kind) return "any";
    switch (*kind) {
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
    case SensorKind::frequency:
        return "frequency";
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

std::string_view tellApartName(TellApart way) {
    switch (way) {
    case TellApart::byNumber:
        return "number";
    case TellApart::byModel:
        return "model";
    case TellApart::byInterface:
        return "interface";
    case TellApart::bySocket:
        return "socket";
    case TellApart::bySlot:
        return "slot";
    }
    return "";
}

std::string rowOf(const std::vector<std::string>& cells) {
    std::string row = "|";
    for (const std::string& cell : cells) row.append(" ").append(cell).append(cell.empty() ? "|" : " |");
    return row;
}

std::string rowOf(const DeviceRow& row) {
    return rowOf({code(row.chips), std::string(row.words), std::string(rawValue(row.category)),
                  std::string(tellApartName(row.tellApart)), row.hasWholeLabels ? "yes" : ""});
}

std::string rowOf(const LabelRow& row) {
    const std::string words = row.words == "*" ? "(the label)" : std::string(row.words);
    return rowOf({code(row.chips), kindName(row.kind), code(row.labels), words, row.isWhole ? "yes" : ""});
}

std::string rowOf(const CategoryRow& row) {
    return rowOf({code(row.chips), kindName(row.kind), code(row.names), std::string(rawValue(row.category))});
}

/// The rows below the header row that begins with `heading`.
std::vector<std::string> documentedRows(std::string_view heading) {
    std::ifstream document(KELVINBAR_ROOT "/docs/linux.md");
    std::vector<std::string> rows;
    bool isInTable = false;
    for (std::string line; std::getline(document, line);) {
        if (line.starts_with(heading)) isInTable = true;
        if (line.empty()) isInTable = false;
        if (isInTable && line.starts_with("| `")) rows.push_back(line);
    }
    return rows;
}

template <typename Rows>
std::vector<std::string> rowsOf(const Rows& rows) {
    std::vector<std::string> texts;
    for (const auto& row : rows) texts.push_back(rowOf(row));
    return texts;
}

TEST(SensorWordsDocument, HasTheDevicesOfTheProgramInTheirOrder) {
    EXPECT_EQ(documentedRows("| Chips | Device"), rowsOf(deviceRows()));
}

TEST(SensorWordsDocument, HasTheLabelsOfTheProgramInTheirOrder) {
    EXPECT_EQ(documentedRows("| Chips | Kind | Labels"), rowsOf(labelRows()));
}

TEST(SensorWordsDocument, HasTheCategoriesOfTheProgramInTheirOrder) {
    EXPECT_EQ(documentedRows("| Chips | Kind | Names"), rowsOf(categoryRows()));
}

} // namespace
} // namespace kelvinbar::sensor_words_document_test
