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

/// The keys of Apple's controller as the kernel's driver shows them: the controller's own names, types and
/// bytes. Other programs may choose keys at the same time; every answer is checked for being the one that was
/// asked for, and asked again a few times when it is not.
class AppleSMCKeys final : public SMCKeySource {
  public:
    explicit AppleSMCKeys(std::unique_ptr<AppleSMCRegisters> registers);

    bool isPresent() override { return true; }

    /// Lists the keys, unless their number is that of the last list. Keys that were refused are asked again.
    std::size_t keyCount() override;

    std::optional<std::uint32_t> keyAtIndex(std::uint32_t index) override;
    std::optional<KeyInfo> keyInfo(std::uint32_t code) override;
    std::uint8_t readBytes(std::uint32_t code, SMCBytes& bytes) override;

    /// The codes of the last list, in the controller's order.
    [[nodiscard]] std::vector<std::uint32_t> codes() const;

  private:
    struct Key {
        Key(std::uint32_t keyCode, std::uint32_t keyIndex) : code(keyCode), index(keyIndex) {}

        std::uint32_t code = 0;
        std::uint32_t index = 0;     ///< the driver's
        std::optional<KeyInfo> info; ///< never changes once it is known
        bool isRefused = false;      ///< the controller did not give it away
    };

    enum class Outcome : std::uint8_t { done, refused, disturbed };

    void list(std::uint32_t count);
    Outcome readCodeAt(std::uint32_t index, std::uint32_t& code);
    Key* find(std::uint32_t code);

    /// Runs `read` while the key is chosen, until nobody else has chosen another meanwhile.
    template <typename Read>
    Outcome readSelected(const Key& key, Read read);

    std::unique_ptr<AppleSMCRegisters> registers_;
    std::uint32_t listedCount_ = 0;
    std::vector<Key> keys_;
    std::unordered_map<std::uint32_t, std::size_t> places_;
};

} // namespace kelvinbar
