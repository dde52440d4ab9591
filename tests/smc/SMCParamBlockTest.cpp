#include "smc/SMCParamBlock.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::smc_param_block_test {

namespace {

using Wire = std::array<std::uint8_t, 80>;

Wire onTheWire(const SMCParamBlock& block) {
    static_assert(sizeof(block) == std::tuple_size_v<Wire>);
    Wire wire{};
    std::memcpy(wire.data(), &block, wire.size());
    return wire;
}

TEST(SMCParamBlock, IsAllZeroBeforeAnythingIsSet) { EXPECT_EQ(onTheWire(SMCParamBlock{}), Wire{}); }

TEST(SMCParamBlock, EveryFieldHasItsPlaceOnTheWireLeastSignificantByteFirst) {
    struct Field {
        std::string_view name;
        std::size_t offset;
        std::vector<std::uint8_t> bytes;
        std::function<void(SMCParamBlock&)> fill;
    };

    const std::vector<Field> fields{
        {"key", 0, {0x50, 0x30, 0x43, 0x54}, [](SMCParamBlock& block) { block.key = 0x54433050; }},
        {"versMajor", 4, {1}, [](SMCParamBlock& block) { block.versMajor = 1; }},
        {"versMinor", 5, {1}, [](SMCParamBlock& block) { block.versMinor = 1; }},
        {"versBuild", 6, {1}, [](SMCParamBlock& block) { block.versBuild = 1; }},
        {"versReserved", 7, {1}, [](SMCParamBlock& block) { block.versReserved = 1; }},
        {"versRelease", 8, {2, 1}, [](SMCParamBlock& block) { block.versRelease = 0x0102; }},
        {"pLimitVersion", 12, {2, 1}, [](SMCParamBlock& block) { block.pLimitVersion = 0x0102; }},
        {"pLimitLength", 14, {2, 1}, [](SMCParamBlock& block) { block.pLimitLength = 0x0102; }},
        {"cpuPLimit", 16, {4, 3, 2, 1}, [](SMCParamBlock& block) { block.cpuPLimit = 0x01020304; }},
        {"gpuPLimit", 20, {4, 3, 2, 1}, [](SMCParamBlock& block) { block.gpuPLimit = 0x01020304; }},
        {"memPLimit", 24, {4, 3, 2, 1}, [](SMCParamBlock& block) { block.memPLimit = 0x01020304; }},
        {"dataSize", 28, {4, 3, 2, 1}, [](SMCParamBlock& block) { block.dataSize = 0x01020304; }},
        {"dataType", 32, {4, 3, 2, 1}, [](SMCParamBlock& block) { block.dataType = 0x01020304; }},
        {"dataAttributes", 36, {1}, [](SMCParamBlock& block) { block.dataAttributes = 1; }},
        {"result", 40, {1}, [](SMCParamBlock& block) { block.result = 1; }},
        {"smcStatus", 41, {1}, [](SMCParamBlock& block) { block.smcStatus = 1; }},
        {"command", 42, {1}, [](SMCParamBlock& block) { block.command = 1; }},
        {"data32", 44, {4, 3, 2, 1}, [](SMCParamBlock& block) { block.data32 = 0x01020304; }},
        {"first of bytes", 48, {1}, [](SMCParamBlock& block) { block.bytes.front() = 1; }},
        {"last of bytes", 79, {1}, [](SMCParamBlock& block) { block.bytes.back() = 1; }},
    };
    for (const Field& field : fields) {
        SCOPED_TRACE(field.name);
        SMCParamBlock block;
        field.fill(block);
        Wire expected{};
        std::memcpy(expected.data() + field.offset, field.bytes.data(), field.bytes.size());
        EXPECT_EQ(onTheWire(block), expected);
    }
}

TEST(SMCParamBlock, CommandsHaveTheCodesOfTheDriver) {
    EXPECT_EQ(static_cast<int>(SMCCommand::readBytes), 5);
    EXPECT_EQ(static_cast<int>(SMCCommand::keyByIndex), 8);
    EXPECT_EQ(static_cast<int>(SMCCommand::readKeyInfo), 9);
}

} // namespace
} // namespace kelvinbar::smc_param_block_test
