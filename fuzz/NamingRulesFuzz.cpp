// Any text as a key: its name, and the order of names.

#include "base/NaturalOrder.h"
#include "base/Text.h"
#include "catalogue/SMCKeyDatabase.h"
#include "fuzz/Check.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kelvinbar::fuzz {

namespace {

void nameKey(std::string_view key) {
    const auto definition = SMCKeyDatabase::hwMonitorDefinition(key);
    if (!definition) return;
    constexpr std::array<std::string_view, 7> units{"°C", "RPM", "W", "V", "A", "mAh", ""};
    check(definition->key == key, "a definition carries its key");
    check(characterCount(key) == 4, "only keys of four characters are named");
    check(!definition->name.empty(), "a definition has a name");
    check(std::ranges::find(units, definition->unit) != units.end(), "the unit is one of the known ones");
}

void orderNames(std::string_view left, std::string_view right) {
    check(!comesBeforeNaturally(left, left), "nothing comes before itself");
    check(!(comesBeforeNaturally(left, right) && comesBeforeNaturally(right, left)),
          "the order is asymmetric");
    check(isValidUtf8(trimmed(left)) || !isValidUtf8(left), "trimming keeps text well-formed");
    check(characterCount(firstCharacters(left, 3)) <= 3, "cutting keeps to its number of characters");
}

} // namespace

} // namespace kelvinbar::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(data, data + size);
    kelvinbar::fuzz::nameKey(text);
    kelvinbar::fuzz::nameKey(std::string_view(text).substr(0, 4));
    const std::size_t middle = size / 2;
    kelvinbar::fuzz::orderNames(std::string_view(text).substr(0, middle),
                                std::string_view(text).substr(middle));
    return 0;
}
