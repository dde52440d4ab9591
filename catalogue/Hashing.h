#pragma once

#include <cstddef>
#include <functional>
#include <initializer_list>

namespace kelvinbar {

/// Mixes the hashes of a record's fields, in their order, into one.
inline std::size_t combinedHash(std::initializer_list<std::size_t> hashes) {
    std::size_t combined = 0;
    for (const std::size_t hash : hashes) combined = combined * 31 + hash;
    return combined;
}

} // namespace kelvinbar
