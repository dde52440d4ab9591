#pragma once

#include "base/NamedRecursiveMutex.h"
#include "smc/ReturnCode.h"
#include "smc/SMCDriver.h"
#include "smc/SMCParamBlock.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace kelvinbar {

/// The connection to the "AppleSMC" service, and the calls through which every key is read.
///
/// Any thread. Every driver call is made under one lock, which is held for that call only: between the two
/// calls of `readKey` another thread may make its own. The lock is recursive, so a thread that holds it may
/// open and call again. Failed key calls leave the connection open.
class SMCConnection {
  public:
    explicit SMCConnection(std::shared_ptr<SMCDriver> driver);
    SMCConnection(const SMCConnection&) = delete;
    SMCConnection& operator=(const SMCConnection&) = delete;
    ~SMCConnection();

    /// Opens the connection unless it is open. Returns 56 when there is no service, else the driver's code. A
    /// failure is not remembered.
    ReturnCode openSMC();

    /// Closes the connection if it is open. A later `openSMC` opens a new one.
    void close();

    /// Calls the driver's method 2; zeroes `output` first. Returns 4 without a connection, otherwise the
    /// driver's code. The caller checks the controller's own `result` byte.
    ReturnCode callSMC(const SMCParamBlock& input, SMCParamBlock& output);

    /// Reads the information and then the bytes of `key`, in two calls. Returns 4 for a key that is not
    /// printable, without a call, and 5 when the controller refuses or announces a size outside 1 to 32
    /// bytes. Leaves `output` untouched on failure.
    ReturnCode readKey(std::string_view key, SMCParamBlock& output);

    /// Reads the key at a zero-based index of the controller's list. Leaves `key` untouched on failure.
    ReturnCode readKeyByIndex(std::uint32_t index, std::string& key);

    /// The number of keys that "#KEY" reports; 0 on any failure.
    std::uint32_t readKeyCount();

  private:
    ReturnCode callChecked(const SMCParamBlock& input, SMCParamBlock& output);

    NamedRecursiveMutex smcLock_{"Kelvinbar.AppleSMC.Lock"}; ///< guards every driver call and the handle
    const std::shared_ptr<SMCDriver> driver_;
    SMCDriver::Connection smcConnection_ = 0; ///< 0 while closed
};

} // namespace kelvinbar
