#pragma once

#include "sensors/SensorSource.h"

#include <memory>
#include <mutex>
#include <optional>
#include <unordered_map>

namespace kelvinbar {

/// Several sources as one. Earlier sources take precedence: a key that two of them list is read from the
/// first. Pitfall: who listed a key is known only after `discoverKeys`. Any thread.
class SourceChain final : public SensorSource {
  public:
    explicit SourceChain(std::vector<std::shared_ptr<SensorSource>> sources);

    /// Available if at least one source is. The message is that of the first available source, otherwise that
    /// of the first source with one.
    SourceStatus status() override;
    std::vector<std::string> discoverKeys(const KeySet& listedBefore) override;
    KeyHistory keyHistory(bool withFormerKeys) override;

    /// Reads a key from the source that listed it, and an unlisted key from the first source that can read
    /// it. The readings are grouped by source.
    std::vector<RawReading> readCandidateKeys(std::span<const std::string> keys) override;
    std::vector<RawReading> readSMCSuperIOFans() override;
    std::vector<SourceReport> report() override;
    void close() override;

  private:
    using Owners = std::unordered_map<std::string, std::size_t>;

    static std::optional<std::size_t> commonOwner(const Owners& owners, std::span<const std::string> keys);

    [[nodiscard]] std::shared_ptr<const Owners> owners() const;

    const std::vector<std::shared_ptr<SensorSource>> sources_;
    mutable std::mutex mutex_;             ///< guards `owners_`
    std::shared_ptr<const Owners> owners_; ///< by key, the index of the source that listed it
};

} // namespace kelvinbar
