#pragma once

#include "machines/linux/applesmc/SMCKeySource.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace kelvinbar {

/// Port: the files in which the kernel's driver shows one key of Apple's controller at a time. The choice of
/// the key is shared by the whole system, and no choice and reading can be made one step.
class AppleSMCRegisters {
  public:
    virtual ~AppleSMCRegisters() = default;

    /// Takes the lock that programs which agree on it take before they choose a key. False when another holds
    /// it for longer than a moment.
    virtual bool lock() = 0;
    virtual void unlock() = 0;

    virtual std::optional<std::uint32_t> keyCount() = 0;
    virtual bool select(std::uint32_t index) = 0;
    virtual std::optional<std::uint32_t> selectedIndex() = 0;
    /// The four characters of the selected key.
    virtual std::optional<std::string> keyName() = 0;
    /// Three or four characters; a zero byte cuts the type's name.
    virtual std::optional<std::string> typeName() = 0;
    virtual std::optional<std::uint32_t> dataLength() = 0;
    /// Fills the front of `bytes`; false when the controller does not give the key away, which takes it up to
    /// a tenth of a second.
    virtual bool data(SMCBytes& bytes) = 0;
};

/// The files in `folder`, the driver's device; null when there are none, or when this user may not choose
/// keys.
std::unique_ptr<AppleSMCRegisters> openAppleSMCFiles(const std::filesystem::path& folder);

} // namespace kelvinbar
