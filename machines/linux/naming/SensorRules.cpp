#include "machines/linux/naming/SensorRules.h"

#include <array>

namespace kelvinbar {

namespace {

using enum SensorKind;

constexpr std::string_view any = "*";

// Families of chips. A rule counts its chips by the whole pattern, so a family is always written as one.
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
    // Apple's controller where only its temperatures and fans can be read
    SensorRule{"applesmc", temperature, "????", "????", "sp78"},
    SensorRule{"applesmc", fan, any, "F%Ac", "fpe2"},

    // Apple's controller on Apple Silicon
    SensorRule{"macsmc_hwmon", power, "Total System Power", "PSTR", "flt "},
    SensorRule{"macsmc_hwmon", power, "AC Input Power", "ACPW", "flt "},
    SensorRule{"macsmc_hwmon", temperature, "NAND Flash Temperature", "TH0x", "flt "},
    SensorRule{"macsmc_hwmon", temperature, "Battery Hotspot", "TB0T", "flt "},
    SensorRule{"macsmc_hwmon", temperature, "Charge Regulator Temp", "TCHP", "flt "},
    SensorRule{"macsmc_hwmon", temperature, "WiFi/BT Module Temp", "TW0P", "flt "},
    SensorRule{"macsmc_hwmon", voltage, "AC Input Voltage|Charger Input Voltage", "VD0R", "flt "},
    SensorRule{"macsmc_hwmon", voltage, "Battery Voltage", "VBAT", "flt "},
    SensorRule{"macsmc_hwmon", current, "AC Input Current", "ID0R", "flt "},
    SensorRule{"macsmc_hwmon", fan, "Fan|Fan 1", "F0Ac", "flt "},
    SensorRule{"macsmc_hwmon", fan, "Fan 2", "F1Ac", "flt "},

    // Processors
    SensorRule{"coretemp", temperature, "Package id *|Physical id *", "TC=T TC=p TC+T", "flt "},
    SensorRule{"coretemp", temperature, "P-Core *", "Tp=C Ts+C", "flt "},
    SensorRule{"coretemp", temperature, "E-Core *", "Te=C Ts+C", "flt "},
    SensorRule{"coretemp", temperature, "Core *", "TC=C Ts+C TC^E TC^F TC^J", "flt ", "TC?C"},
    SensorRule{amdProcessors, temperature, "Tdie", "TC@T TC@p", "flt "},
    SensorRule{amdProcessors, temperature, "Tctl|temp1", "TC@T TC@P TC@H", "flt "},
    SensorRule{amdProcessors, temperature, "Tccd*", "TC=D TC+D", "flt "},
    SensorRule{amdProcessors, voltage, "Vcore|SVI2_Core", "VCOR VCPU", "flt "},
    SensorRule{amdProcessors, voltage, "Vsoc|SVI2_SoC", "VC0S", "flt "},
    SensorRule{amdProcessors, current, "Icore|SVI2_C_Core", "IC0C", "flt "},
    SensorRule{amdProcessors, current, "Isoc|SVI2_C_SoC", "IC0S", "flt "},
    SensorRule{amdProcessors, power, "SVI2_P_Core", "PCPC", "flt "},
    SensorRule{"k8temp", temperature, any, "TC+C", "flt "},
    SensorRule{"fam15h_power", power, any, "PCPR", "flt "},
    SensorRule{"cpu_thermal|soc_thermal|cpu0_thermal|via_cputemp", temperature, any, "TCPU TC+D", "flt "},
    SensorRule{"soc_dts*|cpu?_thermal|cluster*_thermal|*core_thermal", temperature, any, "TC+D", "flt "},
    SensorRule{"rapl", energy, "package-0", "PCPR PC0R", "flt ", "PCPR|PC0R|PC0C"},
    SensorRule{"rapl", energy, "package-*", "PC=R", "flt ", "PC1R"},
    SensorRule{"rapl", energy, "core", "PCPC", "flt ", "PCPC"},
    SensorRule{"rapl", energy, "uncore", "PCPG", "flt ", "PCPG"},

    // Graphics
    SensorRule{graphics, temperature, "edge|pkg|temp1", "TG@D TG@P TG@H TG@T", "flt "},
    SensorRule{graphics, temperature, "junction|hotspot", "TG@C TG@T", "flt "},
    SensorRule{graphics, temperature, "mem|vram", "TG@M TG@T", "flt "},
    SensorRule{graphics, temperature, any, "TG@T TG@+", "flt "},
    SensorRule{graphics, voltage, "vddgfx|in0", "VG@C", "flt "},
    SensorRule{graphics, voltage, "vddnb", "VG@N", "flt "},
    SensorRule{graphics, voltage, any, "VG@+", "flt "},
    SensorRule{graphics, current, any, "IG@C", "flt "},
    SensorRule{graphics, power, any, "PG@C PG@+", "flt "},
    SensorRule{graphics, energy, any, "PG@E PG@+", "flt "},

