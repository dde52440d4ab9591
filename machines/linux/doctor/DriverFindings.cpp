#include "machines/linux/doctor/DriverFindings.h"

#include "base/Text.h"
#include "machines/linux/applesmc/AppleSMCChannels.h"
#include "machines/linux/files/DevicePath.h"
#include "machines/linux/files/SystemFile.h"
#include "machines/linux/files/VisitedRead.h"
#include "machines/linux/naming/SensorWords.h"
#include "machines/linux/naming/TextPattern.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace kelvinbar {

namespace {

namespace fs = std::filesystem;

/// The driver for the temperature of a vendor's processors.
struct ProcessorRow {
    std::string_view vendor; ///< as in /proc/cpuinfo
    std::string_view module;
    std::string_view chips; ///< pattern of the chips that show it, also those of other drivers
};

constexpr std::array processorRows{
    ProcessorRow{"GenuineIntel", "coretemp", "coretemp"},
    ProcessorRow{"AuthenticAMD", "k10temp", "k10temp|k8temp|zenpower"},
    ProcessorRow{"HygonGenuine", "k10temp", "k10temp"},
    ProcessorRow{"CentaurHauls", "via-cputemp", "via_cputemp"},
};

/// Cases, by the number in the firmware's tables (SMBIOS), whose boards usually have a monitoring chip:
/// desktops, towers and small ones.
constexpr std::array<std::int64_t, 8> desktopCases{3, 4, 5, 6, 7, 15, 16, 35};

std::string loadCommand(std::string_view module) {
    return std::string("\"sudo modprobe ").append(module).append("\"");
}

std::optional<std::string> chipName(const fs::path& entry) {
    const auto name = systemFileLine(entry / "name");
    return name ? name : systemFileLine(entry / "device/name");
}

std::optional<std::string> visitedLine(const fs::path& file) {
    return visitedRead(file, [&] { return systemFileLine(file); });
}

std::vector<std::string> visitedFolder(const fs::path& folder) {
    return visitedRead(folder, [&] { return folderEntries(folder); });
}

/// The machine as far as the rules look at it.
class Hardware {
  public:
    explicit Hardware(const fs::path& root) : root_(root) {
        for (const fs::path& entry : visitedClassEntries(root, "hwmon")) {
            auto name = visitedRead(entry, [&] { return chipName(entry); });
            if (name) chips_.push_back(*std::move(name));
        }
    }

    /// The first chip of the hwmon class whose name `fits`; no value without one.
    template <typename Fits>
    [[nodiscard]] std::optional<std::string> chipThat(const Fits& fits) const {
        const auto found = std::ranges::find_if(chips_, fits);
        return found == chips_.end() ? std::nullopt : std::optional(*found);
    }

    [[nodiscard]] std::optional<std::string> chipLike(std::string_view pattern) const {
        return chipThat([&](const std::string& chip) { return fitsPattern(pattern, chip); });
    }

    /// Loaded, or part of the kernel.
    [[nodiscard]] bool hasModule(std::string_view module) const {
        return isThere(root_ / "sys/module" / replacedAll(module, "-", "_"));
    }

    [[nodiscard]] std::string processorValue(std::string_view name) const {
        const fs::path file = root_ / "proc/cpuinfo";
        return visitedRead(file, [&] { return procValue(file, name); }).value_or("");
    }

    /// A text of the firmware, such as "board_vendor".
    [[nodiscard]] std::string firmwareText(std::string_view name) const {
        return visitedLine(root_ / "sys/class/dmi/id" / name).value_or("");
    }

    [[nodiscard]] bool isVirtual() const {
        return contains(std::string(1, ' ').append(processorValue("flags")).append(" "), " hypervisor ");
    }

    [[nodiscard]] bool isFromApple() const { return firmwareText("sys_vendor").starts_with("Apple"); }

    [[nodiscard]] bool isInDesktopCase() const {
        const fs::path file = root_ / "sys/class/dmi/id/chassis_type";
        const auto number = visitedRead(file, [&] { return systemFileNumber(file); });
        return number && std::ranges::find(desktopCases, *number) != desktopCases.end();
    }

    /// Whether there is a drive behind the SCSI layer that speaks ATA.
    [[nodiscard]] bool hasSataDrive() const {
        return std::ranges::any_of(visitedFolder(root_ / "sys/block"), [this](const std::string& drive) {
            return drive.starts_with("sd") &&
                   visitedLine(root_ / "sys/block" / drive / "device/vendor") == "ATA";
        });
    }

    [[nodiscard]] bool hasEnergyCounters() const {
        return !visitedFolder(root_ / "sys/class/powercap").empty();
    }

    /// The folders of the graphics cards of a vendor ("0x10de").
    [[nodiscard]] std::vector<fs::path> graphicsCards(std::string_view vendor) const {
        const fs::path devices = root_ / "sys/bus/pci/devices";
        std::vector<fs::path> cards;
        for (const std::string& name : visitedFolder(devices)) {
            const fs::path device = devices / name;
            const bool isCard = visitedLine(device / "class").value_or("").starts_with("0x03");
            if (isCard && visitedLine(device / "vendor") == vendor) cards.push_back(device);
        }
        std::ranges::sort(cards);
        return cards;
    }

