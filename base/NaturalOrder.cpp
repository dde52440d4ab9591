#include "base/NaturalOrder.h"

#include "base/Text.h"

#include <algorithm>
#include <compare>

namespace kelvinbar {

namespace {

/// Takes the run of digits from the front of `text` and gives it without its leading zeros.
std::string_view takeDigits(std::string_view& text) {
    std::size_t length = 0;
    while (length < text.size() && isDecimalDigit(text[length])) ++length;
    std::string_view digits = text.substr(0, length);
    text.remove_prefix(length);
    digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
    return digits;
}

std::strong_ordering compareByValue(std::string_view leftDigits, std::string_view rightDigits) {
    if (const auto order = leftDigits.size() <=> rightDigits.size(); std::is_neq(order)) return order;
    return leftDigits <=> rightDigits;
}

/// UTF-8 bytes sort as their code points do, so bytes are compared.
unsigned char foldedByte(char byte) { return static_cast<unsigned char>(asciiLowercased(byte)); }

} // namespace

bool comesBeforeNaturally(std::string_view left, std::string_view right) {
    while (!left.empty() && !right.empty()) {
        std::strong_ordering order = std::strong_ordering::equal;
        if (isDecimalDigit(left.front()) && isDecimalDigit(right.front())) {
            const std::string_view leftDigits = takeDigits(left);
            order = compareByValue(leftDigits, takeDigits(right));
        } else {
            order = foldedByte(left.front()) <=> foldedByte(right.front());
            left.remove_prefix(1);
            right.remove_prefix(1);
        }
        if (std::is_neq(order)) return std::is_lt(order);
    }
    return left.empty() && !right.empty();
}

} // namespace kelvinbar
