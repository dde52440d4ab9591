#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

namespace kelvinbar {

/// Hides hardware addresses and serial numbers in texts that people publish. Names of network interfaces
/// ("enx0011223344ff") and of batteries in other devices ("hid-00:11:22:33:44:ff-battery") contain them, and
/// so do keys of their sensors.
///
/// An address is six or more pairs of hexadecimal digits with one separator (":", "-" or "_") between them,
/// or twelve or more such digits in a row, at the beginning of a word or behind an "x". Its digits become
/// "x"; the last are the number of the address among those that the object has met, so that equal addresses
/// stay equal and different ones different. Masking a masked text changes nothing. Not thread-safe.
///
/// A serial number is what stands between "hid-" or "steam-controller-" and the last "-battery" before the
/// end of a name; "_" counts as "-". It becomes "xxxxxx" with its number, and is numbered with the addresses.
/// An address there stays one, and vendor and product ("hid-0003:1B1C:1C05.0004-battery") stay.
class AddressMask {
  public:
    /// `text` without addresses and serial numbers.
    [[nodiscard]] std::string masked(std::string_view text);

  private:
    [[nodiscard]] std::string withoutAddresses(std::string_view text);
    [[nodiscard]] std::string withoutSerialNumbers(std::string_view text);
    [[nodiscard]] std::string standIn(std::string_view address);
    [[nodiscard]] std::string numberOf(std::string_view hidden);

    std::map<std::string, std::size_t> numbers_; ///< from 1, by what is hidden in lower case, unseparated
};

} // namespace kelvinbar