  private:
    fs::path root_;
    std::vector<std::string> chips_;
};

Finding read(std::string subject, const std::string& chip) {
    return {.subject = std::move(subject), .found = "read through " + chip};
}

Finding notLoaded(std::string subject, std::string_view module, std::string advice) {
    return {.subject = std::move(subject),
            .state = FindingState::problem,
            .found = std::string("the driver ").append(module).append(" is not loaded"),
            .advice = std::move(advice)};
}

/// A driver that is loaded and shows nothing.
Finding findsNothing(std::string subject, std::string_view module, std::string advice) {
    return {.subject = std::move(subject),
            .state = FindingState::note,
            .found =
                std::string("the driver ").append(module).append(" is loaded, but finds nothing to read"),
            .advice = std::move(advice)};
}

std::optional<Finding> processorFinding(const Hardware& hardware) {
    constexpr auto subject = "processor";
    const auto* const row =
        std::ranges::find(processorRows, hardware.processorValue("vendor_id"), &ProcessorRow::vendor);
    if (row == processorRows.end()) return std::nullopt;
    if (const auto chip = hardware.chipLike(row->chips)) return read(subject, *chip);
    if (hardware.hasModule(row->module)) return findsNothing(subject, row->module, "");
    return notLoaded(subject, row->module, "Load it with " + loadCommand(row->module));
}

bool isMainboardChip(const std::string& chip) {
    const DeviceRow* const row = deviceRowOf(chip);
    return row != nullptr && row->words == mainboardWords;
}

std::optional<Finding> appleFinding(const Hardware& hardware) {
    constexpr auto subject = "Apple's controller";
    constexpr std::string_view module = appleSMCChip;
    if (hardware.chipLike(module) || hardware.hasModule(module)) return std::nullopt;
    return notLoaded(subject, module, "Load it with " + loadCommand(module));
}

std::optional<Finding> mainboardFinding(const Hardware& hardware) {
    constexpr auto subject = "mainboard";
    constexpr auto detection = "\"sudo sensors-detect\" (package lm-sensors) finds out which driver it needs";
    if (hardware.isFromApple()) return appleFinding(hardware);
    if (const auto chip = hardware.chipThat(isMainboardChip)) return read(subject, *chip);
    if (!hardware.isInDesktopCase()) return std::nullopt;
    const bool isGigabyte = hardware.firmwareText("board_vendor").starts_with("Gigabyte");
    const std::string_view module = isGigabyte ? "it87" : "nct6775";
    if (hardware.hasModule(module)) {
        return findsNothing(subject, module, std::string("For another chip, ") + detection);
    }
    return notLoaded(subject, module, "Try " + loadCommand(module) + "; if nothing appears, " + detection);
}

std::optional<Finding> driveFinding(const Hardware& hardware) {
    constexpr auto subject = "SATA drives";
    constexpr std::string_view module = "drivetemp";
    if (!hardware.hasSataDrive()) return std::nullopt;
    if (const auto chip = hardware.chipLike(module)) return read(subject, *chip);
    if (hardware.hasModule(module)) return findsNothing(subject, module, "");
    return notLoaded(subject, module,
                     "Load it with " + loadCommand(module) + "; some drives then sleep later, or not at all");
}

/// The counters of both vendors' processors have one driver.
std::optional<Finding> energyFinding(const Hardware& hardware) {
    constexpr std::string_view module = "intel_rapl_msr";
    const std::string vendor = hardware.processorValue("vendor_id");
    const bool mayHaveCounters = vendor == "GenuineIntel" || vendor == "AuthenticAMD";
    if (!mayHaveCounters || hardware.hasEnergyCounters() || hardware.hasModule(module)) return std::nullopt;
    Finding finding = notLoaded("energy counters", module, "Load it with " + loadCommand(module));
    finding.state = FindingState::note;
    return finding;
}

/// Only the kernel's own driver shows sensors of NVIDIA's cards.
std::optional<Finding> nvidiaFinding(const fs::path& card) {
    if (!visitedFolder(card / "hwmon").empty()) return std::nullopt;
    const std::string driver = linkTarget(card / "driver").filename().string();
    Finding finding{.subject = "NVIDIA graphics card", .state = FindingState::problem, .found = {}};
    if (driver == "nvidia") {
        finding.found = "its own driver publishes no sensor to the kernel";
        finding.advice = "Ask it with \"nvidia-smi\"; Kelvinbar reads the card with the driver nouveau only";
    } else {
        finding.found = driver.empty() ? "no driver uses it" : "its driver " + driver + " shows no sensor";
        finding.state = FindingState::note;
    }
    return finding;
}

} // namespace

std::vector<Finding> driverFindings(const fs::path& root) {
    const Hardware hardware(root);
    std::vector<Finding> findings;
    const auto add = [&](std::optional<Finding> finding) {
        if (finding) findings.push_back(*std::move(finding));
    };
    if (hardware.isVirtual()) {
        add(Finding{.subject = "machine",
                    .state = FindingState::note,
                    .found = "virtual; the sensors belong to its host"});
    } else {
        add(processorFinding(hardware));
        add(mainboardFinding(hardware));
        add(driveFinding(hardware));
        add(energyFinding(hardware));
    }
    // A host may hand a card on to a virtual machine.
    for (const fs::path& card : hardware.graphicsCards("0x10de")) add(nvidiaFinding(card));
    return findings;
}

} // namespace kelvinbar
