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

/// The connection to the "AppleSMC" service and the key protocol over it.
///
/// Any thread. Every driver call holds the lock, but only for that call: another thread may get in between
/// the two calls of `readKey`. The lock is recursive, so the thread that holds it may open the connection and
/// call again. A failed call leaves the connection open. In an abandoned pass every call fails with 5 at
/// once.
class SMCConnection {
  public:
    explicit SMCConnection(std::shared_ptr<SMCDriver> driver);
    SMCConnection(const SMCConnection&) = delete;
    SMCConnection& operator=(const SMCConnection&) = delete;
    ~SMCConnection();

    /// Opens the connection unless it is open. Returns 56 if there is no service, otherwise the driver's
    /// code. The next call after a failure tries again.
    ReturnCode openSMC();

    /// Closes the connection if it is open. A later `openSMC` opens a new one.
    void close();

    /// Calls the driver's method 2 and zeroes `output` first. Returns 4 if not connected, otherwise the
    /// driver's code. Success does not mean that the controller agreed: the caller checks the `result` byte.
    ReturnCode callSMC(const SMCParamBlock& input, SMCParamBlock& output);

    /// Reads size and type of `key`, then its bytes. Returns 4 without a call if the key is not printable,
    /// and 5 if the controller refuses it or reports a size outside 1 to 32 bytes. Leaves `output` unchanged
    /// on failure.
    ReturnCode readKey(std::string_view key, SMCParamBlock& output);

    /// Reads the key at a zero-based index of the controller's list. Leaves `key` unchanged on failure.
    ReturnCode readKeyByIndex(std::uint32_t index, std::string& key);

    /// The number of keys, which the controller reports under "#KEY". 0 on any failure.
    std::uint32_t readKeyCount();

  private:
    ReturnCode callChecked(const SMCParamBlock& input, SMCParamBlock& output);

    NamedRecursiveMutex smcLock_{"Kelvinbar.AppleSMC.Lock"}; ///< guards every driver call and the handle
    const std::shared_ptr<SMCDriver> driver_;
    SMCDriver::Connection smcConnection_ = 0; ///< 0 if closed
};

} // namespace kelvinbar
