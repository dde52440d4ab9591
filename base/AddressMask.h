#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

namespace kelvinbar {

/// Hides hardware addresses in texts that people publish. Names of network interfaces ("enx0011223344ff") and
/// of wireless batteries ("hid-00:11:22:33:44:ff-battery") contain them, and so do keys of their sensors.
///
/// An address is six or more pairs of hexadecimal digits with one separator (":", "-" or "_") between them,
/// or twelve or more such digits in a row, at the beginning of a word or behind an "x". Its digits become
/// "x"; the last are the number of the address among those that the object has met, so that equal addresses
/// stay equal and different ones different. Masking a masked text changes nothing. Not thread-safe.
class AddressMask {
  public:
    /// `text` without addresses.
    [[nodiscard]] std::string masked(std::string_view text);

  private:
    [[nodiscard]] std::string standIn(std::string_view address);

    std::map<std::string, std::size_t> numbers_; ///< from 1, by the digits of the address in lower case
};

} // namespace kelvinbar
