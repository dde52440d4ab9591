#pragma once

#include "catalogue/SMCCategory.h"
#include "machines/linux/naming/SensorChannel.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

/// The tables behind the names of kernel sensors. Patterns are matched by fitsPattern(); the first row that
/// matches wins, so specific rows precede general ones. docs/linux.md contains the same tables, and a test
/// compares the two.
namespace kelvinbar {

/// How several devices of one row are distinguished.
enum class TellApart : std::uint8_t {
    byNumber,    ///< "GPU", "GPU 2"
    byModel,     ///< "NVMe Samsung SSD 980"; equal models by number
    byInterface, ///< "Wi-Fi wlan1"; without an interface by number
    bySocket,    ///< "CPU", "CPU 2", numbered by the device itself
    bySlot,      ///< "Memory DIMM 2": likewise, with a number even if there is only one
};

/// The words for the monitoring chips of a mainboard.
inline constexpr std::string_view mainboardWords = "Mainboard";

/// The words for a device, and the category of its readings.
struct DeviceRow {
    std::string_view chips; ///< pattern of the type (see typeOf)
    std::string_view words;
    SMCCategory category = SMCCategory::thermal; ///< unless the kind has a category
    TellApart tellApart = TellApart::byNumber;
    /// Whether the driver's labels are complete names ("Chassis Fan 1"), without the device in front.
    bool hasWholeLabels = false;
};

/// The words for a label on some chips.
struct LabelRow {
    std::string_view chips;
    std::optional<SensorKind> kind; ///< empty for any kind
    std::string_view labels;        ///< pattern; a channel without a label matches by its feature ("temp1")
    std::string_view words;         ///< "#": the last number in the label; "*": the label; empty: no words
    bool isWhole = false;           ///< without the device in front
};

/// The category of a name with these words, whatever its device.
struct CategoryRow {
    std::string_view chips;
    std::optional<SensorKind> kind;
    std::string_view names;
    SMCCategory category;
};

std::span<const DeviceRow> deviceRows();
std::span<const LabelRow> labelRows();
std::span<const CategoryRow> categoryRows();

/// The row of a type; null when no row matches.
const DeviceRow* deviceRowOf(std::string_view type);

/// The row for a channel with this label or feature; null when no row matches and the label is used as it is.
const LabelRow* labelRowOf(std::string_view type, SensorKind kind, std::string_view label);

/// The words for a channel without a label, without its number: "Temperature".
std::string_view kindWords(SensorKind kind);

} // namespace kelvinbar