    // Memory, drives, cards
    SensorRule{memoryModules, temperature, any, "TM^P TM0P TM++", "flt "},
    SensorRule{"nvme", temperature, "Composite", "TN@P TN@+ TN~P", "flt "},
    SensorRule{"nvme", temperature, "Sensor 1", "TN@D TN@+", "flt "},
    SensorRule{"nvme", temperature, any, "TN@= TN@+ TN@P TN++", "flt "},
    SensorRule{"drivetemp", temperature, any, "TS@P TS~P TS++", "flt "},
    SensorRule{wirelessCards, temperature, any, "TW0P TW++", "flt ", "TW0P"},

    // Chipset and firmware zones
    SensorRule{"pch_*", temperature, any, "TPCD TPCH TCHP", "flt ", "TPCD"},
    SensorRule{"acpitz", temperature, any, "THRM TP++", "flt "},

    // Super I/O chips
    SensorRule{superIO, temperature, "SYSTIN", "TSYS", "flt "},
    SensorRule{superIO, temperature, "CPUTIN", "TCPU", "flt "},
    SensorRule{superIO, temperature, "AUXTIN|AUXTIN0", "TAUX", "flt "},
    SensorRule{superIO, temperature, "PECI Agent *|TSI*_TEMP|AMD TSI*|SMBUSMASTER *", "TC=J TC+J", "flt "},
    SensorRule{superIO, temperature, "PCH_CPU_TEMP|PCH_CHIP_CPU_MAX_TEMP", "TC+D", "flt "},
    SensorRule{superIO, temperature, "PCH_DIM*_TEMP", "TM^P TM++", "flt "},
    SensorRule{superIO, temperature, "PCH_CHIP_TEMP", "TPCH TP0P", "flt "},
    SensorRule{superIO, temperature, "temp1|temp2", "TMB# TP++", "flt "},
    SensorRule{nuvotonSuperIO, voltage, "in0", "VCOR VCPU", "flt "},
    SensorRule{nuvotonSuperIO, voltage, "in3", "V33R V3V3", "flt "},
    SensorRule{nuvotonSuperIO, voltage, "in7", "VSB3", "flt "},
    SensorRule{nuvotonSuperIO, voltage, "in8", "VBAT", "flt "},

    // Batteries and chargers
    SensorRule{batteries, voltage, any, "B@AV", "flt ", "B?AV"},
    SensorRule{batteries, current, any, "B@Am", "flt ", "B?AC|B?Am"},
    SensorRule{batteries, power, any, "B@AP", "flt ", "B?AP"},
    SensorRule{batteries, charge, "charge_now|energy_now", "B@RM", "flt ", "B?RM"},
    SensorRule{batteries, charge, "charge_full|energy_full", "B@FC", "flt ", "B?FC"},
    SensorRule{batteries, charge, "charge_full_design|energy_full_design", "B@DC", "flt ", "B?DC"},
    SensorRule{batteries, count, "cycle_count", "B@CT", "ui32", "B?CT"},
    SensorRule{batteries, percent, any, "B@SC", "flt ", "BRSC"},
    SensorRule{batteries, duration, "time_to_full_now", "B@TF", "flt ", "B?TF"},
    SensorRule{batteries, duration, "time_to_empty_now", "B@TE", "flt ", "B?TE"},
    SensorRule{batteries, text, "status", "B@St", "ch8*", "B?St"},
    SensorRule{batteries, temperature, any, "TB@T TB++", "flt ", "TB0T"},
    SensorRule{peripherals, voltage, any, "B+AV", "flt "},
    SensorRule{peripherals, current, any, "B+Am", "flt "},
    SensorRule{peripherals, charge, "charge_now|energy_now", "B+RM", "flt "},
    SensorRule{peripherals, charge, "charge_full|energy_full", "B+FC", "flt "},
    SensorRule{peripherals, charge, "charge_full_design|energy_full_design", "B+DC", "flt "},
    SensorRule{peripherals, count, "cycle_count", "B+CT", "ui32"},
    SensorRule{peripherals, percent, any, "B+SC", "flt "},
    SensorRule{peripherals, text, "status", "B+St", "ch8*"},
    SensorRule{peripherals, temperature, any, "TB++", "flt "},
    SensorRule{chargers, flag, "online", "CH0B CH^B", "flag", "CH0B"},
    SensorRule{chargers, voltage, any, "CH0V", "flt ", "CH0V"},
    SensorRule{chargers, current, any, "CH0C", "flt ", "CH0C"},
    SensorRule{chargers, power, any, "CH0W ACPW", "flt ", "CH0W|ACPW"},

