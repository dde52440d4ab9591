#include "machines/linux/migration/SensorRules.h"

#include <array>

namespace kelvinbar {

namespace {

using enum SensorKind;

constexpr std::string_view any = "*";

// Families of chips. The index of a chip counts those that match the same pattern, so each family has exactly
// one pattern.
constexpr std::string_view amdProcessors = "k10temp|zenpower";
constexpr std::string_view graphics = "amdgpu|radeon|nouveau|nvidia*|i915|xe";
constexpr std::string_view memoryModules = "spd5118|jc42|ee1004|peci_dimmtemp*";
constexpr std::string_view wirelessCards = "iwlwifi*|ath?0k*|ath1?k*|mt7*|rtw*|rtl8*|brcm*";
constexpr std::string_view superIO = "nct6*|nct7904|it8*|it87*|f71*|f8*|w836*|w8378*|sch56*|sch311x|dme1737|"
                                     "pc87*|smsc47*|vt1211|vt8231|via686a|lm78|asb100";
constexpr std::string_view nuvotonSuperIO = "nct677*|nct679*|nct610*|w83627ehf|w83627dhg*|w83667hg*";
constexpr std::string_view boardMonitors = "asus_wmi_sensors|asus-ec-sensors|asusec|atk0110|hp_wmi_sensors";
constexpr std::string_view batteries = "battery:*";
constexpr std::string_view batteryMonitors = "BAT?|CMB?|macsmc_battery|hidpp_battery_*|axp*battery";
constexpr std::string_view peripherals = "peripheral:*"; // batteries of mice, keyboards, headsets
constexpr std::string_view chargers = "charger:*";
constexpr std::string_view chargerMonitors = "ucsi_source*|AC|AC?|ACAD|ADP?";

constexpr std::array rules{
    // Apple's controller on Apple Silicon
    SensorRule{"macsmc_hwmon", power, "Total System Power", "PSTR"},
    SensorRule{"macsmc_hwmon", power, "AC Input Power", "ACPW"},
    SensorRule{"macsmc_hwmon", temperature, "NAND Flash Temperature", "TH0x"},
    SensorRule{"macsmc_hwmon", temperature, "Battery Hotspot", "TB0T"},
    SensorRule{"macsmc_hwmon", temperature, "Charge Regulator Temp", "TCHP"},
    SensorRule{"macsmc_hwmon", temperature, "WiFi/BT Module Temp", "TW0P"},
    SensorRule{"macsmc_hwmon", voltage, "AC Input Voltage|Charger Input Voltage", "VD0R"},
    SensorRule{"macsmc_hwmon", voltage, "Battery Voltage", "VBAT"},
    SensorRule{"macsmc_hwmon", current, "AC Input Current", "ID0R"},
    SensorRule{"macsmc_hwmon", fan, "Fan|Fan 1", "F0Ac"},
    SensorRule{"macsmc_hwmon", fan, "Fan 2", "F1Ac"},

    // Processors
    SensorRule{"coretemp", temperature, "Package id *|Physical id *", "TC=T TC=p TC+T"},
    SensorRule{"coretemp", temperature, "P-Core *", "Tp=C Ts+C"},
    SensorRule{"coretemp", temperature, "E-Core *", "Te=C Ts+C"},
    SensorRule{"coretemp", temperature, "Core *", "TC=C Ts+C TC^E TC^F TC^J", "TC?C"},
    SensorRule{amdProcessors, temperature, "Tdie", "TC@T TC@p"},
    SensorRule{amdProcessors, temperature, "Tctl|temp1", "TC@T TC@P TC@H"},
    SensorRule{amdProcessors, temperature, "Tccd*", "TC=D TC+D"},
    SensorRule{amdProcessors, voltage, "Vcore|SVI2_Core", "VCOR VCPU"},
    SensorRule{amdProcessors, voltage, "Vsoc|SVI2_SoC", "VC0S"},
    SensorRule{amdProcessors, current, "Icore|SVI2_C_Core", "IC0C"},
    SensorRule{amdProcessors, current, "Isoc|SVI2_C_SoC", "IC0S"},
    SensorRule{amdProcessors, power, "SVI2_P_Core", "PCPC"},
    SensorRule{"k8temp", temperature, any, "TC+C"},
    SensorRule{"fam15h_power", power, any, "PCPR"},
    SensorRule{"cpu_thermal|soc_thermal|cpu0_thermal|via_cputemp", temperature, any, "TCPU TC+D"},
    SensorRule{"soc_dts*|cpu?_thermal|cluster*_thermal|*core_thermal", temperature, any, "TC+D"},
    SensorRule{"rapl", energy, "package-0", "PCPR PC0R", "PCPR|PC0R|PC0C"},
    SensorRule{"rapl", energy, "package-*", "PC=R", "PC1R"},
    SensorRule{"rapl", energy, "core", "PCPC", "PCPC"},
    SensorRule{"rapl", energy, "uncore", "PCPG", "PCPG"},

    // Graphics
    SensorRule{graphics, temperature, "edge|pkg|temp1", "TG@D TG@P TG@H TG@T"},
    SensorRule{graphics, temperature, "junction|hotspot", "TG@C TG@T"},
    SensorRule{graphics, temperature, "mem|vram", "TG@M TG@T"},
    SensorRule{graphics, temperature, any, "TG@T TG@+"},
    SensorRule{graphics, voltage, "vddgfx|in0", "VG@C"},
    SensorRule{graphics, voltage, "vddnb", "VG@N"},
    SensorRule{graphics, voltage, any, "VG@+"},
    SensorRule{graphics, current, any, "IG@C"},
    SensorRule{graphics, power, any, "PG@C PG@+"},
    SensorRule{graphics, energy, any, "PG@E PG@+"},

    // Memory, drives, cards
    SensorRule{memoryModules, temperature, any, "TM^P TM0P TM++"},
    SensorRule{"nvme", temperature, "Composite", "TN@P TN@+ TN~P"},
    SensorRule{"nvme", temperature, "Sensor 1", "TN@D TN@+"},
    SensorRule{"nvme", temperature, any, "TN@= TN@+ TN@P TN++"},
    SensorRule{"drivetemp", temperature, any, "TS@P TS~P TS++"},
    SensorRule{wirelessCards, temperature, any, "TW0P TW++", "TW0P"},

    // Chipset and firmware zones
    SensorRule{"pch_*", temperature, any, "TPCD TPCH TCHP", "TPCD"},
    SensorRule{"acpitz", temperature, any, "THRM TP++"},

    // Super I/O chips
    SensorRule{superIO, temperature, "SYSTIN", "TSYS"},
    SensorRule{superIO, temperature, "CPUTIN", "TCPU"},
    SensorRule{superIO, temperature, "AUXTIN|AUXTIN0", "TAUX"},
    SensorRule{superIO, temperature, "PECI Agent *|TSI*_TEMP|AMD TSI*|SMBUSMASTER *", "TC=J TC+J"},
    SensorRule{superIO, temperature, "PCH_CPU_TEMP|PCH_CHIP_CPU_MAX_TEMP", "TC+D"},
    SensorRule{superIO, temperature, "PCH_DIM*_TEMP", "TM^P TM++"},
    SensorRule{superIO, temperature, "PCH_CHIP_TEMP", "TPCH TP0P"},
    SensorRule{superIO, temperature, "temp1|temp2", "TMB# TP++"},
    SensorRule{nuvotonSuperIO, voltage, "in0", "VCOR VCPU"},
    SensorRule{nuvotonSuperIO, voltage, "in3", "V33R V3V3"},
    SensorRule{nuvotonSuperIO, voltage, "in7", "VSB3"},
    SensorRule{nuvotonSuperIO, voltage, "in8", "VBAT"},

    // Batteries and chargers
    SensorRule{batteries, voltage, any, "B@AV", "B?AV"},
    SensorRule{batteries, current, any, "B@Am", "B?AC|B?Am"},
    SensorRule{batteries, power, any, "B@AP", "B?AP"},
    SensorRule{batteries, charge, "charge_now|energy_now", "B@RM", "B?RM"},
    SensorRule{batteries, charge, "charge_full|energy_full", "B@FC", "B?FC"},
    SensorRule{batteries, charge, "charge_full_design|energy_full_design", "B@DC", "B?DC"},
    SensorRule{batteries, count, "cycle_count", "B@CT", "B?CT"},
    SensorRule{batteries, percent, any, "B@SC", "BRSC"},
    SensorRule{batteries, duration, "time_to_full_now", "B@TF", "B?TF"},
    SensorRule{batteries, duration, "time_to_empty_now", "B@TE", "B?TE"},
    SensorRule{batteries, text, "status", "B@St", "B?St"},
    SensorRule{batteries, temperature, any, "TB@T TB++", "TB0T"},
    SensorRule{peripherals, voltage, any, "B+AV"},
    SensorRule{peripherals, current, any, "B+Am"},
    SensorRule{peripherals, charge, "charge_now|energy_now", "B+RM"},
    SensorRule{peripherals, charge, "charge_full|energy_full", "B+FC"},
    SensorRule{peripherals, charge, "charge_full_design|energy_full_design", "B+DC"},
    SensorRule{peripherals, count, "cycle_count", "B+CT"},
    SensorRule{peripherals, percent, any, "B+SC"},
    SensorRule{peripherals, text, "status", "B+St"},
    SensorRule{peripherals, temperature, any, "TB++"},
    SensorRule{chargers, flag, "online", "CH0B CH^B", "CH0B"},
    SensorRule{chargers, voltage, any, "CH0V", "CH0V"},
    SensorRule{chargers, current, any, "CH0C", "CH0C"},
    SensorRule{chargers, power, any, "CH0W ACPW", "CH0W|ACPW"},

    // The same, if only the hwmon chip exists
    SensorRule{batteryMonitors, voltage, any, "B@AV", "B?AV"},
    SensorRule{batteryMonitors, current, any, "B@Am", "B?AC|B?Am"},
    SensorRule{batteryMonitors, power, any, "B@AP", "B?AP"},
    SensorRule{batteryMonitors, temperature, any, "TB@T TB++", "TB0T"},
    SensorRule{chargerMonitors, voltage, any, "CH0V"},
    SensorRule{chargerMonitors, current, any, "CH0C"},

    // Any chip, by its label
    SensorRule{any, temperature, "*vrm*|*vreg*", "TVRM"},
    SensorRule{any, temperature, "*mos*", "TMOS"},
    SensorRule{any, temperature, "*chipset*|*pch*", "TPCH TCHP TP0P"},
    SensorRule{any, temperature, "*ambient*", "TAMB TA0P"},
    SensorRule{any, temperature, "*gpu*|*video*", "TGPU"},
    SensorRule{any, temperature, "*dimm*|*memory*", "TM^P TM0P TM++"},
    SensorRule{any, temperature, "*battery*", "TB0T TB1T TB++"},
    SensorRule{any, temperature, "*cpu*|*processor*|*package*", "TCPU TC+D"},
    SensorRule{any, temperature, "mb|mb *|*board*", "TMB1 TMB2"},
    SensorRule{any, temperature, "*system*|sys", "TSYS"},
    SensorRule{any, temperature, "*ssd*|*hdd*|*drive*|*nand*", "TH0P TH^P TH++"},
    SensorRule{any, temperature, "*wifi*|*wi-fi*|*wlan*", "TW0P TW++"},
    SensorRule{any, temperature, "t?sensor*|aux*", "TAUX"},
    SensorRule{any, voltage, "*vcore*|*cpu core*|vddcr_cpu|cpu_core", "VCOR VCPU"},
    SensorRule{any, voltage, "+12*|12v*|*+12v", "V12R"},
    SensorRule{any, voltage, "*3vsb*|*+3.3vsb*", "VSB3"},
    SensorRule{any, voltage, "*5vsb*", "VSB5"},
    SensorRule{any, voltage, "+5*|5v*|*+5v", "V05R V50R V5VP"},
    SensorRule{any, voltage, "+3.3*|3.3v*|3vcc|*+3.3v", "V33R V3V3"},
    SensorRule{any, voltage, "*vbat*|*battery*", "VBAT"},
    SensorRule{any, voltage, "*vsoc*|*vddcr_soc*|*system agent*", "VC0S"},
    SensorRule{any, voltage, "*dram*|*ddr*|*vdimm*|*vddq*", "VC0M"},
    SensorRule{any, current, "*cpu*|*core*", "IC0C"},
    SensorRule{any, power, "*cpu*|*package*", "PCPR"},

    // The rest, by kind
    SensorRule{any, temperature, any, "TA++ TP++ TL++ TI++"},
    SensorRule{any, voltage, any, "VIN# VI++ VX++"},
    SensorRule{any, current, any, "IX++ IY++"},
    SensorRule{any, power, any, "PC++"},
    SensorRule{any, energy, any, "PC++"},
    SensorRule{any, fan, any, "F+Ac Fan+"},
};

constexpr std::array fanRules{
    FanAttributeRule{fanMinimum, "macsmc_hwmon", "Mn"},
    FanAttributeRule{fanMaximum, "macsmc_hwmon", "Mx"},
    FanAttributeRule{fanTarget, "macsmc_hwmon", "Tg"},
};

constexpr std::array registryChipPatterns{superIO, boardMonitors};

} // namespace

std::span<const SensorRule> sensorRules() { return rules; }

std::span<const FanAttributeRule> fanAttributeRules() { return fanRules; }

std::span<const std::string_view> registryChips() { return registryChipPatterns; }

} // namespace kelvinbar
