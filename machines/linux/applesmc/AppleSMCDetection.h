#pragma once

#include "base/Clock.h"
#include "base/Log.h"
#include "machines/linux/applesmc/AppleSMCKeys.h"
#include "machines/linux/applesmc/SMCKeySource.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

namespace kelvinbar {

/// The keys of Apple's controller, once there is one: its driver may be loaded after the program starts, and
/// unloaded again. Used by one thread at a time.
class DetectedAppleSMC final : public SMCKeySource {
  public:
    /// Opens the controller; null when there is none, or when this user may not choose its keys.
    using Open = std::function<std::unique_ptr<AppleSMCRegisters>()>;

    /// A PC has no such controller, and must not search for it at every pass.
    static constexpr std::chrono::seconds searchInterval{60};

    DetectedAppleSMC(Open open, std::shared_ptr<const MonotonicClock> clock);

    bool isPresent() override;

    /// A controller that lists no keys has gone.
    std::size_t keyCount() override;
    std::optional<std::uint32_t> keyAtIndex(std::uint32_t index) override;
    std::optional<KeyInfo> keyInfo(std::uint32_t code) override;
    std::uint8_t readBytes(std::uint32_t code, SMCBytes& bytes) override;

  private:
    void search();

    Open open_;
    std::shared_ptr<const MonotonicClock> clock_;
    std::unique_ptr<AppleSMCKeys> keys_; ///< null without a controller
    std::optional<std::chrono::nanoseconds> searchedAt_;
};

/// Opens the controller below `root`, the directory that holds sys/. Logs when this user may not choose its
/// keys.
std::unique_ptr<AppleSMCRegisters> openAppleSMC(const std::filesystem::path& root, Log& log);

} // namespace kelvinbar
