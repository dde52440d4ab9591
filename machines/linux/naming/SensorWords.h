#pragma once

#include "catalogue/SMCCategory.h"
#include "machines/linux/naming/SensorChannel.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

/// The tables behind the names of kernel sensors. Patterns are those of fitsPattern; the first row that
/// matches counts. docs/linux.md has the same tables, and a test compares the two.
namespace kelvinbar {

/// How two devices of one row are told apart.
enum class TellApart : std::uint8_t {
    byNumber,    ///< "GPU", "GPU 2"
    byModel,     ///< "NVMe Samsung SSD 980", by number where models are equal
    byInterface, ///< "Wi-Fi wlan1", by number where there is none
    bySocket,    ///< "CPU", "CPU 2": the device tells which it is
    bySlot,      ///< "Memory DIMM 2": the same, but the number stands in the name of every device
};

/// What the controllers of a mainboard are called.
inline constexpr std::string_view mainboardWords = "Mainboard";

/// What a device is called, and where its readings belong.
struct DeviceRow {
    std::string_view chips; ///< pattern of the type: the driver's name of the chip, "battery", "charger", …
    std::string_view words;
    SMCCategory category = SMCCategory::thermal; ///< of temperatures and of what has no category by kind
    TellApart tellApart = TellApart::byNumber;
    /// Whether the driver's labels are whole names ("Chassis Fan 1"), to which the device adds nothing.
    bool hasWholeLabels = false;
};

/// What a label is called on some chips.
struct LabelRow {
    std::string_view chips;
    std::optional<SensorKind> kind; ///< nothing: of any kind
    std::string_view labels;        ///< pattern; a channel without a label goes by its feature ("temp1")
    std::string_view
        words; ///< "#" is the last number in the label, "*" the label; empty: the device's words do
    bool isWhole = false; ///< whether the device's words are left out
};

/// A category that a name has by its words, whatever its device.
struct CategoryRow {
    std::string_view chips;
    std::optional<SensorKind> kind;
    std::string_view names;
    SMCCategory category;
};

std::span<const DeviceRow> deviceRows();
std::span<const LabelRow> labelRows();
std::span<const CategoryRow> categoryRows();

/// The row of a type; nullptr for a device that no row knows.
const DeviceRow* deviceRowOf(std::string_view type);

/// The row for a channel with this label or feature; nullptr when the label stays as it is.
const LabelRow* labelRowOf(std::string_view type, SensorKind kind, std::string_view label);

/// What a channel without a label is called, without its number: "Temperature".
std::string_view kindWords(SensorKind kind);

} // namespace kelvinbar
