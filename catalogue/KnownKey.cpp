#include "catalogue/KnownKey.h"

#include "base/Text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>

namespace kelvinbar {

namespace {

using enum SMCCategory;

constexpr auto thermalRows = std::to_array<KnownKey>({
    {"TA0P", "Ambient", thermal, celsius},
    {"TA0S", "Ambient Sensor", thermal, celsius, "Ambient"},
    {"TA0V", "Ambient Virtual", thermal, celsius, "Ambient"},
    {"TB0T", "Battery Temperature", thermal, celsius},
    {"TB1T", "Battery Temperature 1", thermal, celsius, "Battery Temperature"},
    {"TCHP", "PCH Proximity", thermal, celsius, "PCH"},
    {"TI0P", "Thunderbolt 0 Proximity", thermal, celsius, "Thunderbolt Proximity"},
    {"TI1P", "Thunderbolt 1 Proximity", thermal, celsius, "Thunderbolt Proximity"},
    {"TL0P", "LCD Proximity", thermal, celsius},
    {"TP0P", "PCH Proximity", thermal, celsius, "PCH"},
    {"TPCD", "PCH Diode", thermal, celsius, "PCH"},
    {"TW0P", "Wi-Fi Proximity", thermal, celsius},
});

/// "PSTR" has a rule of its own and is not covered by powerName().
constexpr auto powerRows = std::to_array<KnownKey>({
    {"PC0C", "Package Total", power, "W"},
    {"PC0R", "Package Total", power, "W"},
    {"PCPC", "Package Core", power, "W"},
    {"PCPG", "Package IGPU", gpu, "W"},
    {"PCPL", "CPU Power Limit", power, "W"},
    {"PCPR", "CPU Package Power", power, "W"},
    {"PCPT", "CPU Power", power, "W"},
    {"PCTR", "CPU Power", power, "W"},
    {"PG0C", "GPU 0 Package", gpu, "W", "GPU 0 Power"},
    {"PG0R", "GPU 0 Rail", gpu, "W", "GPU 0 Power"},
    {"PSTR", "CPU Package Energy", power, "W", "PSTR"},
});

constexpr auto voltageRows = std::to_array<KnownKey>({
    {"V05R", "+5V", voltages, "V"},
    {"V12R", "+12V", voltages, "V"},
    {"V33R", "+3.3V", voltages, "V"},
    {"V3V3", "+3.3V", voltages, "V"},
    {"V50R", "+5V", voltages, "V"},
    {"V5VP", "+5V", voltages, "V"},
    {"VAXG", "VAXG", voltages, "V"},
    {"VBAT", "Battery Voltage", voltages, "V"},
    {"VBLC", "Backlight Voltage", voltages, "V"},
    {"VC0C", "Voltage", voltages, "V", "CPU Core Voltage"},
    {"VC0G", "CPU AXG Voltage", voltages, "V"},
    {"VC0M", "CPU Memory Voltage", voltages, "V"},
    {"VC0R", "CPU Voltage", voltages, "V", "CPU Core Voltage"},
    {"VC0S", "CPU System Agent Voltage", voltages, "V"},
    {"VC1C", "VCCIO Voltage", voltages, "V"},
    {"VC1R", "CPU High-Side Voltage EMC1704", voltages, "V"},
    {"VC2C", "VCCSA Voltage", voltages, "V"},
    {"VCC ", "VCC", voltages, "V", "VCC "},
    {"VCFR", "FIVR CPU Supply Voltage", voltages, "V"},
    {"VCOR", "CPU Core Voltage", voltages, "V"},
    {"VCPU", "CPU Voltage", voltages, "V", "CPU Core Voltage"},
    {"VG0C", "GPU 0 Voltage", voltages, "V"},
    {"VIO ", "VCCIO", voltages, "V", "VIO "},
    {"VPLL", "PLL Voltage", voltages, "V", "VPLL"},
    {"VSA ", "VCCSA", voltages, "V", "VSA "},
    {"VSB3", "3VSB", voltages, "V", "VSB3"},
    {"VTT ", "VTT", voltages, "V", "VTT "},
});

/// "B0AC" is here for direct callers of currentName(). The naming rules treat keys that begin with "B" as
/// battery keys and use batteryName() for them.
constexpr auto currentRows = std::to_array<KnownKey>({
    {"B0AC", "Battery 0 Actual Current", battery, "A", "Battery Current"},
    {"B1AC", "Battery 1 Actual Current", battery, "A", "B1AC"},
    {"I50R", "+5V Low-Side Current", currents, "A"},
    {"IAPC", "Airport Current", currents, "A"},
    {"IB0R", "Battery Discharge Current", battery, "A", "Battery Current"},
    {"IBAC", "Battery Current", battery, "A"},
    {"IBLC", "Backlight Current", currents, "A"},
    {"IC0C", "CPU Current", currents, "A", "CPU Core Current"},
    {"IC0G", "CPU AXG Current", currents, "A"},
    {"IC0I", "CPU I/O Current", currents, "A"},
    {"IC0M", "CPU Memory Current", currents, "A"},
    {"IC0R", "CPU High-Side Current", currents, "A"},
    {"IC0S", "CPU System Agent Current", currents, "A"},
    {"IC1C", "VCCIO Current", currents, "A"},
    {"IC1R", "CPU High-Side Current EMC1704", currents, "A"},
    {"IC2C", "VCCSA Current", currents, "A"},
    {"IC3C", "CPU DDR Current", currents, "A"},
    {"ICMC", "Camera Current", currents, "A"},
    {"ICS0", "CPU Core Current", currents, "A", "CPU IMON Current"},
    {"ICS1", "CPU IMON Current", currents, "A"},
    {"ICTR", "CPU Riser 12V Current", currents, "A"},
    {"ID0R", "DC-In Current", currents, "A"},
    {"ID1R", "CPU 1V5 Current", currents, "A"},
    {"ID2E", "PSU 12V Filtered Current", currents, "A", "PSU 12V Current"},
    {"ID2F", "PSU 12V Adjusted Current", currents, "A", "PSU 12V Current"},
    {"ID2I", "PSU 12V Filter Input", currents, "A", "PSU 12V Current"},
    {"ID2J", "PSU 12V Max Error", currents, "A", "PSU 12V Current"},
    {"ID2L", "PSU 12V Filter Coefficient", currents, "A", "ID2L"},
    {"ID2R", "Power Supply 12V Current", currents, "A", "PSU 12V Current"},
    {"ID2T", "PSU 12V Current Trend", currents, "A", "PSU 12V Current"},
    {"IG0C", "GPU 0 Current", currents, "A", "GPU 0 Core Current"},
    {"IG0F", "GPU 0 Framebuffer Current", currents, "A"},
    {"IG0I", "GPU 0 VDDCI Current", currents, "A"},
    {"IG0R", "GPU 0 High-Side Current", currents, "A"},
    {"IG0S", "GPU 0 VDDCI Low-Side Current", currents, "A"},
    {"IG0U", "GPU 0 Uncore Current", currents, "A"},
    {"IG1A", "GPU 1 Aux Current", currents, "A"},
    {"IG1C", "GPU 1 Core Current", currents, "A"},
    {"IG1F", "GPU 1 Framebuffer Current", currents, "A"},
    {"IG1R", "GPU 1 High-Side Current", currents, "A"},
    {"IG1S", "GPU 1 VDDCI Low-Side Current", currents, "A"},
    {"IG2C", "GPU 2 Core Current", currents, "A"},
    {"IG3C", "GPU 3 Current", currents, "A"},
    {"IH02", "Drive 12V Current", currents, "A"},
    {"IH05", "Drive 5V Current", currents, "A"},
    {"IH0R", "SSD 3.3V Current", currents, "A"},
    {"IH1R", "Drive 1 3.3V Current", currents, "A", "SSD 3.3V Current"},
    {"IHDC", "Drive Current", currents, "A"},
    {"IHSC", "Thunderbolt Current", currents, "A"},
    {"IHSP", "Thunderbolt Power Current", currents, "A", "Thunderbolt Current"},
    {"II0R", "I/O Board 12V Current", currents, "A"},
    {"ILDC", "LCD Panel Current", currents, "A"},
    {"IM0C", "Memory Current", currents, "A"},
    {"IM0R", "DIMM Current", currents, "A", "Memory Current"},
    {"IM1C", "LPDDR/DDR Current", currents, "A", "LPDDR/Memory Current"},
    {"IM2C", "LPDDR Current", currents, "A", "LPDDR/Memory Current"},
    {"IM3C", "DDR S3 Current", currents, "A", "LPDDR/Memory Current"},
    {"IMTR", "Memory 1V5 Current", currents, "A"},
    {"IN0C", "Internal GPU Core Current", currents, "A", "Internal GPU Current"},
    {"IN0R", "Internal GPU Vcore Current", currents, "A", "Internal GPU Current"},
    {"IN1C", "MCP DDR Current", currents, "A"},
    {"IN1R", "PCH Current", currents, "A"},
    {"IO0R", "Other High-Side Current", currents, "A"},
    {"IO3R", "3.3V Current", currents, "A"},
    {"IO5R", "5V Current", currents, "A"},
    {"IODC", "ODD Current", currents, "A"},
    {"IP0R", "Battery Current Discrete", battery, "A", "Discrete Battery Current"},
    {"IPB1", "Discrete Battery Current", battery, "A"},
    {"IPBR", "PBus Battery Current", battery, "A", "Discrete Battery Current"},
    {"IR0C", "3.3V S0 Current", currents, "A"},
    {"IR1C", "S3 3.3V Current", currents, "A"},
    {"IR1R", "PCH/GPU/TBT 1.05V Current", currents, "A"},
    {"IR2C", "S3 5V Current", currents, "A"},
    {"IR3C", "3.3V S0/S5 Current", currents, "A"},
    {"IR5C", "5V S0/S5 Current", currents, "A"},
    {"IS2C", "S2 Camera Current", currents, "A"},
    {"ISBC", "PCH Core Current", currents, "A"},
    {"ISDC", "SSD Current", currents, "A"},
    {"Ic0R", "CPU CSReg Current", currents, "A", "CPU High-Side Current"},
});

constexpr auto batteryRows = std::to_array<KnownKey>({
    {"ACPW", "AC Adapter Power", battery, "W"},
    {"BBAD", "Battery Bad", battery, ""},
    {"BBIN", "Battery Installed", battery, ""},
    {"BNum", "Battery Count", battery, ""},
    {"CH0B", "Charger Connected", battery, ""},
    {"CH0C", "Charger Current", battery, "A", "CH0C"},
    {"CH0V", "Charger Voltage", battery, "V", "CH0V"},
    {"CH0W", "Charger Power", battery, "W", "CH0W"},
    {"CHBI", "Battery Charge Current", battery, "A"},
});

constexpr auto boardThermalRows = std::to_array<KnownKey>({
    {"TAMB", "Ambient", thermal, celsius},
    {"TAUX", "Aux", thermal, celsius},
    {"TCPU", "CPU", thermal, celsius},
    {"TGPU", "GPU", thermal, celsius},
    {"THRM", "Thermal", thermal, celsius},
    {"TMB1", "Motherboard 1", thermal, celsius},
    {"TMB2", "Motherboard 2", thermal, celsius},
    {"TMOS", "MOS", thermal, celsius},
    {"TPCH", "PCH", thermal, celsius},
    {"TSYS", "System", thermal, celsius},
    {"TVRM", "VRM", thermal, celsius},
});

constexpr auto otherRows = std::to_array<KnownKey>({
    {"FNum", "Fan Count", fans, ""},
    {"RBr ", "SMC Branch", overview, ""},
    {"REV ", "SMC Revision", overview, ""},
    {"RVBF", "SMC Build", overview, ""},
    {"TC0E", "CPU 0 TCOE", cpu, celsius},
    {"TC0F", "CPU Fin Stack", cpu, celsius},
    {"TC0J", "CPU Junction", cpu, celsius},
    {"TCAD", "CPU A Package Diode", cpu, celsius},
    {"TCAH", "CPU A Heatsink", cpu, celsius},
    {"TCBD", "CPU B Package Diode", cpu, celsius},
    {"TCBH", "CPU B Heatsink", cpu, celsius},
    {"TCGC", "CPU Graphics Core", cpu, celsius},
    {"TCGc", "CPU Graphics Core Raw", cpu, celsius},
    {"TH0P", "Drive Bay Proximity", storage, celsius},
    {"TM0A", "Memory Ambient", memory, celsius},
    {"TM0P", "Memory Proximity", memory, celsius},
    {"TM0S", "Memory Slot", memory, celsius},
    {"Th0H", "CPU Heatpipe", cpu, celsius},
});

/// The table counts cores from "TC0C" to "TCFC". "TCAC" and "TCBC" are therefore cores 10 and 11, although
/// some machines use the letters for processors A and B, as "TCAH" and "TCBH" do.
constexpr auto temperatureRows = std::to_array<NumberedKeys>({
    {{"TC#C", "Core #", cpu, celsius}, 0, 15},
    {{"TC#D", "CPU # Diode", cpu, celsius}, 0, 0},
    {{"TC#H", "CPU Heatsink", cpu, celsius}, 0, 0},
    {{"TC#P", "CPU Proximity", cpu, celsius}, 0, 0},
    {{"TC#T", "CPU Package", cpu, celsius}, 0, 0},
    {{"TC#p", "CPU Package", cpu, celsius}, 0, 0},
    {{"TG#C", "GPU # Core", gpu, celsius}, 0, 1},
    {{"TG#D", "GPU # Die", gpu, celsius}, 0, 1},
    {{"TG#H", "GPU # Heatsink", gpu, celsius}, 0, 1},
    {{"TG#M", "GPU # Memory", gpu, celsius}, 0, 1},
    {{"TG#P", "GPU # Proximity", gpu, celsius}, 0, 1},
    {{"TM#P", "DIMM #", memory, celsius}, 1, 15},
    {{"Te#C", "CPU E-Core #", cpu, celsius}, 0, 15},
    {{"Tp#C", "CPU P-Core #", cpu, celsius}, 0, 15},
    {{"Ts#C", "CPU Sensor #", cpu, celsius}, 0, 15},
});

constexpr auto fanFieldRows = std::to_array<NumberedKeys>({
    {{"F#Ac", "Fan #", fans, "RPM"}, 0, 9},
    {{"F#ID", "Fan # Name", fans, ""}, 0, 9},
    {{"F#Md", "Fan # Mode", fans, ""}, 0, 9},
    {{"F#Mn", "Fan # Minimum", fans, "RPM"}, 0, 9},
    {{"F#Mx", "Fan # Maximum", fans, "RPM"}, 0, 9},
    {{"F#Sf", "Fan # Safe", fans, "RPM"}, 0, 9},
    {{"F#Tg", "Fan # Target", fans, "RPM"}, 0, 9},
});

constexpr auto batteryFieldRows = std::to_array<NumberedKeys>({
    {{"B#AP", "Battery # Power", battery, "W"}, 0, 3},
    {{"B#AV", "Battery # Voltage", battery, "V"}, 0, 3},
    {{"B#Am", "Battery # Current", battery, "A"}, 0, 3},
    {{"B#CT", "Battery # Cycles", battery, ""}, 0, 3},
    {{"B#DC", "Battery # Design Capacity", battery, "mAh"}, 0, 3},
    {{"B#FC", "Battery # Full Charge", battery, "mAh"}, 0, 3},
    {{"B#RM", "Battery # Remaining", battery, "mAh"}, 0, 3},
    {{"B#RS", "Battery # Res Scale", battery, ""}, 0, 1},
    {{"B#St", "Battery # Status", battery, ""}, 0, 3},
    {{"B#TF", "Battery # Time", battery, ""}, 0, 3},
});

/// "FAN0" to "FAN7": fans that have no controller key of their own because the machine's device registry or
/// its kernel reports them. The number is the position in that list. The key doubles as the table's name.
constexpr NumberedKeys registryFans{{"FAN#", "FAN#", fans, "RPM"}, 0, 7};

constexpr std::array otherNumberedRows{
    registryFans,
    NumberedKeys{{"FRD#", "Fan Raw Data #", fans, ""}, 0, 3},
    NumberedKeys{{"VIN#", "Voltage #", voltages, "V"}, 0, 9},
};

constexpr std::size_t keyLength = 4;

/// The bytes of a key as one number that sorts like the key. Comparing it is much faster than comparing text.
constexpr std::uint32_t packed(std::string_view key) {
    std::uint32_t number = 0;
    for (std::size_t index = 0; index < keyLength; ++index)
        number = (number << 8U) | static_cast<unsigned char>(key[index]);
    return number;
}

constexpr std::string_view keyOf(const KnownKey& row) { return row.key; }

constexpr std::string_view keyOf(const NumberedKeys& keys) { return keys.row.key; }

template <typename Row>
constexpr std::uint32_t packedKeyOf(const Row& row) {
    return packed(keyOf(row));
}

/// Whether all keys of `rows` have four bytes and each sorts after the one before it. find() relies on both.
template <typename Row>
constexpr bool areAscending(std::span<const Row> rows) {
    return std::ranges::all_of(rows, [](const Row& row) { return keyOf(row).size() == keyLength; }) &&
           std::ranges::adjacent_find(rows, std::ranges::greater_equal(), packedKeyOf<Row>) == rows.end();
}

static_assert(areAscending<KnownKey>(thermalRows));
static_assert(areAscending<KnownKey>(powerRows));
static_assert(areAscending<KnownKey>(voltageRows));
static_assert(areAscending<KnownKey>(currentRows));
static_assert(areAscending<KnownKey>(batteryRows));
static_assert(areAscending<KnownKey>(boardThermalRows));
static_assert(areAscending<KnownKey>(otherRows));
static_assert(areAscending<NumberedKeys>(temperatureRows));
static_assert(areAscending<NumberedKeys>(fanFieldRows));
static_assert(areAscending<NumberedKeys>(batteryFieldRows));
static_assert(areAscending<NumberedKeys>(otherNumberedRows));

template <typename Row>
const Row* find(std::span<const Row> rows, std::string_view key) {
    if (key.size() != keyLength) return nullptr;
    const std::uint32_t wanted = packed(key);
    const auto found = std::ranges::lower_bound(rows, wanted, {}, packedKeyOf<Row>);
    return found != rows.end() && packedKeyOf(*found) == wanted ? &*found : nullptr;
}

} // namespace

std::span<const KnownKey> thermalKeys() { return thermalRows; }

std::span<const KnownKey> powerKeys() { return powerRows; }

std::span<const KnownKey> voltageKeys() { return voltageRows; }

std::span<const KnownKey> currentKeys() { return currentRows; }

std::span<const KnownKey> batteryKeys() { return batteryRows; }

std::span<const KnownKey> boardThermalKeys() { return boardThermalRows; }

std::span<const KnownKey> otherKeys() { return otherRows; }

std::span<const NumberedKeys> numberedTemperatures() { return temperatureRows; }

std::span<const NumberedKeys> fanFields() { return fanFieldRows; }

std::span<const NumberedKeys> batteryFields() { return batteryFieldRows; }

std::span<const NumberedKeys> otherNumberedKeys() { return otherNumberedRows; }

const KnownKey* findRow(std::span<const KnownKey> rows, std::string_view key) { return find(rows, key); }

const KnownKey* findRow(std::span<const NumberedKeys> rows, std::string_view pattern) {
    const NumberedKeys* const found = find(rows, pattern);
    return found == nullptr ? nullptr : &found->row;
}

std::string numberedName(const KnownKey& row, unsigned number) {
    return replacedAll(row.name, "#", std::to_string(number));
}

} // namespace kelvinbar
