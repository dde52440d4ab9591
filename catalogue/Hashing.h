#pragma once

#include <cstddef>
#include <functional>
#include <initializer_list>

namespace kelvinbar {

/// One hash made from the hashes of a record's fields. Their order matters. Only for hash tables within one
/// process: std::hash may return other values in the next run. Any thread.
inline std::size_t combinedHash(std::initializer_list<std::size_t> hashes) {
    std::size_t combined = 0;
    for (const std::size_t hash : hashes) combined = combined * 31 + hash;
    return combined;
}

} // namespace kelvinbar
