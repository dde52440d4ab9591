#include "base/AddressMask.h"

#include "base/Text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string_view>
#include <utility>

namespace kelvinbar {

namespace {

constexpr std::size_t fewestDigits = 12;
constexpr std::size_t fewestPairs = 6;

/// What stands for a digit of an address.
constexpr char mark = 'x';

/// In front of the number of a serial number, and as few as a mask has.
constexpr std::string_view fewestMarks = "xxxxxx";

/// The kernel's names have no more characters. Looking no further keeps the time proportional to the text.
constexpr std::size_t longestName = 255;

using CharacterTest = bool (*)(char);

bool isHexDigit(char character) { return hexDigitValue(character) >= 0; }

bool isHexDigitOrMark(char character) { return character == mark || isHexDigit(character); }

bool isSeparator(char character) { return character == ':' || character == '-' || character == '_'; }

std::size_t digitsAtStart(std::string_view text, CharacterTest isDigit) {
    return static_cast<std::size_t>(std::ranges::find_if_not(text, isDigit) - text.begin());
}

/// Whether a pair of digits at the start of `text` is one of an address after `pairs` others. A longer
/// address ends before a word that begins with two digits, such as "battery".
bool isNextPair(std::string_view text, std::size_t pairs, CharacterTest isDigit) {
    if (digitsAtStart(text, isDigit) != 2) return false;
    return pairs < fewestPairs || text.size() == 2 || !isAsciiAlphanumeric(text[2]);
}

/// The length of an address of pairs at the start of `text`; 0 without one.
std::size_t lengthOfPairs(std::string_view text, CharacterTest isDigit) {
    if (!isNextPair(text, 0, isDigit) || text.size() < 3 || !isSeparator(text[2])) return 0;
    const char separator = text[2];
    std::size_t pairs = 1;
    while (text.substr(3 * pairs - 1).starts_with(separator) &&
           isNextPair(text.substr(3 * pairs), pairs, isDigit)) {
        ++pairs;
    }
    return pairs < fewestPairs ? 0 : 3 * pairs - 1;
}

/// The length of an address at the start of `text`; 0 without one.
std::size_t addressLength(std::string_view text, CharacterTest isDigit) {
    const std::size_t digits = digitsAtStart(text, isDigit);
    return digits >= fewestDigits ? digits : lengthOfPairs(text, isDigit);
}

/// Whether an address may follow `character`.
bool mayPrecede(char character) {
    return !isAsciiAlphanumeric(character) || asciiLowercased(character) == 'x';
}

std::string withoutSeparators(std::string_view text) {
    std::string rest(text);
    std::erase_if(rest, isSeparator);
    return rest;
}

/// The number in a mask, an address's or a serial number's; empty if `text` is anything else.
std::string numberInMask(std::string_view text) {
    constexpr std::size_t mostDigits = 5; // fewer than hide an address
    const std::string digits = withoutSeparators(text);
    const std::size_t marks = std::min(digits.find_first_not_of(mark), digits.size());
    const std::string number = digits.substr(marks);
    const bool isMask = marks >= fewestMarks.size() && number.size() >= 2 && number.size() <= mostDigits &&
                        isDecimalDigits(number);
    return isMask ? number : std::string();
}

bool isMask(std::string_view text) { return !numberInMask(text).empty(); }

/// Drivers of input devices name batteries after the device's serial number.
constexpr std::array<std::string_view, 2> batteryPrefixes{"hid-", "steam-controller-"};
constexpr std::string_view batterySuffix = "-battery";

/// Hardware monitors of batteries have "_" in their names for "-".
bool isNamePart(std::string_view text, std::string_view part) {
    return std::ranges::equal(text.substr(0, part.size()), part, [](char character, char wanted) {
        return character == wanted || (character == '_' && wanted == '-');
    });
}

/// The part of `text` before what ends a name in keys, paths and lists.
std::string_view nameAtStart(std::string_view text) {
    return text.substr(0, std::min({text.find_first_of("/\t\n\""), text.find(", "), text.size()}));
}

/// Whether `text` ends with one of the prefixes, as a word.
bool endsWithBatteryPrefix(std::string_view text) {
    return std::ranges::any_of(batteryPrefixes, [&](std::string_view prefix) {
        if (text.size() < prefix.size()) return false;
        const std::size_t place = text.size() - prefix.size();
        return isNamePart(text.substr(place), prefix) &&
               (place == 0 || !isAsciiAlphanumeric(text[place - 1]));
    });
}

/// What stands at `place` between a prefix and the last suffix of the name; empty without both.
std::string_view middleOfBatteryName(std::string_view text, std::size_t place) {
    if (!endsWithBatteryPrefix(text.substr(0, place))) return {};
    const std::string_view rest = nameAtStart(text.substr(place, longestName));
    for (std::size_t end = rest.size(); end > 0; --end) {
        if (isNamePart(rest.substr(end), batterySuffix)) return rest.substr(0, end);
    }
    return {};
}

/// Bus, vendor, product and a counter, which the kernel takes where there is no serial number.
bool isVendorAndProduct(std::string_view text) {
    constexpr std::string_view shape = "0003:1B1C:1C05.0004";
    return std::ranges::equal(text, shape, [](char character, char example) {
        return isHexDigit(example) ? isHexDigit(character) : character == example;
    });
}

/// Whether the middle of a battery's name, which may be empty, is a serial number.
bool isSerialNumber(std::string_view middle) {
    const bool isAddress = addressLength(middle, isHexDigit) == middle.size();
    return !isAddress && !isVendorAndProduct(middle);
}

enum class PartKind : std::uint8_t { plain, address, serialNumber, mask };

struct Part {
    std::string_view text; ///< not empty
    PartKind kind;
};

/// The mask of an address at `place`, where an address may begin; empty without one.
std::string_view maskAt(std::string_view text, std::size_t place) {
    const bool isInsideMarks = place > 1 && text[place - 1] == mark && text[place - 2] == mark;
    if (isInsideMarks) return {};
    const std::string_view rest = text.substr(place, longestName);
    const std::string_view masked = rest.substr(0, addressLength(rest, isHexDigitOrMark));
    return isMask(masked) ? masked : std::string_view();
}

Part partAt(std::string_view text, std::size_t place) {
    const std::string_view middle = middleOfBatteryName(text, place);
    if (isMask(middle)) return {middle, PartKind::mask};
    if (isSerialNumber(middle)) return {middle, PartKind::serialNumber};
    const std::string_view rest = text.substr(place);
    if (place == 0 || mayPrecede(text[place - 1])) {
        const std::string_view masked = maskAt(text, place);
        if (!masked.empty()) return {masked, PartKind::mask};
        const std::string_view address = rest.substr(0, addressLength(rest, isHexDigit));
        if (!address.empty()) return {address, PartKind::address};
    }
    return {rest.substr(0, 1), PartKind::plain};
}

template <typename Action>
void forEachPart(std::string_view text, Action action) {
    for (std::size_t place = 0; place < text.size();) {
        const Part part = partAt(text, place);
        action(part);
        place += part.text.size();
    }
}

constexpr std::size_t shortNumbers = 99;

/// FNV-1a of 32 bits, from 1 to 99. Published, and compared from version to version: it must stay the same.
std::size_t hashNumber(std::string_view text) {
    std::uint32_t hash = 2'166'136'261U;
    for (const char character : text) {
        hash = (hash ^ static_cast<unsigned char>(character)) * 16'777'619U;
    }
    return hash % shortNumbers + 1;
}

/// The numbers of what a document hides.
class HiddenNumbers {
  public:
    explicit HiddenNumbers(const std::vector<std::string*>& texts);

