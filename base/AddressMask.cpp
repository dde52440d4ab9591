#include "base/AddressMask.h"

#include "base/Text.h"

#include <algorithm>
#include <array>

namespace kelvinbar {

namespace {

constexpr std::size_t fewestDigits = 12;
constexpr std::size_t fewestPairs = 6;

bool isHexDigit(char character) { return hexDigitValue(character) >= 0; }

bool isSeparator(char character) { return character == ':' || character == '-' || character == '_'; }

std::size_t digitsAtStart(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::find_if_not(text, isHexDigit) - text.begin());
}

/// The length of an address of pairs at the start of `text`; 0 without one.
std::size_t lengthOfPairs(std::string_view text) {
    if (digitsAtStart(text) != 2 || text.size() < 3 || !isSeparator(text[2])) return 0;
    const char separator = text[2];
    std::size_t pairs = 1;
    while (text.substr(3 * pairs - 1).starts_with(separator) && digitsAtStart(text.substr(3 * pairs)) == 2) {
        ++pairs;
    }
    return pairs < fewestPairs ? 0 : 3 * pairs - 1;
}

/// The length of an address at the start of `text`; 0 without one.
std::size_t addressLength(std::string_view text) {
    const std::size_t digits = digitsAtStart(text);
    return digits >= fewestDigits ? digits : lengthOfPairs(text);
}

/// Whether an address may follow `character`.
bool mayPrecede(char character) {
    return !isAsciiAlphanumeric(character) || asciiLowercased(character) == 'x';
}

std::string withoutSeparators(std::string_view text) {
    std::string rest = asciiLowercased(text);
    std::erase_if(rest, isSeparator);
    return rest;
}

/// Drivers of input devices name batteries after the device's serial number.
constexpr std::array<std::string_view, 2> batteryPrefixes{"hid-", "steam-controller-"};
constexpr std::string_view batterySuffix = "-battery";
constexpr std::string_view maskedSerial = "xxxxxx";

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

/// What stands between one of the prefixes at the start of `text` and the suffix; empty without both.
std::string_view middleOfBatteryName(std::string_view text) {
    const auto* const prefix =
        std::ranges::find_if(batteryPrefixes, [&](std::string_view each) { return isNamePart(text, each); });
    if (prefix == batteryPrefixes.end()) return {};
    const std::string_view rest = nameAtStart(text).substr(prefix->size());
    for (std::size_t place = rest.size(); place > 0; --place) {
        if (isNamePart(rest.substr(place), batterySuffix)) return rest.substr(0, place);
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

bool isMaskedSerial(std::string_view text) {
    return text.starts_with(maskedSerial) && text.size() > maskedSerial.size() &&
           std::ranges::all_of(text.substr(maskedSerial.size()), isDecimalDigit);
}

/// The serial number in the name of a battery that begins at the start of `text`; empty without one.
std::string_view serialNumberIn(std::string_view text) {
    const std::string_view middle = middleOfBatteryName(text);
    const bool isAddress = addressLength(middle) == middle.size();
    const bool isHarmless = isAddress || isVendorAndProduct(middle) || isMaskedSerial(middle);
    return isHarmless ? std::string_view() : middle;
}

} // namespace

std::string AddressMask::masked(std::string_view text) {
    return withoutAddresses(withoutSerialNumbers(text));
}

std::string AddressMask::withoutSerialNumbers(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const bool mayBegin = result.empty() || !isAsciiAlphanumeric(result.back());
        const std::string_view serial = mayBegin ? serialNumberIn(text) : std::string_view();
        if (serial.empty()) {
            result.push_back(text.front());
            text.remove_prefix(1);
            continue;
        }
        const auto place = static_cast<std::size_t>(serial.data() - text.data());
        result.append(text.substr(0, place)).append(maskedSerial).append(numberOf(serial));
        text.remove_prefix(place + serial.size());
    }
    return result;
}

std::string AddressMask::withoutAddresses(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const bool mayBegin = result.empty() || mayPrecede(result.back());
        const std::size_t length = mayBegin ? addressLength(text) : 0;
        if (length > 0) {
            result.append(standIn(text.substr(0, length)));
        } else {
            result.push_back(text.front());
        }
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return result;
}

std::string AddressMask::standIn(std::string_view address) {
    std::string text(address);
    std::ranges::replace_if(text, isHexDigit, 'x');
    std::string digits = numberOf(address);
    for (std::size_t place = text.size(); place > 0 && !digits.empty(); --place) {
        if (text[place - 1] != 'x') continue;
        text[place - 1] = digits.back();
        digits.pop_back();
    }
    return text;
}

/// Its number among what was hidden, with two digits at least, so that masked texts keep their order.
std::string AddressMask::numberOf(std::string_view hidden) {
    const std::size_t number =
        numbers_.try_emplace(withoutSeparators(hidden), numbers_.size() + 1).first->second;
    return std::string(number < 10 ? 1 : 0, '0').append(std::to_string(number));
}

} // namespace kelvinbar
