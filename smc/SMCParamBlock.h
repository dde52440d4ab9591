#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace kelvinbar {

/// The selector of the driver's only method, which takes and returns a parameter block.
inline constexpr std::uint32_t smcStructMethod = 2;

/// The 80-byte input and output of every SMC call. The layout is the driver's; the static assertions below
/// check it. Integers are in the host's byte order.
struct SMCParamBlock {
    std::uint32_t key = 0; ///< key code, the first character in the most significant byte
    std::uint8_t versMajor = 0;
    std::uint8_t versMinor = 0;
    std::uint8_t versBuild = 0;
    std::uint8_t versReserved = 0;
    std::uint16_t versRelease = 0;
    std::uint16_t padding10 = 0;
    std::uint16_t pLimitVersion = 0;
    std::uint16_t pLimitLength = 0;
    std::uint32_t cpuPLimit = 0;
    std::uint32_t gpuPLimit = 0;
    std::uint32_t memPLimit = 0;
    std::uint32_t dataSize = 0;      ///< number of value bytes, 1 to 32
    std::uint32_t dataType = 0;      ///< type code, packed like `key`
    std::uint8_t dataAttributes = 0; ///< passed on, not interpreted
    std::array<std::uint8_t, 3> padding37{};
    std::uint8_t result = 0;    ///< the controller's result code; 0 is success
    std::uint8_t smcStatus = 0; ///< not interpreted
    std::uint8_t command = 0;   ///< one of SMCCommand
    std::uint8_t padding43 = 0;
    std::uint32_t data32 = 0; ///< index of the key for SMCCommand::keyByIndex
    std::array<std::uint8_t, 32> bytes{};
};

/// The commands that the program uses. Writing commands are left out on purpose.
enum class SMCCommand : std::uint8_t {
    readBytes = 5,
    keyByIndex = 8,
    readKeyInfo = 9,
};

static_assert(sizeof(SMCParamBlock) == 80);
static_assert(offsetof(SMCParamBlock, pLimitVersion) == 12);
static_assert(offsetof(SMCParamBlock, dataSize) == 28);
static_assert(offsetof(SMCParamBlock, dataType) == 32);
static_assert(offsetof(SMCParamBlock, dataAttributes) == 36);
static_assert(offsetof(SMCParamBlock, result) == 40);
static_assert(offsetof(SMCParamBlock, command) == 42);
static_assert(offsetof(SMCParamBlock, data32) == 44);
static_assert(offsetof(SMCParamBlock, bytes) == 48);

/// Whether a value of `size` bytes fits into a parameter block. Empty values are not readable.
inline bool isReadableSize(std::uint32_t size) { return size >= 1 && size <= SMCParamBlock().bytes.size(); }

} // namespace kelvinbar
