#include "smc/SMCConnection.h"

#include "sensors/ReadWatch.h"
#include "smc/SMCKeyText.h"

#include <cstddef>
#include <mutex>
#include <span>
#include <utility>

namespace kelvinbar {

namespace {

/// What the watch says of a call that does not return.
constexpr std::string_view driverName = "AppleSMC";

SMCParamBlock request(SMCCommand command) {
    SMCParamBlock block;
    block.command = static_cast<std::uint8_t>(command);
    return block;
}

} // namespace

SMCConnection::SMCConnection(std::shared_ptr<SMCDriver> driver) : driver_(std::move(driver)) {}

SMCConnection::~SMCConnection() { close(); }

ReturnCode SMCConnection::openSMC() {
    const NotedRead noted(driverName);
    if (!noted.isAllowed()) return kernFailure;
    const std::lock_guard lock(smcLock_);
    if (smcConnection_ != 0) return kernSuccess;
    const auto service = driver_->findService("AppleSMC");
    if (!service) return kernNotFound;
    const SMCDriver::OpenResult opened = driver_->open(*service);
    if (opened.code == kernSuccess) {
        smcConnection_ = opened.connection;
    } else if (opened.connection != 0) {
        driver_->close(opened.connection);
    }
    return opened.code;
}

void SMCConnection::close() {
    const NotedRead noted(driverName);
    const std::lock_guard lock(smcLock_);
    if (smcConnection_ != 0) driver_->close(std::exchange(smcConnection_, 0));
}

ReturnCode SMCConnection::callSMC(const SMCParamBlock& input, SMCParamBlock& output) {
    output = {};
    const NotedRead noted(driverName);
    if (!noted.isAllowed()) return kernFailure;
    const std::lock_guard lock(smcLock_);
    if (smcConnection_ == 0) return kernInvalidArgument;
    std::size_t outputSize = sizeof(output);
    return driver_->callStructMethod(smcConnection_, smcStructMethod, std::as_bytes(std::span(&input, 1)),
                                     std::as_writable_bytes(std::span(&output, 1)), outputSize);
}

/// Also fails if the controller's result byte is not zero.
ReturnCode SMCConnection::callChecked(const SMCParamBlock& input, SMCParamBlock& output) {
    const ReturnCode code = callSMC(input, output);
    if (code != kernSuccess) return code;
    return output.result == 0 ? kernSuccess : kernFailure;
}

ReturnCode SMCConnection::readKey(std::string_view key, SMCParamBlock& output) {
    if (!isPrintableSMCKey(key)) return kernInvalidArgument;

    SMCParamBlock input = request(SMCCommand::readKeyInfo);
    input.key = packedSMCKey(key);
    SMCParamBlock info;
    if (const ReturnCode code = callChecked(input, info); code != kernSuccess) return code;
    if (!isReadableSize(info.dataSize)) return kernFailure;

    input = request(SMCCommand::readBytes);
    input.key = packedSMCKey(key);
    input.dataSize = info.dataSize;
    SMCParamBlock answer;
    if (const ReturnCode code = callChecked(input, answer); code != kernSuccess) return code;

    // The reply to the read command contains neither key nor size and type.
    answer.key = input.key;
    answer.dataSize = info.dataSize;
    answer.dataType = info.dataType;
    answer.dataAttributes = info.dataAttributes;
    answer.padding37 = info.padding37;
    output = answer;
    return kernSuccess;
}

ReturnCode SMCConnection::readKeyByIndex(std::uint32_t index, std::string& key) {
    SMCParamBlock input = request(SMCCommand::keyByIndex);
    input.data32 = index;
    SMCParamBlock output;
    if (const ReturnCode code = callChecked(input, output); code != kernSuccess) return code;
    std::string found = fourCharString(output.key);
    if (!isPrintableSMCKey(found)) return kernFailure;
    key = std::move(found);
    return kernSuccess;
}

std::uint32_t SMCConnection::readKeyCount() {
    SMCParamBlock block;
    if (readKey("#KEY", block) != kernSuccess || block.dataSize < 4) return 0;
    const std::uint32_t first = block.bytes[0];
    const std::uint32_t second = block.bytes[1];
    const std::uint32_t third = block.bytes[2];
    const std::uint32_t fourth = block.bytes[3];
    const std::uint32_t bigEndian = (first << 24U) | (second << 16U) | (third << 8U) | fourth;
    if (fourCharString(block.dataType) == "ui32") return bigEndian;

    // Some emulators report the count under another type and in either byte order. Use the order in which it
    // fits in 16 bits.
    if (first == 0 && second == 0 && bigEndian != 0) return bigEndian;
    if (third == 0 && fourth == 0) return first | (second << 8U);
    return 0;
}

} // namespace kelvinbar
