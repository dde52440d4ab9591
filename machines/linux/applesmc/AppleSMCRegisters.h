#pragma once

#include "machines/linux/applesmc/SMCKeySource.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace kelvinbar {

/// Port: the sysfs files through which the kernel's `applesmc` driver shows one SMC key at a time. The
/// selection is shared by the whole system, and no operation selects and reads in one step; AppleSMCKeys
/// deals with that. All functions block. Not thread-safe.
class AppleSMCRegisters {
  public:
    virtual ~AppleSMCRegisters() = default;

    /// Takes an advisory lock (flock) on the selection. False when another program has held it for 20 ms;
    /// after such a failure, the next call does not wait.
    virtual bool lock() = 0;
    /// Only after `lock` returned true.
    virtual void unlock() = 0;

    /// The number of keys that the SMC reports. Here and below: nothing when the file cannot be read.
    virtual std::optional<std::uint32_t> keyCount() = 0;
    /// Selects the key at a zero-based index; false when the driver refuses.
    virtual bool select(std::uint32_t index) = 0;
    /// The index that was selected last, by any program.
    virtual std::optional<std::uint32_t> selectedIndex() = 0;
    /// The four characters of the selected key, spaces included.
    virtual std::optional<std::string> keyName() = 0;
    /// The type's name, of up to four characters: the driver ends it at a zero byte.
    virtual std::optional<std::string> typeName() = 0;
    /// The size of the value in bytes.
    virtual std::optional<std::uint32_t> dataLength() = 0;
    /// Stores the value at the front of `bytes`. False when the SMC refuses to return it, which takes up to a
    /// tenth of a second.
    virtual bool data(SMCBytes& bytes) = 0;
};

/// The files in `folder`, the driver's hwmon or device directory. Null when they do not exist, or when this
/// user may not write to `key_at_index`.
std::unique_ptr<AppleSMCRegisters> openAppleSMCFiles(const std::filesystem::path& folder);

} // namespace kelvinbar
