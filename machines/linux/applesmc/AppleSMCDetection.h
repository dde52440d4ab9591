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
#include <string_view>

namespace kelvinbar {

/// What visits of the SMC call it.
inline constexpr std::string_view appleSMCDevice = "AppleSMC";

/// The keys of the SMC, looked for while the program runs: the `applesmc` driver may be loaded or unloaded at
/// any time. Not thread-safe; KeySourceDriver's caller serialises calls.
class DetectedAppleSMC final : public SMCKeySource {
  public:
    /// Opens the driver's files; null when there is no SMC, or when this user may not list its keys.
    using Open = std::function<std::unique_ptr<AppleSMCRegisters>()>;

    /// The shortest time between two searches, so that a PC without an SMC does not search at each pass.
    static constexpr std::chrono::seconds searchInterval{60};

    DetectedAppleSMC(Open open, std::shared_ptr<const MonotonicClock> clock);

    /// Searches if there is no SMC and `searchInterval` has passed.
    bool isPresent() override;

    /// Drops an SMC that lists no keys: its driver has been unloaded.
    std::size_t keyCount() override;
    /// These fail without an SMC, as for a key that does not exist.
    std::optional<std::uint32_t> keyAtIndex(std::uint32_t index) override;
    std::optional<KeyInfo> keyInfo(std::uint32_t code) override;
    std::uint8_t readBytes(std::uint32_t code, SMCBytes& bytes) override;

  private:
    void search();

    Open open_;
    std::shared_ptr<const MonotonicClock> clock_;
    std::unique_ptr<AppleSMCKeys> keys_; ///< null without an SMC
    std::optional<std::chrono::nanoseconds> searchedAt_;
};

/// Opens the first SMC below `root`, the directory that holds sys/. Null without one. When there is one but
/// this user may not list its keys, logs a warning once and returns null.
std::unique_ptr<AppleSMCRegisters> openAppleSMC(const std::filesystem::path& root, Log& log);

enum class AppleSMCAccess : std::uint8_t {
    absent,  ///< no SMC, or its driver is not loaded
    refused, ///< this user may not list its keys
    granted,
};

/// Whether this user may list the keys of an SMC below `root`. Opens and closes its files.
AppleSMCAccess appleSMCAccess(const std::filesystem::path& root);

} // namespace kelvinbar
