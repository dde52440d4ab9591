#include "machines/linux/applesmc/KeySourceDriver.h"

#include "smc/SMCKeyText.h"

#include <cstring>
#include <utility>

namespace kelvinbar {

namespace {

constexpr SMCDriver::Connection theConnection = 1;
constexpr std::uint32_t keyCountSize = 4;

const std::uint32_t keyCountCode = packedSMCKey("#KEY");

SMCParamBlock refusal(std::uint8_t result) {
    SMCParamBlock block;
    block.result = result;
    return block;
}

SMCBytes bigEndian(std::size_t number) {
    SMCBytes bytes{};
    for (std::size_t place = 0; place < keyCountSize; ++place) {
        bytes[place] = static_cast<std::uint8_t>(number >> (8 * (keyCountSize - 1 - place)));
    }
    return bytes;
}

} // namespace

KeySourceDriver::KeySourceDriver(std::unique_ptr<SMCKeySource> source) : source_(std::move(source)) {}

std::optional<SMCDriver::Service> KeySourceDriver::findService(std::string_view className) {
    return className == "AppleSMC" && source_->isPresent() ? std::optional<Service>(1) : std::nullopt;
}

SMCDriver::OpenResult KeySourceDriver::open(Service /*service*/) {
    return {.code = kernSuccess, .connection = theConnection};
}

ReturnCode KeySourceDriver::callStructMethod(Connection connection, std::uint32_t selector,
                                             std::span<const std::byte> input, std::span<std::byte> output,
                                             std::size_t& outputSize) {
    SMCParamBlock block;
    if (connection != theConnection || selector != smcStructMethod || input.size() != sizeof(block) ||
        output.size() != sizeof(block)) {
        return kernInvalidArgument;
    }
    std::memcpy(&block, input.data(), sizeof(block));
    block = answer(block);
    std::memcpy(output.data(), &block, sizeof(block));
    outputSize = sizeof(block);
    return kernSuccess;
}

SMCParamBlock KeySourceDriver::answer(const SMCParamBlock& question) {
    switch (static_cast<SMCCommand>(question.command)) {
    case SMCCommand::keyByIndex:
        return keyAtIndex(question.data32);
    case SMCCommand::readKeyInfo:
        return keyInfo(question.key);
    case SMCCommand::readBytes:
        return keyBytes(question.key, question.dataSize);
    }
    return refusal(smcresult::badCommand);
}

SMCParamBlock KeySourceDriver::keyAtIndex(std::uint32_t index) {
    const auto code = source_->keyAtIndex(index);
    if (!code) return refusal(smcresult::indexOutOfRange);
    SMCParamBlock block;
    block.key = *code;
    return block;
}

SMCParamBlock KeySourceDriver::keyInfo(std::uint32_t code) {
    const auto info = code == keyCountCode
                          ? SMCKeySource::KeyInfo{.dataSize = keyCountSize, .dataType = packedSMCKey("ui32")}
                          : source_->keyInfo(code);
    if (!info) return refusal(smcresult::keyNotFound);
    SMCParamBlock block;
    block.dataSize = info->dataSize;
    block.dataType = info->dataType;
    return block;
}

SMCParamBlock KeySourceDriver::keyBytes(std::uint32_t code, std::uint32_t size) {
    const SMCParamBlock info = keyInfo(code);
    if (info.result != smcresult::success) return info;
    if (info.dataSize != size) return refusal(smcresult::sizeMismatch);
    SMCParamBlock block;
    if (code == keyCountCode) {
        block.bytes = bigEndian(source_->keyCount());
    } else {
        block.result = source_->readBytes(code, block.bytes);
    }
    return block;
}

} // namespace kelvinbar
