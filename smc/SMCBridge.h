#pragma once

#include "base/Clock.h"
#include "sensors/SensorSource.h"
#include "smc/IORegistry.h"
#include "smc/RegistryFans.h"
#include "smc/SMCConnection.h"
#include "smc/SMCDriver.h"

#include <memory>

namespace kelvinbar {

/// The source over a System Management Controller: its keys, read through a driver, and the fan speeds that
/// sensor drivers publish in the I/O registry. Any thread. Closes its connection when it is destroyed.
class SMCBridge final : public SensorSource {
  public:
    /// `registry` is null on a system without an I/O registry.
    SMCBridge(std::shared_ptr<SMCDriver> driver, std::shared_ptr<IORegistry> registry,
              std::shared_ptr<const MonotonicClock> clock);

    SourceStatus status() override;

    /// The printable keys in the controller's own order, each once. Empty unless it reports 1 to 8192 keys.
    /// Other sources' keys do not matter.
    std::vector<std::string> discoverKeys(const KeySet& listedBefore = {}) override;

    /// As `discoverKeys`, with every key read and decoded; keys that cannot be read are left out.
    std::vector<RawReading> readAllKeys();

    /// Considers the first 1024 of `keys` only.
    std::vector<RawReading> readCandidateKeys(std::span<const std::string> keys) override;

    /// Does not need the connection. The result is kept for 15 seconds.
    std::vector<RawReading> readSMCSuperIOFans() override;

    void close() override;

  private:
    template <typename Visit>
    void visitListedKeys(Visit visit);
    void appendReading(std::vector<RawReading>& readings, const std::string& key);

    SMCConnection connection_;
    RegistryFans fans_;
};

} // namespace kelvinbar
