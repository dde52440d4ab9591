#pragma once

#include "sensors/SensorSource.h"

#include <memory>
#include <mutex>
#include <optional>
#include <unordered_map>

namespace kelvinbar {

/// Several sources as one. An earlier source takes precedence: a key that two sources list is read from the
/// first of them. Any thread.
class SourceChain final : public SensorSource {
  public:
    explicit SourceChain(std::vector<std::shared_ptr<SensorSource>> sources);

    /// Available when one source is, with the message of the first such source, else of the first source.
    SourceStatus status() override;
    std::vector<std::string> discoverKeys(const KeySet& listedBefore) override;
    KeyHistory keyHistory(bool withFormerKeys) override;

    /// Reads a key from the source that listed it, and a key that none has listed from the first source that
    /// can read it. The readings come source by source.
    std::vector<RawReading> readCandidateKeys(std::span<const std::string> keys) override;
    std::vector<RawReading> readSMCSuperIOFans() override;
    void close() override;

  private:
    using Owners = std::unordered_map<std::string, std::size_t>;

    static std::optional<std::size_t> commonOwner(const Owners& owners, std::span<const std::string> keys);

    [[nodiscard]] std::shared_ptr<const Owners> owners() const;

    const std::vector<std::shared_ptr<SensorSource>> sources_;
    mutable std::mutex mutex_;             ///< guards the pointer below
    std::shared_ptr<const Owners> owners_; ///< the source that listed each key
};

} // namespace kelvinbar
