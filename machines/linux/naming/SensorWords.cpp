#include "machines/linux/naming/SensorWords.h"

#include "machines/linux/naming/TextPattern.h"

#include <array>

namespace kelvinbar {

namespace {

using enum SensorKind;
using enum TellApart;
using Category = SMCCategory;

constexpr bool wholeLabels = true;
constexpr bool whole = true;
constexpr auto anyKind = std::nullopt;
constexpr std::string_view any = "*";
constexpr std::string_view itself = "*";

// Chips that rows of several tables name.
constexpr std::string_view amdProcessors = "k10temp|zenpower";
constexpr std::string_view graphics = "amdgpu|radeon|nouveau|nvidia*|i915|xe|gpu*thermal|panfrost*|v3d*";
constexpr std::string_view memoryModules = "spd5118|jc42|ee1004|peci_dimmtemp*|tse200?|i5k_amb";
constexpr std::string_view wirelessCards =
    "iwlwifi*|ath?k*|ath??k*|mt7*|rtw*|rtl8*|brcm*|wlan*|wlp*|wlx*|wil6210*|mwifiex*";
constexpr std::string_view networkPhys = "r8169_*|*mdio*|*_mii*|*:??";
constexpr std::string_view networkCards = "ixgbe|i350bb|igb|igc|ice|i40e|e1000*|tg3|bnx*|mlx*|cxgb*|qede|sfc*"
                                          "|nfp|atlantic|macb*|lan7*|eth*|enp*|eno*|ens*|enx*";
constexpr std::string_view superIO = "nct6*|nct7*|it8*|f71*|f8*|w836*|w837*|w8378*|sch56*|sch311x|dme1737|"
                                     "pc87*|smsc47*|vt1211|vt8231|via686a|lm78|asb100|emc6w201|sis5595";
constexpr std::string_view nuvotonSuperIO = "nct677*|nct679*|nct610*|w83627ehf|w83627dhg*|w83667hg*";
constexpr std::string_view batteries = "battery|BAT?|CMB?|macsmc_battery|axp*battery|*_battery|*_fuel_gauge|"
                                       "bq27*|max170*|sbs_*";
constexpr std::string_view supplies = "battery|peripheral|charger|usb";
constexpr std::string_view thermometers =
    "lm75*|tmp*|adt7*|ds16*|ds620|max66*|lm7?|mcp98*|stts751|w1_slave_temp";
constexpr std::string_view climateSensors = "sht*|hih6130|aht??|htu*|chipcap2|hs3001|si70*|bme*|dht*";
constexpr std::string_view coolingFans = "pwmfan|gpio_fan|acpi_fan|fan|fan_*|emc230?|g76?*";

constexpr std::array devices{
    // Processors
    DeviceRow{"coretemp", "CPU", Category::cpu},
    DeviceRow{amdProcessors, "CPU", Category::cpu},
    DeviceRow{"k8temp|via_cputemp|sbtsi*|peci_cputemp*", "CPU", Category::cpu},
    DeviceRow{"rapl", "CPU", Category::cpu, bySocket},
    DeviceRow{"fam15h_power|amd_energy|zenergy|sbrmi", "CPU", Category::cpu},
    DeviceRow{"cpu*thermal|*core_thermal|cluster*_thermal|x86_pkg_temp", "CPU", Category::cpu},
    DeviceRow{"soc_dts*|soc*thermal|scpi_sensors|scmi_sensors|apss*", "SoC", Category::cpu},

    // Graphics
    DeviceRow{graphics, "GPU", Category::gpu},

    // Memory and drives
    DeviceRow{memoryModules, "Memory DIMM", Category::memory, bySlot},
    DeviceRow{"*ddr*thermal|*mem*thermal", "Memory", Category::memory},
    DeviceRow{"nvme", "NVMe", Category::storage, byModel},
    DeviceRow{"drivetemp", "SATA Drive", Category::storage, byModel},
    DeviceRow{"ufs*", "UFS Drive", Category::storage, byModel},

    // Apple's controller
    DeviceRow{"macsmc_hwmon", mainboardWords, Category::thermal, byNumber, wholeLabels},

    // Batteries and chargers
    DeviceRow{"hid*battery*|peripheral", "Device Battery", Category::battery},
    DeviceRow{batteries, "Battery", Category::battery},
    DeviceRow{"charger|AC|AC?|ACAD|ADP?|macsmc_ac", "Charger", Category::battery},
    DeviceRow{"usb|ucsi*|tcpm*|cros_usbpd_charger*", "USB-C", Category::power},

    // Networks
    DeviceRow{wirelessCards, "Wi-Fi", Category::thermal, byInterface},
    DeviceRow{networkPhys, "Ethernet PHY", Category::thermal, byInterface},
    DeviceRow{networkCards, "Ethernet", Category::thermal, byInterface},
    DeviceRow{"sfp*", "SFP Module", Category::thermal, byInterface},

    // Chipset and firmware
    DeviceRow{"pch_*|i5500_temp|intel_pch*", "Chipset"},
    DeviceRow{"acpitz", "ACPI Thermal Zone"},
    DeviceRow{"power_meter", "System Power", Category::power},

    // Mainboards and notebooks
    DeviceRow{superIO, mainboardWords},
    DeviceRow{"asus_wmi_sensors|asus_wmi_ec_sensors|asus-ec-sensors|asusec|atk0110|abituguru*|hp_wmi_sensors",
              mainboardWords, Category::thermal, byNumber, wholeLabels},
    DeviceRow{"gigabyte_wmi|msi_wmi_platform|lm85*|adt746?|w83l*|f75*|lm87|lm93|lm96*|fsc*|"
              "ftsteutates|"
              "adm1???|gl5*|aem*|ibm*|aspeed*|cgbc*|qnap*|nsa320",
              mainboardWords},
    DeviceRow{"thinkpad", "ThinkPad"},
    DeviceRow{"dell_smm|dell_ddv|i8k", "Dell"},
    DeviceRow{"asus|asus_custom_fan_curve", "ASUS"},
    DeviceRow{"hp", "HP"},
    DeviceRow{"acer*", "Acer"},
    DeviceRow{"legion*|ideapad*|lenovo*|yoga*", "Lenovo"},
    DeviceRow{"toshiba*", "Toshiba"},
    DeviceRow{"surface*", "Surface"},
    DeviceRow{"steamdeck*|jupiter*", "Steam Deck"},
    DeviceRow{"oxpec|oxp*|gpdfan|ayaneo*|ayn*", "Handheld"},
    DeviceRow{"cros_ec*|framework*", "Laptop"},
    DeviceRow{"rp1_adc", "RP1"},
    DeviceRow{"rpi_volt", "Raspberry Pi"},

    // Coolers, fan controllers, power supplies
    DeviceRow{coolingFans, "Cooling Fan"},
    DeviceRow{"corsairpsu", "Power Supply"},
    DeviceRow{"corsair*", "Corsair"},
    DeviceRow{"kraken*|x53|z53|x63|z63|x73|z73|nzxt*", "NZXT"},
    DeviceRow{"d5next|octo|quadro|farbwerk*|highflow*|leakshield|aquaero|aquastream*|poweradjust*|mps_flow",
              "Aquacomputer"},
    DeviceRow{"rog_ryujin|asus_rog*", "ROG Ryujin"},
    DeviceRow{"*waterforce*", "Waterforce"},
    DeviceRow{"arctic*", "Arctic"},

    // Stand-alone sensors
    DeviceRow{thermometers, "Thermometer"},
    DeviceRow{climateSensors, "Climate Sensor"},
    DeviceRow{"ina2*|ina3*|ina7*|ina4*|sy7636*|isl28022", "Power Monitor"},
    DeviceRow{"iio_hwmon|ntc_thermistor|*_adc", "Board"},
    DeviceRow{"ups*", "UPS", Category::battery},
};

constexpr std::array labels{
    // Processors
    LabelRow{"coretemp", temperature, "Package id *|Physical id *", "Package"},
    LabelRow{"coretemp", temperature, "Core *|P-Core *|E-Core *", itself, whole},
    LabelRow{amdProcessors, temperature, "Tccd*", "CCD #"},
    LabelRow{amdProcessors, voltage, "SVI2_Core", "Core Voltage"},
    LabelRow{amdProcessors, voltage, "SVI2_SoC", "SoC Voltage"},
    LabelRow{amdProcessors, current, "SVI2_C_Core|Icore", "Core Current"},
    LabelRow{amdProcessors, current, "SVI2_C_SoC|Isoc", "SoC Current"},
    LabelRow{amdProcessors, power, "SVI2_P_Core", "Core Power"},
    LabelRow{amdProcessors, power, "SVI2_P_SoC", "SoC Power"},
    LabelRow{"amd_energy|zenergy", energy, "Esocket*", "Socket # Power"},
    LabelRow{"amd_energy|zenergy", energy, "Ecore*", "Core # Power"},
    LabelRow{"rapl", energy, "package-*", "Package Power"},
    LabelRow{"rapl", energy, "core", "Cores Power"},
    LabelRow{"rapl", energy, "uncore", "Uncore Power"},
    LabelRow{"rapl", energy, "dram", "Memory Power"},
    LabelRow{"rapl", energy, "psys", "Platform Power", whole},

    // Graphics
    LabelRow{graphics, temperature, "edge", "Edge"},
    LabelRow{graphics, temperature, "junction|hotspot", "Hotspot"},
    LabelRow{graphics, temperature, "mem|vram", "Memory"},
    LabelRow{graphics, temperature, "pkg", "Package"},
    LabelRow{graphics, temperature, "mctrl", "Memory Controller"},
    LabelRow{graphics, temperature, "pcie", "PCIe"},
    LabelRow{graphics, voltage, "vddgfx", "Voltage"},
    LabelRow{graphics, voltage, "vddnb", "SoC Voltage"},
    LabelRow{graphics, voltage, "vddboard", "Board Voltage"},
    LabelRow{graphics, power, "PPT", "Power"},
    LabelRow{graphics, power, "fastPPT", "Power, Fast Limit"},
    LabelRow{graphics, power, "slowPPT", "Power, Slow Limit"},
    LabelRow{graphics, anyKind, "card", "Card Power"},
    LabelRow{graphics, energy, "pkg", "Package Power"},
    LabelRow{graphics, power, "pkg", "Package Power"},
    LabelRow{graphics, fan, "pkg", "Fan"},
    LabelRow{any, frequency, "sclk", "Clock"},
    LabelRow{any, frequency, "mclk", "Memory Clock"},

    // Devices with one sensor
    LabelRow{memoryModules, temperature, "temp1", ""},
    LabelRow{"drivetemp|pch_*|soc_dts*", temperature, "temp1", ""},
    LabelRow{"acpitz", temperature, "temp?", ""},
    LabelRow{wirelessCards, temperature, "temp1", ""},
    LabelRow{networkPhys, temperature, "temp1", ""},
    LabelRow{networkCards, temperature, "temp1|loc1", ""},
    LabelRow{networkCards, temperature, "PHY Temperature", "PHY"},
    LabelRow{networkCards, temperature, "MAC Temperature", "MAC"},
    LabelRow{networkCards, temperature, "asic", "ASIC"},
    LabelRow{thermometers, temperature, "temp1", ""},
    LabelRow{"power_meter", power, "power1", ""},
    LabelRow{coolingFans, anyKind, "fan?|pwm?", ""},

    // Apple's controller
    LabelRow{"macsmc_hwmon", temperature, "WiFi/BT Module Temp", "Wi-Fi/Bluetooth Module"},
    LabelRow{"macsmc_hwmon", temperature, "Charge Regulator Temp", "Charge Regulator"},
    LabelRow{"macsmc_hwmon", temperature, "NAND Flash Temperature", "NAND Flash"},

    // Super I/O chips: the inputs for the chip's own supply
    LabelRow{nuvotonSuperIO, voltage, "in0", "Vcore"},
    LabelRow{nuvotonSuperIO, voltage, "in2", "AVCC"},
    LabelRow{nuvotonSuperIO, voltage, "in3", "+3.3V"},
    LabelRow{nuvotonSuperIO, voltage, "in7", "3VSB"},
    LabelRow{nuvotonSuperIO, voltage, "in8", "Vbat"},

    // Notebooks
    LabelRow{"asus*", fan, "cpu_fan", "CPU Fan", whole},
    LabelRow{"asus*", fan, "gpu_fan", "GPU Fan", whole},
    LabelRow{"asus*", fan, "mid_fan", "Middle Fan", whole},

    // Power supplies
    LabelRow{"corsairpsu", anyKind, "v_in", "Input Voltage"},
    LabelRow{"corsairpsu", anyKind, "psu fan", "Fan"},
    LabelRow{"corsairpsu", anyKind, "vrm temp", "VRM"},
    LabelRow{"corsairpsu", anyKind, "case temp", "Case"},
    LabelRow{any, voltage, "vin", "Input Voltage"},
    LabelRow{any, voltage, "vout?", "Output Voltage #"},
    LabelRow{any, current, "iin", "Input Current"},
    LabelRow{any, current, "iout?", "Output Current #"},
    LabelRow{any, power, "pin", "Input Power"},
    LabelRow{any, power, "pout?", "Output Power #"},

    // Batteries and chargers
    LabelRow{supplies, voltage, "voltage_now", "Voltage"},
    LabelRow{supplies, current, "current_now", "Current"},
    LabelRow{supplies, power, "power_now", "Power"},
    LabelRow{supplies, charge, "charge_now|energy_now", "Charge"},
    LabelRow{supplies, charge, "charge_full|energy_full", "Full Charge"},
    LabelRow{supplies, charge, "charge_full_design|energy_full_design", "Design Charge"},
    LabelRow{supplies, count, "cycle_count", "Cycles"},
    LabelRow{supplies, percent, "capacity", "Level"},
    LabelRow{any, temperature, "temp", "Temperature"},
    LabelRow{any, temperature, "temp_ambient|temp ambient", "Ambient Temperature"},
    LabelRow{supplies, duration, "time_to_empty_now", "Time to Empty"},
    LabelRow{supplies, duration, "time_to_full_now", "Time to Full"},
    LabelRow{supplies, text, "status", "Status"},
    LabelRow{supplies, flag, "online", "Connected"},
};

constexpr std::array categories{
    CategoryRow{"macsmc_hwmon", anyKind, "Battery*", Category::battery},
    CategoryRow{any, temperature, "*gpu*|*video*|*graphics*", Category::gpu},
    CategoryRow{any, temperature, "*ssd*|*hdd*|*drive*|*nand*|*nvme*|*m.2*", Category::storage},
    CategoryRow{any, temperature, "*dimm*|*memory*|*dram*", Category::memory},
    CategoryRow{any, temperature, "*battery*", Category::battery},
    CategoryRow{any, temperature, "*cpu*|*processor*|*peci*|*tsi*_temp*|*amd tsi*|*package*", Category::cpu},
};

} // namespace

std::span<const DeviceRow> deviceRows() { return devices; }

std::span<const LabelRow> labelRows() { return labels; }

std::span<const CategoryRow> categoryRows() { return categories; }

const DeviceRow* deviceRowOf(std::string_view type) {
    for (const DeviceRow& row : devices) {
        if (fitsPattern(row.chips, type)) return &row;
    }
    return nullptr;
}

const LabelRow* labelRowOf(std::string_view type, SensorKind kind, std::string_view label) {
    for (const LabelRow& row : labels) {
        const bool isOfKind = !row.kind || *row.kind == kind;
        if (isOfKind && fitsPattern(row.chips, type) && fitsPattern(row.labels, label)) return &row;
    }
    return nullptr;
}

std::string_view kindWords(SensorKind kind) {
    switch (kind) {
    case temperature:
        return "Temperature";
    case voltage:
        return "Voltage";
    case current:
        return "Current";
    case power:
    case energy:
        return "Power";
    case fan:
    case percent:
        return "Fan";
    case frequency:
        return "Clock";
    case humidity:
        return "Humidity";
    default:
        return "Value";
    }
}

} // namespace kelvinbar
