#pragma once

#include "machines/linux/applesmc/AppleSMCKeys.h"
#include "machines/linux/applesmc/SMCKeySource.h"
#include "machines/linux/sources/SensorInventory.h"

#include <functional>
#include <memory>

namespace kelvinbar {

/// The keys of a machine under Linux: those of Apple's controller where there is one to be had, and those of
/// the kernel's sensors for what it does not tell. The keys follow the devices at every `keyCount()`.
class LinuxKeys final : public SMCKeySource {
  public:
    /// Opens Apple's controller; null when there is none, or when this user may not choose its keys.
    using OpenController = std::function<std::unique_ptr<AppleSMCRegisters>()>;

    LinuxKeys(std::shared_ptr<SensorInventory> inventory, OpenController openController);

    bool isPresent() override;
    std::size_t keyCount() override;
    std::optional<std::uint32_t> keyAtIndex(std::uint32_t index) override;
    std::optional<KeyInfo> keyInfo(std::uint32_t code) override;
    std::uint8_t readBytes(std::uint32_t code, SMCBytes& bytes) override;

  private:
    void rebuild();
    const SensorKey* findSensor(std::uint32_t code);

    std::shared_ptr<SensorInventory> inventory_;
    OpenController openController_;
    std::unique_ptr<AppleSMCKeys> controller_; ///< null without one
    std::size_t controllerKeyCount_ = 0;
    std::shared_ptr<const SensorInventoryList> sensors_;
    std::size_t lastPlace_ = 0; ///< of the sensor that was asked for last
    bool isFresh_ = false;      ///< no one has asked for the number of keys since the sensors were looked for
};

/// Opens Apple's controller under `inventory`'s root, and says so there when this user may not choose its
/// keys.
std::unique_ptr<AppleSMCRegisters> openAppleSMC(SensorInventory& inventory);

} // namespace kelvinbar
