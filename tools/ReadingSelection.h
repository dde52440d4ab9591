#pragma once

#include "catalogue/KeySet.h"
#include "catalogue/SMCReading.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Which readings to print, and in which order. Pure functions; any thread.
namespace kelvinbar {

enum class ReadingOrder : std::uint8_t {
    given,    ///< of the keys that were asked for, then by key
    key,      ///< natural
    name,     ///< natural
    value,    ///< by unit, and of one unit the highest first; texts last
    category, ///< of the catalogue, then by key
};

/// The orders by their names on the command line.
inline constexpr std::array<std::pair<std::string_view, ReadingOrder>, 4> namedOrders{{
    {"key", ReadingOrder::key},
    {"name", ReadingOrder::name},
    {"value", ReadingOrder::value},
    {"category", ReadingOrder::category},
}};

/// A reading must satisfy all members that are not empty.
struct ReadingSelection {
    std::vector<std::string> keys{};       ///< one of these
    bool isPinned = false;                 ///< these keys are pins, and without any nothing is selected
    std::vector<SMCCategory> categories{}; ///< one of these, or the next
    bool hasOwnCategory = false;           ///< the readings about the program itself
    std::string match{}; ///< a part of the name or the key, whatever the case of ASCII letters
    ReadingOrder order = ReadingOrder::given;

    /// Whether every reading is selected.
    [[nodiscard]] bool isEverything() const {
        return !isPinned && keys.empty() && categories.empty() && !hasOwnCategory && match.empty();
    }

    /// Whether it tells the order of the readings.
    [[nodiscard]] bool isOrdered() const { return !keys.empty() || order != ReadingOrder::given; }
};

/// The selected readings in the order of the selection.
std::vector<SMCReading> selectedReadings(const std::vector<SMCReading>& readings,
                                         const ReadingSelection& selection);

/// The keys to read for the selection, those of its readings among `readings` and those that it names; null
/// for all. Without those about the program itself.
std::shared_ptr<const KeySet> keysToRead(const std::vector<SMCReading>& readings,
                                         const ReadingSelection& selection);

/// The keys of the selection that no reading has.
std::vector<std::string> missingKeys(const std::vector<SMCReading>& readings,
                                     const ReadingSelection& selection);

/// `keys`, with the keys of `readings` for those that are masked as in their snapshot (SnapshotExport.h).
std::vector<std::string> unmaskedKeys(std::vector<std::string> keys, const std::vector<SMCReading>& readings);

/// One word a category for the command line, in their order: "cpu", "thermal", "other".
std::vector<std::string> categoryWords();

/// The category with this word or title, whatever the case; no value if there is none.
std::optional<SMCCategory> categoryNamed(std::string_view text);

} // namespace kelvinbar
