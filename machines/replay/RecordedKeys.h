#pragma once

#include "machines/emulated/SMCKeySource.h"
#include "machines/replay/RecordedMachine.h"

#include <unordered_map>
#include <vector>

namespace kelvinbar {

/// The keys of a snapshot, in their order, with the bytes they had.
class RecordedKeys final : public SMCKeySource {
  public:
    /// `isPresent` false makes a machine whose controller cannot be found.
    RecordedKeys(std::vector<RecordedKey> keys, bool isPresent);

    bool isPresent() override { return isPresent_; }

    /// The keys that are here, whatever was recorded under "#KEY": a text may hold fewer than there were.
    std::size_t keyCount() override { return keys_.size(); }

    std::optional<std::uint32_t> keyAtIndex(std::uint32_t index) override;
    std::optional<KeyInfo> keyInfo(std::uint32_t code) override;
    std::uint8_t readBytes(std::uint32_t code, SMCBytes& bytes) override;

  private:
    [[nodiscard]] const RecordedKey* find(std::uint32_t code) const;

    std::vector<RecordedKey> keys_;
    std::unordered_map<std::uint32_t, std::size_t> places_;
    bool isPresent_;
};

} // namespace kelvinbar
