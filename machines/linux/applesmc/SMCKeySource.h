#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace kelvinbar {

/// Result codes in the parameter block, as real SMCs return them.
namespace smcresult {

inline constexpr std::uint8_t success = 0;
inline constexpr std::uint8_t badCommand = 0x82;
inline constexpr std::uint8_t keyNotFound = 0x84;
inline constexpr std::uint8_t keyNotReadable = 0x85;
inline constexpr std::uint8_t sizeMismatch = 0x87;
inline constexpr std::uint8_t indexOutOfRange = 0xB8;

} // namespace smcresult

/// The bytes of a value; the first KeyInfo::dataSize of them count.
using SMCBytes = std::array<std::uint8_t, 32>;

/// Port: the keys of an SMC by index, with type and bytes, however they are reached. Not thread-safe.
class SMCKeySource {
  public:
    struct KeyInfo {
        std::uint32_t dataSize = 0; ///< in bytes
        std::uint32_t dataType = 0; ///< packed type code
    };

    virtual ~SMCKeySource() = default;

    /// Whether there is an SMC at the moment.
    virtual bool isPresent() = 0;

    /// The number of keys. Called at the beginning of each listing: a source may look for new keys here.
    /// Indexes stay valid until the next call.
    virtual std::size_t keyCount() = 0;

    /// The packed code of the key at a zero-based index below the last `keyCount()`; nothing above it.
    virtual std::optional<std::uint32_t> keyAtIndex(std::uint32_t index) = 0;

    /// Type and size of a key; nothing for an unknown key.
    virtual std::optional<KeyInfo> keyInfo(std::uint32_t code) = 0;

    /// Stores the value at the front of `bytes`, which the caller has zeroed. Returns a code of `smcresult`.
    virtual std::uint8_t readBytes(std::uint32_t code, SMCBytes& bytes) = 0;
};

} // namespace kelvinbar
