#include "catalogue/KeyNamingRules.h"

#include "base/Text.h"
#include "catalogue/KnownKey.h"

#include <array>
#include <cstddef>
#include <span>

namespace kelvinbar {

namespace {

using enum SMCCategory;

/// The rules' name of `key` by its row; the key itself if it has none.
std::string nameIn(std::span<const KnownKey> rows, std::string_view key) {
    const KnownKey* const row = findRow(rows, key);
    return std::string(row == nullptr ? key : row->ruleName());
}

/// Whether `character` can be an index: drivers count in upper-case hexadecimal digits.
bool isHexDigit(char character) {
    return isDecimalDigit(character) || (character >= 'A' && character <= 'F');
}

bool isOneOf(char character, std::string_view characters) { return contains(characters, {&character, 1}); }

using MaybeDefinition = std::optional<SMCKeyDefinition>;

SMCKeyDefinition define(std::string_view key, std::string name, SMCCategory category, std::string_view unit) {
    return {std::string(key), std::move(name), category, std::string(unit)};
}

/// The definition by the row that has '#' in place of the digit at `position`. `key` has a digit there.
MaybeDefinition numbered(std::span<const NumberedKeys> rows, std::string_view key, std::size_t position) {
    if (key.size() != 4) return std::nullopt;
    std::array<char, 4> pattern{key[0], key[1], key[2], key[3]};
    pattern.at(position) = '#';
    const KnownKey* const row = findRow(rows, std::string_view(pattern.data(), pattern.size()));
    if (row == nullptr) return std::nullopt;
    const auto number = static_cast<unsigned>(hexDigitValue(key[position]));
    return define(key, numberedName(*row, number), row->category, row->unit);
}

/// "T", component, index and a place without a row.
MaybeDefinition otherNumberedTemperature(std::string_view key) {
    switch (key[1]) {
    case 'C':
        if (!isOneOf(key[3], "EFJ")) return std::nullopt;
        return define(key, "CPU " + std::string(key), cpu, celsius);
    case 'G':
        return define(key, "GPU " + std::to_string(hexDigitValue(key[2])) + " Temperature", gpu, celsius);
    case 'M':
        return define(key, "Memory " + std::string(key), memory, celsius);
    default:
        return std::nullopt;
    }
}

MaybeDefinition numberedTemperature(std::string_view key) {
    if (!isHexDigit(key[2])) return std::nullopt;
    if (auto found = numbered(numberedTemperatures(), key, 2)) return found;
    return otherNumberedTemperature(key);
}

MaybeDefinition temperature(std::string_view key) {
    if (auto found = numberedTemperature(key)) return found;
    if (isOneOf(key[1], "NSH")) return define(key, storageName(key), storage, celsius);
    if (isOneOf(key[1], "APWLIB")) return define(key, thermalName(key), thermal, celsius);
    if (findRow(boardThermalKeys(), key) != nullptr) return define(key, std::string(key), thermal, celsius);
    return std::nullopt;
}

/// Every key that begins with "PC" or "PG"; of the others only those with a row, under their table name.
MaybeDefinition powerDefinition(std::string_view key) {
    if (key.starts_with("PC")) return define(key, powerName(key), power, "W");
    if (key.starts_with("PG")) return define(key, powerName(key), gpu, "W");
    const KnownKey* const row = findRow(powerKeys(), key);
    if (row == nullptr) return std::nullopt;
    return define(key, std::string(row->name), row->category, row->unit);
}

MaybeDefinition byFamilyPrefix(std::string_view key) {
    if (key.starts_with('P')) return powerDefinition(key);
    if (key.starts_with('V')) return define(key, voltageName(key), voltages, "V");
    if (key.starts_with('I')) return define(key, currentName(key), currents, "A");
    if (key.starts_with('B') || key.starts_with("CH") || key == "ACPW") {
        return define(key, batteryName(key), battery, batteryUnit(key));
    }
    if (key.starts_with("Fan")) return define(key, std::string(key), fans, "RPM");
    return std::nullopt;
}

/// What stands between "TN", "TS" or "TH" and the last character.
std::string storageIndex(std::string_view key) { return std::string(withoutLastCharacter(key.substr(2))); }

} // namespace

MaybeDefinition definitionByPattern(std::string_view key) {
    if (characterCount(key) != 4) return std::nullopt;
    // The rules look at single bytes. That is safe: four characters have at least four bytes, and every byte
    // that a rule asks for is ASCII.
    if (key[0] == 'T') return temperature(key);
    if (key[0] == 'F' && isDecimalDigit(key[1])) return numbered(fanFields(), key, 1);
    return byFamilyPrefix(key);
}

std::string thermalName(std::string_view key) { return nameIn(thermalKeys(), key); }

std::string storageName(std::string_view key) {
    if (key.starts_with("TN")) {
        return "NVMe " + storageIndex(key) + (key.ends_with('D') ? " Die" : " Proximity");
    }
    if (key.starts_with("TS")) return "SATA " + storageIndex(key) + " Proximity";
    if (key.starts_with("TH")) return "Drive " + storageIndex(key) + " Proximity";
    return std::string(key);
}

std::string powerName(std::string_view key) { return nameIn(powerKeys(), key); }

std::string voltageName(std::string_view key) { return nameIn(voltageKeys(), key); }

std::string currentName(std::string_view key) { return nameIn(currentKeys(), key); }

std::string batteryName(std::string_view key) { return nameIn(batteryKeys(), key); }

std::string_view batteryUnit(std::string_view key) {
    if (const KnownKey* const row = findRow(batteryKeys(), key)) return row->unit;
    if (key.ends_with("AC")) return "A";
    if (key.size() < 2) return "";
    const KnownKey* const field =
        findRow(batteryFields(), std::string("B#").append(key.substr(key.size() - 2)));
    return field == nullptr ? "" : field->unit;
}

} // namespace kelvinbar