    // The same where only their monitors are published
    SensorRule{batteryMonitors, voltage, any, "B@AV", "flt ", "B?AV"},
    SensorRule{batteryMonitors, current, any, "B@Am", "flt ", "B?AC|B?Am"},
    SensorRule{batteryMonitors, power, any, "B@AP", "flt ", "B?AP"},
    SensorRule{batteryMonitors, temperature, any, "TB@T TB++", "flt ", "TB0T"},
    SensorRule{chargerMonitors, voltage, any, "CH0V", "flt "},
    SensorRule{chargerMonitors, current, any, "CH0C", "flt "},

    // Any chip, by what its label says
    SensorRule{any, temperature, "*vrm*|*vreg*", "TVRM", "flt "},
    SensorRule{any, temperature, "*mos*", "TMOS", "flt "},
    SensorRule{any, temperature, "*chipset*|*pch*", "TPCH TCHP TP0P", "flt "},
    SensorRule{any, temperature, "*ambient*", "TAMB TA0P", "flt "},
    SensorRule{any, temperature, "*gpu*|*video*", "TGPU", "flt "},
    SensorRule{any, temperature, "*dimm*|*memory*", "TM^P TM0P TM++", "flt "},
    SensorRule{any, temperature, "*battery*", "TB0T TB1T TB++", "flt "},
    SensorRule{any, temperature, "*cpu*|*processor*|*package*", "TCPU TC+D", "flt "},
    SensorRule{any, temperature, "mb|mb *|*board*", "TMB1 TMB2", "flt "},
    SensorRule{any, temperature, "*system*|sys", "TSYS", "flt "},
    SensorRule{any, temperature, "*ssd*|*hdd*|*drive*|*nand*", "TH0P TH^P TH++", "flt "},
    SensorRule{any, temperature, "*wifi*|*wi-fi*|*wlan*", "TW0P TW++", "flt "},
    SensorRule{any, temperature, "t?sensor*|aux*", "TAUX", "flt "},
    SensorRule{any, voltage, "*vcore*|*cpu core*|vddcr_cpu|cpu_core", "VCOR VCPU", "flt "},
    SensorRule{any, voltage, "+12*|12v*|*+12v", "V12R", "flt "},
    SensorRule{any, voltage, "*3vsb*|*+3.3vsb*", "VSB3", "flt "},
    SensorRule{any, voltage, "*5vsb*", "VSB5", "flt "},
    SensorRule{any, voltage, "+5*|5v*|*+5v", "V05R V50R V5VP", "flt "},
    SensorRule{any, voltage, "+3.3*|3.3v*|3vcc|*+3.3v", "V33R V3V3", "flt "},
    SensorRule{any, voltage, "*vbat*|*battery*", "VBAT", "flt "},
    SensorRule{any, voltage, "*vsoc*|*vddcr_soc*|*system agent*", "VC0S", "flt "},
    SensorRule{any, voltage, "*dram*|*ddr*|*vdimm*|*vddq*", "VC0M", "flt "},
    SensorRule{any, current, "*cpu*|*core*", "IC0C", "flt "},
    SensorRule{any, power, "*cpu*|*package*", "PCPR", "flt "},

    // What is left, by its kind
    SensorRule{any, temperature, any, "TA++ TP++ TL++ TI++", "flt "},
    SensorRule{any, voltage, any, "VIN# VI++ VX++", "flt "},
    SensorRule{any, current, any, "IX++ IY++", "flt "},
    SensorRule{any, power, any, "PC++", "flt "},
    SensorRule{any, energy, any, "PC++", "flt "},
    SensorRule{any, fan, any, "F+Ac Fan+", "ui16"},
};

constexpr std::array fanAttributes{
    FanAttributeRule{fanMinimum, "applesmc", "Mn", "fpe2"},
    FanAttributeRule{fanMaximum, "applesmc", "Mx", "fpe2"},
    FanAttributeRule{fanTarget, "applesmc", "Tg", "fpe2"},
    FanAttributeRule{fanSafe, "applesmc", "Sf", "fpe2"},
    FanAttributeRule{fanMode, "applesmc", "Md", "ui8 "},
    FanAttributeRule{fanMinimum, "macsmc_hwmon", "Mn", "flt "},
    FanAttributeRule{fanMaximum, "macsmc_hwmon", "Mx", "flt "},
    FanAttributeRule{fanTarget, "macsmc_hwmon", "Tg", "flt "},
};

constexpr std::array registryChips{
    RegistryRule{superIO, "HwmonSuperIO"},
    RegistryRule{boardMonitors, "HwmonACPISensors"},
};

} // namespace

std::span<const SensorRule> sensorRules() { return rules; }

std::span<const FanAttributeRule> fanAttributeRules() { return fanAttributes; }

std::span<const RegistryRule> registryRules() { return registryChips; }

} // namespace kelvinbar
