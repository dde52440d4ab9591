#pragma once

#include "machines/linux/applesmc/AppleSMCRegisters.h"
#include "machines/linux/applesmc/SMCKeySource.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

namespace kelvinbar {

/// The keys of an SMC, read through the `applesmc` driver: names, types and bytes are the SMC's own.
///
/// The driver has no call that reads a key. A program writes an index to `key_at_index`, which selects a key
/// for the whole system, and then reads that key from other files. Another program may select a different key
/// in between. So each result is checked: if the selected key has changed during the read, the read is
/// repeated, up to four times. Programs that take the advisory lock do not disturb each other at all.
///
/// Pitfall: reading a key that the SMC refuses to return takes up to a tenth of a second. Such a key is not
/// read again until the next `keyCount()`. Not thread-safe.
class AppleSMCKeys final : public SMCKeySource {
  public:
    explicit AppleSMCKeys(std::unique_ptr<AppleSMCRegisters> registers);

    bool isPresent() override { return true; }

    /// Returns the number of listed keys. Lists them again if the SMC reports another number than last time,
    /// or if the last listing was disturbed. Keys that were refused are tried again from here on.
    std::size_t keyCount() override;

    std::optional<std::uint32_t> keyAtIndex(std::uint32_t index) override;
    /// Type and size never change, so each is read once.
    std::optional<KeyInfo> keyInfo(std::uint32_t code) override;
    /// Returns `keyNotReadable` for a refused key and for one whose reads were disturbed each time; `bytes`
    /// is then unchanged.
    std::uint8_t readBytes(std::uint32_t code, SMCBytes& bytes) override;

    /// The packed codes of the last listing, in the SMC's order.
    [[nodiscard]] std::vector<std::uint32_t> codes() const;

  private:
    struct Key {
        Key(std::uint32_t keyCode, std::uint32_t keyIndex) : code(keyCode), index(keyIndex) {}

        std::uint32_t code = 0;
        std::uint32_t index = 0;     ///< as the driver numbers it
        std::optional<KeyInfo> info; ///< empty until it has been read
        bool isRefused = false;      ///< the last read failed
    };

    enum class Outcome : std::uint8_t { done, refused, disturbed };

    /// Replaces the list by the keys at the indexes below `count`.
    void list(std::uint32_t count);
    /// Reads the key name at `index` into `code`.
    Outcome readCodeAt(std::uint32_t index, std::uint32_t& code);
    /// The listed key; null when there is none.
    Key* find(std::uint32_t code);

    /// Selects `key`, runs `read` and repeats both while another program interferes. `read` returns whether
    /// it succeeded.
    template <typename Read>
    Outcome readSelected(const Key& key, Read read);

    std::unique_ptr<AppleSMCRegisters> registers_;
    std::uint32_t listedCount_ = 0; ///< what the SMC reported; 0 forces a new listing
    std::vector<Key> keys_;
    std::unordered_map<std::uint32_t, std::size_t> places_; ///< indexes into `keys_` by code
};

} // namespace kelvinbar
