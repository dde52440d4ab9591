#include "smc/SMCConnection.h"

#include "base/NamedRecursiveMutex.h"
#include "smc/SMCKeyText.h"
#include "smc/SMCValueDecoding.h"

#include <mutex>
#include <utility>

namespace kelvinbar {

namespace {

constexpr std::uint32_t structMethodSelector = 2;

/// The process-wide state. All of it is used under the lock only. The lock is recursive: a thread that holds
/// it may open or call again.
struct ConnectionState {
    NamedRecursiveMutex smcLock{"Kelvinbar.AppleSMC.Lock"};
    std::shared_ptr<SMCDriver> driver;
    SMCDriver::Connection smcConnection = 0;
};

ConnectionState& connectionState() {
    static ConnectionState state;
    return state;
}

/// A call about `key`; an answer with a non-zero result byte is a failure.
ReturnCode callChecked(const SMCParamBlock& input, SMCParamBlock& output) {
    const ReturnCode code = callSMC(input, output);
    if (code != kernSuccess) return code;
    return output.result == 0 ? kernSuccess : kernFailure;
}

SMCParamBlock request(SMCCommand command) {
    SMCParamBlock block;
    block.command = static_cast<std::uint8_t>(command);
    return block;
}

} // namespace

ReturnCode openSMC() {
    ConnectionState& state = connectionState();
    const std::lock_guard lock(state.smcLock);
    if (state.smcConnection != 0) return kernSuccess;
    if (state.driver == nullptr) return kernNotFound;

    const auto service = state.driver->findService("AppleSMC");
    if (!service) return kernNotFound;
    const SMCDriver::OpenResult opened = state.driver->open(*service);
    if (opened.code == kernSuccess) {
        state.smcConnection = opened.connection;
    } else if (opened.connection != 0) {
        state.driver->close(opened.connection);
    }
    return opened.code;
}

void closeSMC() {
    ConnectionState& state = connectionState();
    const std::lock_guard lock(state.smcLock);
    if (state.smcConnection == 0) return;
    state.driver->close(std::exchange(state.smcConnection, 0));
}

ReturnCode callSMC(const SMCParamBlock& input, SMCParamBlock& output) {
    output = {};
    ConnectionState& state = connectionState();
    const std::lock_guard lock(state.smcLock);
    if (state.smcConnection == 0) return kernInvalidArgument;
    std::size_t outputSize = sizeof(output);
    return state.driver->callStructMethod(state.smcConnection, structMethodSelector,
                                          std::as_bytes(std::span(&input, 1)),
                                          std::as_writable_bytes(std::span(&output, 1)), outputSize);
}

ReturnCode readKey(std::string_view key, SMCParamBlock& output) {
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

    // The read command does not return what describes the value.
    answer.key = input.key;
    answer.dataSize = info.dataSize;
    answer.dataType = info.dataType;
    answer.dataAttributes = info.dataAttributes;
    answer.padding37 = info.padding37;
    output = answer;
    return kernSuccess;
}

ReturnCode readKeyByIndex(std::uint32_t index, std::string& key) {
    SMCParamBlock input = request(SMCCommand::keyByIndex);
    input.data32 = index;
    SMCParamBlock output;
    if (const ReturnCode code = callChecked(input, output); code != kernSuccess) return code;
    std::string found = fourCharString(output.key);
    if (!isPrintableSMCKey(found)) return kernFailure;
    key = std::move(found);
    return kernSuccess;
}

std::uint32_t readKeyCount() {
    SMCParamBlock block;
    if (readKey("#KEY", block) != kernSuccess || block.dataSize < 4) return 0;
    const std::uint32_t first = block.bytes[0];
    const std::uint32_t second = block.bytes[1];
    const std::uint32_t third = block.bytes[2];
    const std::uint32_t fourth = block.bytes[3];
    const std::uint32_t bigEndian = (first << 24U) | (second << 16U) | (third << 8U) | fourth;
    if (fourCharString(block.dataType) == "ui32") return bigEndian;

    // Emulators that report the count under a wrong type: the byte order in which it fits in 16 bits wins.
    if (first == 0 && second == 0 && bigEndian != 0) return bigEndian;
    if (third == 0 && fourth == 0) return first | (second << 8U);
    return 0;
}

void useDriver(std::shared_ptr<SMCDriver> driver) {
    ConnectionState& state = connectionState();
    const std::lock_guard lock(state.smcLock);
    closeSMC();
    state.driver = std::move(driver);
}

} // namespace kelvinbar
