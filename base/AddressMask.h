#pragma once

#include <string>
#include <vector>

namespace kelvinbar {

/// Hides hardware addresses and serial numbers in `texts`, which are published together as one document.
/// Names of network interfaces ("enx0011223344ff") and of batteries in other devices
/// ("hid-00:11:22:33:44:ff-battery") contain them, and so do keys of their sensors. Any thread.
///
/// An address is six or more pairs of hexadecimal digits with one separator (":", "-" or "_") between them,
/// or twelve or more such digits in a row, at the beginning of a word or behind an "x". Its digits become
/// "x"; the last are its number.
///
/// A serial number is what stands between "hid-" or "steam-controller-" and the last "-battery" before the
/// end of a name; "_" counts as "-". It becomes "xxxxxx" with its number. An address there stays one, and
/// vendor and product ("hid-0003:1B1C:1C05.0004-battery") stay.
///
/// The number is a hash of what is hidden, without separators and in lower case, from 01 to 99: it is the
/// same in every document, however the address is written there. Where a document has several with one
/// number, or a mask with it, they have the next ones that are free, from 100 if none is; this depends on
/// what the document hides, not on its order. Two digits lead to no address, since each number belongs to
/// millions of millions of addresses, and to more than 160,000 of the 16 million in a vendor's block. Only a
/// list of addresses gets shorter by them.
///
/// A mask, of either form and with whatever number, stays as it is: masking again changes nothing.
void maskAddresses(const std::vector<std::string*>& texts);

} // namespace kelvinbar
