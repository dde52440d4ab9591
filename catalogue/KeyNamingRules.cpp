#include "catalogue/KeyNamingRules.h"

#include "base/Text.h"

#include <algorithm>
#include <array>
#include <span>

namespace kelvinbar {

namespace {

using enum SMCCategory;

constexpr std::string_view celsius = "°C";

struct KeyName {
    std::string_view key;
    std::string_view name;
};

constexpr std::array<std::string_view, 11> namedThermalKeys{
    "TCPU", "TSYS", "TAUX", "TMOS", "TPCH", "TVRM", "TGPU", "TAMB", "TMB1", "TMB2", "THRM",
};

constexpr std::array thermalNames{
    KeyName{"TA0P", "Ambient"},
    KeyName{"TA0S", "Ambient"},
    KeyName{"TA0V", "Ambient"},
    KeyName{"TP0P", "PCH"},
    KeyName{"TCHP", "PCH"},
    KeyName{"TPCD", "PCH"},
    KeyName{"TW0P", "Wi-Fi Proximity"},
    KeyName{"TL0P", "LCD Proximity"},
    KeyName{"TI0P", "Thunderbolt Proximity"},
    KeyName{"TI1P", "Thunderbolt Proximity"},
    KeyName{"TB0T", "Battery Temperature"},
    KeyName{"TB1T", "Battery Temperature"},
};

constexpr std::array powerNames{
    KeyName{"PC0C", "Package Total"},   KeyName{"PC0R", "Package Total"},
    KeyName{"PCPC", "Package Core"},    KeyName{"PCPG", "Package IGPU"},
    KeyName{"PCPL", "CPU Power Limit"}, KeyName{"PCPR", "CPU Package Power"},
    KeyName{"PCPT", "CPU Power"},       KeyName{"PCTR", "CPU Power"},
    KeyName{"PG0C", "GPU 0 Power"},     KeyName{"PG0R", "GPU 0 Power"},
};

constexpr std::array voltageNames{
    KeyName{"VBLC", "Backlight Voltage"},
    KeyName{"VC0C", "CPU Core Voltage"},
    KeyName{"VC0R", "CPU Core Voltage"},
    KeyName{"VCPU", "CPU Core Voltage"},
    KeyName{"VCOR", "CPU Core Voltage"},
    KeyName{"VC0G", "CPU AXG Voltage"},
    KeyName{"VC0M", "CPU Memory Voltage"},
    KeyName{"VC0S", "CPU System Agent Voltage"},
    KeyName{"VC1C", "VCCIO Voltage"},
    KeyName{"VC1R", "CPU High-Side Voltage EMC1704"},
    KeyName{"VC2C", "VCCSA Voltage"},
    KeyName{"VCFR", "FIVR CPU Supply Voltage"},
    KeyName{"VG0C", "GPU 0 Voltage"},
    KeyName{"V12R", "+12V"},
    KeyName{"V05R", "+5V"},
    KeyName{"V50R", "+5V"},
    KeyName{"V5VP", "+5V"},
    KeyName{"V33R", "+3.3V"},
    KeyName{"V3V3", "+3.3V"},
    KeyName{"VBAT", "Battery Voltage"},
};

constexpr std::array currentNames{
    KeyName{"I50R", "+5V Low-Side Current"},
    KeyName{"IAPC", "Airport Current"},
    KeyName{"IB0R", "Battery Current"},
    KeyName{"IBAC", "Battery Current"},
    KeyName{"B0AC", "Battery Current"},
    KeyName{"IBLC", "Backlight Current"},
    KeyName{"IC0C", "CPU Core Current"},
    KeyName{"IC0G", "CPU AXG Current"},
    KeyName{"IC0I", "CPU I/O Current"},
    KeyName{"IC0M", "CPU Memory Current"},
    KeyName{"IC0R", "CPU High-Side Current"},
    KeyName{"Ic0R", "CPU High-Side Current"},
    KeyName{"IC0S", "CPU System Agent Current"},
    KeyName{"IC1C", "VCCIO Current"},
    KeyName{"IC1R", "CPU High-Side Current EMC1704"},
    KeyName{"IC2C", "VCCSA Current"},
    KeyName{"IC3C", "CPU DDR Current"},
    KeyName{"ICMC", "Camera Current"},
    KeyName{"ICS0", "CPU IMON Current"},
    KeyName{"ICS1", "CPU IMON Current"},
    KeyName{"ICTR", "CPU Riser 12V Current"},
    KeyName{"ID0R", "DC-In Current"},
    KeyName{"ID1R", "CPU 1V5 Current"},
    KeyName{"ID2E", "PSU 12V Current"},
    KeyName{"ID2F", "PSU 12V Current"},
    KeyName{"ID2I", "PSU 12V Current"},
    KeyName{"ID2J", "PSU 12V Current"},
    KeyName{"ID2R", "PSU 12V Current"},
    KeyName{"ID2T", "PSU 12V Current"},
    KeyName{"IG0C", "GPU 0 Core Current"},
    KeyName{"IG0F", "GPU 0 Framebuffer Current"},
    KeyName{"IG0I", "GPU 0 VDDCI Current"},
    KeyName{"IG0R", "GPU 0 High-Side Current"},
    KeyName{"IG0S", "GPU 0 VDDCI Low-Side Current"},
    KeyName{"IG0U", "GPU 0 Uncore Current"},
    KeyName{"IG1A", "GPU 1 Aux Current"},
    KeyName{"IG1C", "GPU 1 Core Current"},
    KeyName{"IG1F", "GPU 1 Framebuffer Current"},
    KeyName{"IG1R", "GPU 1 High-Side Current"},
    KeyName{"IG1S", "GPU 1 VDDCI Low-Side Current"},
    KeyName{"IG2C", "GPU 2 Core Current"},
    KeyName{"IG3C", "GPU 3 Current"},
    KeyName{"IH02", "Drive 12V Current"},
    KeyName{"IH05", "Drive 5V Current"},
    KeyName{"IH0R", "SSD 3.3V Current"},
    KeyName{"IH1R", "SSD 3.3V Current"},
    KeyName{"IHDC", "Drive Current"},
    KeyName{"IHSC", "Thunderbolt Current"},
    KeyName{"IHSP", "Thunderbolt Current"},
    KeyName{"II0R", "I/O Board 12V Current"},
    KeyName{"ILDC", "LCD Panel Current"},
    KeyName{"IM0C", "Memory Current"},
    KeyName{"IM0R", "Memory Current"},
    KeyName{"IM1C", "LPDDR/Memory Current"},
    KeyName{"IM2C", "LPDDR/Memory Current"},
    KeyName{"IM3C", "LPDDR/Memory Current"},
    KeyName{"IMTR", "Memory 1V5 Current"},
    KeyName{"IN0C", "Internal GPU Current"},
    KeyName{"IN0R", "Internal GPU Current"},
    KeyName{"IN1C", "MCP DDR Current"},
    KeyName{"IN1R", "PCH Current"},
    KeyName{"IO0R", "Other High-Side Current"},
    KeyName{"IO3R", "3.3V Current"},
    KeyName{"IO5R", "5V Current"},
    KeyName{"IODC", "ODD Current"},
    KeyName{"IP0R", "Discrete Battery Current"},
    KeyName{"IPB1", "Discrete Battery Current"},
    KeyName{"IPBR", "Discrete Battery Current"},
    KeyName{"IR0C", "3.3V S0 Current"},
    KeyName{"IR1C", "S3 3.3V Current"},
    KeyName{"IR1R", "PCH/GPU/TBT 1.05V Current"},
    KeyName{"IR2C", "S3 5V Current"},
    KeyName{"IR3C", "3.3V S0/S5 Current"},
    KeyName{"IR5C", "5V S0/S5 Current"},
    KeyName{"IS2C", "S2 Camera Current"},
    KeyName{"ISBC", "PCH Core Current"},
    KeyName{"ISDC", "SSD Current"},
};

constexpr std::array batteryNames{
    KeyName{"BNum", "Battery Count"},
    KeyName{"CH0B", "Charger Connected"},
    KeyName{"CHBI", "Battery Charge Current"},
    KeyName{"BBIN", "Battery Installed"},
    KeyName{"BBAD", "Battery Bad"},
    KeyName{"ACPW", "AC Adapter Power"},
};

std::string nameIn(std::span<const KeyName> names, std::string_view key) {
    const auto found = std::ranges::find(names, key, &KeyName::key);
    return std::string(found == names.end() ? key : found->name);
}

/// A character position that counts as an index: upper-case hex digits only.
bool isHexDigit(char character) {
    return isDecimalDigit(character) || (character >= 'A' && character <= 'F');
}

std::string coreNumber(char hexDigit) { return std::to_string(hexDigitValue(hexDigit)); }

bool isOneOf(char character, std::string_view characters) { return contains(characters, {&character, 1}); }

using MaybeDefinition = std::optional<SMCKeyDefinition>;

SMCKeyDefinition define(std::string_view key, std::string name, SMCCategory category, std::string_view unit) {
    return {std::string(key), std::move(name), category, std::string(unit)};
}

/// "TC" + index + kind.
MaybeDefinition cpuTemperature(std::string_view key) {
    if (key[1] != 'C' || !isHexDigit(key[2])) return std::nullopt;
    const std::string number = coreNumber(key[2]);
    switch (key[3]) {
    case 'C':
        return define(key, "Core " + number, cpu, celsius);
    case 'D':
        return define(key, "CPU " + number + " Diode", cpu, celsius);
    case 'P':
        return define(key, "CPU Proximity", cpu, celsius);
    case 'H':
        return define(key, "CPU Heatsink", cpu, celsius);
    case 'T':
    case 'p':
        return define(key, "CPU Package", cpu, celsius);
    case 'E':
    case 'F':
    case 'J':
        return define(key, "CPU " + std::string(key), cpu, celsius);
    default:
        return std::nullopt;
    }
}

/// "Tp", "Te" or "Ts" + index + "C": cores of a hybrid processor.
MaybeDefinition hybridCoreTemperature(std::string_view key) {
    if (!isHexDigit(key[2]) || key[3] != 'C') return std::nullopt;
    const std::string number = coreNumber(key[2]);
    switch (key[1]) {
    case 'p':
        return define(key, "CPU P-Core " + number, cpu, celsius);
    case 'e':
        return define(key, "CPU E-Core " + number, cpu, celsius);
    case 's':
        return define(key, "CPU Sensor " + number, cpu, celsius);
    default:
        return std::nullopt;
    }
}

std::string_view gpuPlace(char kind) {
    switch (kind) {
    case 'D':
        return "Die";
    case 'P':
        return "Proximity";
    case 'H':
        return "Heatsink";
    case 'C':
        return "Core";
    case 'M':
        return "Memory";
    default:
        return "Temperature";
    }
}

MaybeDefinition gpuTemperature(std::string_view key) {
    if (key[1] != 'G' || !isHexDigit(key[2])) return std::nullopt;
    return define(key, "GPU " + coreNumber(key[2]) + " " + std::string(gpuPlace(key[3])), gpu, celsius);
}

MaybeDefinition memoryTemperature(std::string_view key) {
    if (key[1] != 'M' || !isHexDigit(key[2])) return std::nullopt;
    std::string name = key[3] == 'P' ? "DIMM " + coreNumber(key[2]) : "Memory " + std::string(key);
    return define(key, std::move(name), memory, celsius);
}

MaybeDefinition temperature(std::string_view key) {
    if (auto found = cpuTemperature(key)) return found;
    if (auto found = hybridCoreTemperature(key)) return found;
    if (auto found = gpuTemperature(key)) return found;
    if (auto found = memoryTemperature(key)) return found;
    if (isOneOf(key[1], "NSH")) return define(key, storageName(key), storage, celsius);
    if (isOneOf(key[1], "APWLIB")) return define(key, thermalName(key), thermal, celsius);
    return std::nullopt;
}

/// "F" + decimal index + what is known of the fan.
MaybeDefinition fan(std::string_view key) {
    struct FanField {
        std::string_view suffix;
        std::string_view text;
        std::string_view unit;
    };

    constexpr std::array fields{
        FanField{"Ac", "", "RPM"},         FanField{"Mn", " Minimum", "RPM"},
        FanField{"Mx", " Maximum", "RPM"}, FanField{"Tg", " Target", "RPM"},
        FanField{"Sf", " Safe", "RPM"},    FanField{"ID", " Name", ""},
        FanField{"Md", " Mode", ""},
    };
    const auto* const field = std::ranges::find(fields, key.substr(2), &FanField::suffix);
    if (field == fields.end()) return std::nullopt;
    return define(key, std::string("Fan ").append(key.substr(1, 1)).append(field->text), fans, field->unit);
}

MaybeDefinition byFamilyPrefix(std::string_view key) {
    if (key == "PSTR") return define(key, "CPU Package Energy", power, "W");
    if (key.starts_with("PC")) return define(key, powerName(key), power, "W");
    if (key.starts_with("PG")) return define(key, powerName(key), gpu, "W");
    if (key.starts_with('V')) return define(key, voltageName(key), voltages, "V");
    if (key.starts_with('I')) return define(key, currentName(key), currents, "A");
    if (key.starts_with('B') || key.starts_with("CH") || key == "ACPW") {
        return define(key, batteryName(key), battery, batteryUnit(key));
    }
    if (std::ranges::find(namedThermalKeys, key) != namedThermalKeys.end()) {
        return define(key, std::string(key), thermal, celsius);
    }
    if (key.starts_with("Fan")) return define(key, std::string(key), fans, "RPM");
    return std::nullopt;
}

/// The character after "TN", "TS" or "TH".
std::string storageIndex(std::string_view key) { return std::string(withoutLastCharacter(key.substr(2))); }

} // namespace

MaybeDefinition definitionByPattern(std::string_view key) {
    if (characterCount(key) != 4) return std::nullopt;
    // Every rule with positions needs ASCII in them; a key of four characters has at least four bytes.
    if (key[0] == 'T') {
        if (auto found = temperature(key)) return found;
    }
    if (key[0] == 'F' && isDecimalDigit(key[1])) return fan(key);
    return byFamilyPrefix(key);
}

std::string thermalName(std::string_view key) { return nameIn(thermalNames, key); }

std::string storageName(std::string_view key) {
    if (key.starts_with("TN")) {
        return "NVMe " + storageIndex(key) + (key.ends_with('D') ? " Die" : " Proximity");
    }
    if (key.starts_with("TS")) return "SATA " + storageIndex(key) + " Proximity";
    if (key.starts_with("TH")) return "Drive " + storageIndex(key) + " Proximity";
    return std::string(key);
}

std::string powerName(std::string_view key) { return nameIn(powerNames, key); }

std::string voltageName(std::string_view key) { return nameIn(voltageNames, key); }

std::string currentName(std::string_view key) { return nameIn(currentNames, key); }

std::string batteryName(std::string_view key) { return nameIn(batteryNames, key); }

std::string_view batteryUnit(std::string_view key) {
    if (key.ends_with("AV") || key == "CH0V") return "V";
    if (key.ends_with("AC")) return "A";
    if (key.ends_with("Am") || key == "CH0C" || key == "CHBI") return "A";
    if (key.ends_with("AP") || key == "CH0W" || key == "ACPW") return "W";
    if (key.ends_with("RM") || key.ends_with("FC") || key.ends_with("DC")) return "mAh";
    return "";
}

} // namespace kelvinbar
