#pragma once

#include "base/Clock.h"
#include "base/Log.h"
#include "sensors/SensorSource.h"
#include "smc/IORegistry.h"
#include "smc/RegistryFans.h"
#include "smc/SMCConnection.h"
#include "smc/SMCDriver.h"

#include <cstddef>
#include <memory>

/// Sensor readings of a System Management Controller (SMC), the chip that manages fans, temperatures and
/// power. The controller names each value by a four-character key. The bridge lists the keys, reads and
/// decodes them through a driver, and adds the fan speeds that sensor drivers publish in the I/O registry
/// instead of under a key.
///
/// Limits: 8192 listed keys, 1024 keys per read, 32 bytes per value. Reading a key takes two driver calls.
/// Pitfalls: names and units come from the catalogue, not from here, and the values of one pass were not read
/// at the same moment.
namespace kelvinbar {

/// A source over one controller. Any thread. The destructor closes the connection.
class SMCBridge final : public SensorSource {
  public:
    /// `registry` is null on systems without an I/O registry. `log`, which outlives the bridge, may be null.
    /// Opens nothing yet.
    SMCBridge(std::shared_ptr<SMCDriver> driver, std::shared_ptr<IORegistry> registry,
              std::shared_ptr<const MonotonicClock> clock, Log* log = nullptr);

    SourceStatus status() override;

    /// The printable keys in the controller's own order, without duplicates. Empty unless the controller
    /// reports 1 to 8192 keys. Ignores `listedBefore`.
    std::vector<std::string> discoverKeys(const KeySet& listedBefore = {}) override;

    /// Reads and decodes every key that `discoverKeys` lists. Skips keys that cannot be read. For tests and
    /// diagnosis only: a pass reads the keys it needs.
    std::vector<RawReading> readAllKeys();

    /// Reads only the first 1024 of `keys`, and logs how many it leaves out.
    std::vector<RawReading> readCandidateKeys(std::span<const std::string> keys) override;

    /// Works without a connection. The result is cached for 15 seconds.
    std::vector<RawReading> readSMCSuperIOFans() override;

    void close() override;

  private:
    template <typename Visit>
    void visitListedKeys(Visit visit);
    void appendReading(std::vector<RawReading>& readings, const std::string& key);
    void logLeftOut(std::size_t count) const;

    SMCConnection connection_;
    RegistryFans fans_;
    Log* const log_; ///< may be null
};

} // namespace kelvinbar
