#pragma once

#include "catalogue/SMCCategory.h"

#include <span>
#include <string>
#include <string_view>

/// The rows from which both the table and the naming rules are made. Each key has one row, so a name, a
/// category or a unit is changed in one place. Drives have no rows: the table takes their names from the
/// rules.
///
/// The table and the rules do not always agree on a name: the table may call "TI0P" "Thunderbolt 0 Proximity"
/// where the rules have one name for all such sensors. Such a row carries both names.
///
/// Every list is sorted by key in code-unit order without repeats; the compiler checks it. All data is
/// constant and lives as long as the program. Any thread.
namespace kelvinbar {

inline constexpr std::string_view celsius = "°C";

/// One key, or the pattern of a NumberedKeys.
struct KnownKey {
    std::string_view key;  ///< four characters, trailing spaces included
    std::string_view name; ///< in the table
    SMCCategory category = SMCCategory::unknown;
    std::string_view unit; ///< as in SMCKeyDefinition
    /// What the naming function of the key's family returns, where that is not `name`. A row that the
    /// function does not cover has its own key here.
    std::string_view differingRuleName = {};

    [[nodiscard]] constexpr std::string_view ruleName() const {
        return differingRuleName.empty() ? name : differingRuleName;
    }
};

/// A run of keys that differ in one digit. '#' in the row's key stands for the digit, upper-case hexadecimal;
/// '#' in its name stands for the same number in decimal. The limits apply to the table alone: the naming
/// rules accept any digit.
struct NumberedKeys {
    KnownKey row;
    unsigned first = 0; ///< 0 to 15
    unsigned last = 0;  ///< 0 to 15, included
};

// The keys that a naming function covers, one list for each function.
std::span<const KnownKey> thermalKeys(); ///< thermalName()
std::span<const KnownKey> powerKeys();   ///< powerName()
std::span<const KnownKey> voltageKeys(); ///< voltageName()
std::span<const KnownKey> currentKeys(); ///< currentName()
std::span<const KnownKey> batteryKeys(); ///< batteryName() and batteryUnit()

/// Temperatures whose keys are abbreviations, as mainboards name their sensors. The naming rules use the key
/// as the name.
std::span<const KnownKey> boardThermalKeys();

/// Keys whose rows only the table uses.
std::span<const KnownKey> otherKeys();

/// Numbered temperatures and fan fields, in the table and in the naming rules.
std::span<const NumberedKeys> numberedTemperatures();
std::span<const NumberedKeys> fanFields();

/// What each battery reports; also the source of the units that batteryUnit() derives from a key's suffix.
std::span<const NumberedKeys> batteryFields();

/// Numbered keys whose rows only the table uses.
std::span<const NumberedKeys> otherNumberedKeys();

/// The row whose key is `key`, which may be any text; null when there is none.
const KnownKey* findRow(std::span<const KnownKey> rows, std::string_view key);

/// The row whose key is `pattern`, '#' included; null when there is none.
const KnownKey* findRow(std::span<const NumberedKeys> rows, std::string_view pattern);

/// The name of `row` with `number` in place of '#'.
std::string numberedName(const KnownKey& row, unsigned number);

} // namespace kelvinbar
