#include "catalogue/KeyTable.h"

#include "base/NumberText.h"
#include "base/Text.h"
#include "catalogue/KeyNamingRules.h"
#include "catalogue/KnownKey.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <span>
#include <string>
#include <string_view>

namespace kelvinbar {

namespace {

/// Drives that the table lists under the name of their naming rule. "TH0P" is not among them: the first drive
/// sensor is that of the bay.
constexpr std::array<std::string_view, 8> drives{
    "TH1P", "TH2P", "TN0D", "TN0P", "TN1D", "TN1P", "TS0P", "TS1P",
};

using Definitions = std::vector<SMCKeyDefinition>;

void addRows(Definitions& table, std::span<const KnownKey> rows) {
    for (const KnownKey& row : rows)
        table.push_back({std::string(row.key), std::string(row.name), row.category, std::string(row.unit)});
}

void addRun(Definitions& table, const NumberedKeys& keys) {
    const KnownKey& row = keys.row;
    for (unsigned number = keys.first; number <= keys.last; ++number) {
        const std::string key = replacedAll(row.key, "#", hexadecimalText(number));
        table.push_back({key, numberedName(row, number), row.category, std::string(row.unit)});
    }
}

void addRuns(Definitions& table, std::span<const NumberedKeys> runs) {
    for (const NumberedKeys& keys : runs) addRun(table, keys);
}

void addDrives(Definitions& table) {
    for (const std::string_view key : drives)
        table.push_back({std::string(key), storageName(key), SMCCategory::storage, std::string(celsius)});
}

} // namespace

std::vector<SMCKeyDefinition> makeDefinitions() {
    Definitions table;
    for (const auto rows : {thermalKeys(), powerKeys(), voltageKeys(), currentKeys(), batteryKeys(),
                            boardThermalKeys(), otherKeys()}) {
        addRows(table, rows);
    }
    for (const auto runs : {numberedTemperatures(), fanFields(), batteryFields(), otherNumberedKeys()}) {
        addRuns(table, runs);
    }
    addDrives(table);
    std::ranges::sort(table, {}, &SMCKeyDefinition::key);
    // Two rows for one key would leave its name to chance.
    assert(std::ranges::adjacent_find(table, {}, &SMCKeyDefinition::key) == table.end());
    return table;
}

} // namespace kelvinbar