    /// With two digits at least. `hidden` is a part of the document.
    [[nodiscard]] std::string of(std::string_view hidden) const;

  private:
    static std::string identityOf(std::string_view hidden) {
        return asciiLowercased(withoutSeparators(hidden));
    }

    void note(const Part& part);
    std::size_t takeFree(std::size_t wanted);

    std::map<std::string, std::size_t> numbers_; ///< by identity; sorted, so that the order does not matter
    std::set<std::size_t> taken_;
    std::size_t longNumber_ = shortNumbers + 1; ///< the first to try when no short one is free
};

HiddenNumbers::HiddenNumbers(const std::vector<std::string*>& texts) {
    for (const std::string* const text : texts) {
        forEachPart(*text, [&](const Part& part) { note(part); });
    }
    for (auto& [identity, number] : numbers_) number = takeFree(hashNumber(identity));
}

void HiddenNumbers::note(const Part& part) {
    if (part.kind == PartKind::plain) return;
    if (part.kind == PartKind::mask) {
        taken_.insert(std::stoul(numberInMask(part.text)));
    } else {
        numbers_.try_emplace(identityOf(part.text));
    }
}

std::size_t HiddenNumbers::takeFree(std::size_t wanted) {
    for (std::size_t step = 0; step < shortNumbers; ++step) {
        const std::size_t number = (wanted - 1 + step) % shortNumbers + 1;
        if (taken_.insert(number).second) return number;
    }
    while (!taken_.insert(longNumber_).second) ++longNumber_;
    return longNumber_;
}

std::string HiddenNumbers::of(std::string_view hidden) const {
    const std::size_t number = numbers_.at(identityOf(hidden));
    return std::string(number < 10 ? 1 : 0, '0').append(std::to_string(number));
}

std::string maskedAddress(std::string_view address, std::string number) {
    std::string text(address);
    std::ranges::replace_if(text, isHexDigit, mark);
    for (std::size_t place = text.size(); place > 0 && !number.empty(); --place) {
        if (text[place - 1] != mark) continue;
        text[place - 1] = number.back();
        number.pop_back();
    }
    return text;
}

std::string maskedPart(const Part& part, const HiddenNumbers& numbers) {
    switch (part.kind) {
    case PartKind::address:
        return maskedAddress(part.text, numbers.of(part.text));
    case PartKind::serialNumber:
        return std::string(fewestMarks).append(numbers.of(part.text));
    default:
        return std::string(part.text);
    }
}

} // namespace

void maskAddresses(const std::vector<std::string*>& texts) {
    const HiddenNumbers numbers(texts);
    for (std::string* const text : texts) {
        std::string masked;
        forEachPart(*text, [&](const Part& part) { masked.append(maskedPart(part, numbers)); });
        *text = std::move(masked);
    }
}

} // namespace kelvinbar
