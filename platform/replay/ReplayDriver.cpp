#include "platform/replay/ReplayDriver.h"

#include "smc/SMCKeyText.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace kelvinbar {

namespace {

constexpr std::uint32_t structMethodSelector = 2;
constexpr SMCDriver::Connection theConnection = 1;

/// Result codes of real controllers.
constexpr std::uint8_t badCommand = 0x82;
constexpr std::uint8_t keyNotFound = 0x84;
constexpr std::uint8_t sizeMismatch = 0x87;
constexpr std::uint8_t indexOutOfRange = 0xB8;

SMCParamBlock refusal(std::uint8_t result) {
    SMCParamBlock block;
    block.result = result;
    return block;
}

SMCParamBlock keyInfo(const RecordedKey& key) {
    SMCParamBlock block;
    block.dataSize = static_cast<std::uint32_t>(key.bytes.size());
    block.dataType = key.dataType;
    return block;
}

SMCParamBlock keyBytes(const RecordedKey& key, std::uint32_t size) {
    if (size != key.bytes.size()) return refusal(sizeMismatch);
    SMCParamBlock block;
    std::ranges::copy(key.bytes, block.bytes.begin());
    return block;
}

RecordedKey keyCount(std::size_t count) {
    RecordedKey key{packedSMCKey("#KEY"), packedSMCKey("ui32"), {}};
    for (int shift = 24; shift >= 0; shift -= 8)
        key.bytes.push_back(static_cast<std::uint8_t>(count >> shift));
    return key;
}

} // namespace

ReplayDriver::ReplayDriver(std::vector<RecordedKey> keys, bool hasService)
    : keys_(std::move(keys)), keyCount_(keyCount(keys_.size())), hasService_(hasService) {
    places_.reserve(keys_.size());
    for (std::size_t place = 0; place < keys_.size(); ++place) places_.emplace(keys_[place].code, place);
}

std::optional<SMCDriver::Service> ReplayDriver::findService(std::string_view className) {
    return hasService_ && className == "AppleSMC" ? std::optional<Service>(1) : std::nullopt;
}

SMCDriver::OpenResult ReplayDriver::open(Service /*service*/) {
    return {.code = kernSuccess, .connection = theConnection};
}

ReturnCode ReplayDriver::callStructMethod(Connection connection, std::uint32_t selector,
                                          std::span<const std::byte> input, std::span<std::byte> output,
                                          std::size_t& outputSize) {
    SMCParamBlock block;
    if (connection != theConnection || selector != structMethodSelector || input.size() != sizeof(block) ||
        output.size() != sizeof(block)) {
        return kernInvalidArgument;
    }
    std::memcpy(&block, input.data(), sizeof(block));
    block = answer(block);
    std::memcpy(output.data(), &block, sizeof(block));
    outputSize = sizeof(block);
    return kernSuccess;
}

SMCParamBlock ReplayDriver::answer(const SMCParamBlock& question) const {
    const auto command = static_cast<SMCCommand>(question.command);
    if (command == SMCCommand::keyByIndex) return keyAtIndex(question.data32);
    const RecordedKey* const key = find(question.key);
    if (key == nullptr) return refusal(keyNotFound);
    if (command == SMCCommand::readKeyInfo) return keyInfo(*key);
    if (command == SMCCommand::readBytes) return keyBytes(*key, question.dataSize);
    return refusal(badCommand);
}

SMCParamBlock ReplayDriver::keyAtIndex(std::uint32_t index) const {
    if (index >= keys_.size()) return refusal(indexOutOfRange);
    SMCParamBlock block;
    block.key = keys_[index].code;
    return block;
}

/// "#KEY" tells how many keys are here, whatever was recorded under it: a text may hold fewer than there
/// were.
const RecordedKey* ReplayDriver::find(std::uint32_t code) const {
    if (code == keyCount_.code) return &keyCount_;
    const auto found = places_.find(code);
    return found == places_.end() ? nullptr : &keys_[found->second];
}

} // namespace kelvinbar
