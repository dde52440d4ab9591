#pragma once

#include "smc/ReturnCode.h"
#include "smc/SMCDriver.h"
#include "smc/SMCParamBlock.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

/// The one connection of the process to the "AppleSMC" service. Callable from any thread: every driver call
/// is made under one process-wide lock, which is held for that call only.
namespace kelvinbar {

/// Opens the connection unless it is open. Gives 56 when there is no service; that is not remembered.
ReturnCode openSMC();

/// Closes the connection if it is open. A later `openSMC` opens a fresh one.
void closeSMC();

/// One call of the driver's method 2; `output` is zeroed first. Gives 4 without a connection, otherwise the
/// driver's code; the controller's own `result` byte is left to the caller.
ReturnCode callSMC(const SMCParamBlock& input, SMCParamBlock& output);

/// Reads the information and then the bytes of `key`, in two calls. Gives 4 for a key that is not printable
/// (no call is made), 5 when the controller refuses or announces a size outside 1 to 32 bytes. On failure
/// `output` is untouched.
ReturnCode readKey(std::string_view key, SMCParamBlock& output);

/// The key at a zero-based index of the controller's list. On failure `key` is untouched.
ReturnCode readKeyByIndex(std::uint32_t index, std::string& key);

/// The number of keys that "#KEY" reports; 0 on any failure.
std::uint32_t readKeyCount();

/// Replaces the driver; an open connection is closed through the previous one first. See useMachine.
void useDriver(std::shared_ptr<SMCDriver> driver);

} // namespace kelvinbar
