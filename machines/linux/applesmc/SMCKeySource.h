#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace kelvinbar {

/// Result codes of real controllers.
namespace smcresult {

inline constexpr std::uint8_t success = 0;
inline constexpr std::uint8_t badCommand = 0x82;
inline constexpr std::uint8_t keyNotFound = 0x84;
inline constexpr std::uint8_t keyNotReadable = 0x85;
inline constexpr std::uint8_t sizeMismatch = 0x87;
inline constexpr std::uint8_t indexOutOfRange = 0xB8;

} // namespace smcresult

/// The value bytes of a key, as many as its key information says.
using SMCBytes = std::array<std::uint8_t, 32>;

/// What stands behind an emulated controller: keys by index, the type of each, and its bytes. Used by one
/// thread at a time.
class SMCKeySource {
  public:
    struct KeyInfo {
        std::uint32_t dataSize = 0; ///< in bytes
        std::uint32_t dataType = 0; ///< packed type code
    };

    virtual ~SMCKeySource() = default;

    /// Whether there is anything that a controller could be found for.
    virtual bool isPresent() = 0;

    /// The number of keys, asked whenever someone begins to list them. A source may look for new keys here;
    /// the list does not change until the next call.
    virtual std::size_t keyCount() = 0;

    /// The packed code of the key at a zero-based index below the last `keyCount()`.
    virtual std::optional<std::uint32_t> keyAtIndex(std::uint32_t index) = 0;

    /// Nothing for a key that is not there.
    virtual std::optional<KeyInfo> keyInfo(std::uint32_t code) = 0;

    /// Fills the front of `bytes`, which are zero. The controller's result code; 0 is success.
    virtual std::uint8_t readBytes(std::uint32_t code, SMCBytes& bytes) = 0;
};

} // namespace kelvinbar
