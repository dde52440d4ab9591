#pragma once

#include "machines/replay/RecordedMachine.h"
#include "sensors/SensorSource.h"

#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kelvinbar {

/// The sensors of a recorded machine. SMC keys are decoded from their recorded bytes, by the code that
/// decodes a real SMC, so a change in decoding shows in replays too. All other lines are returned as they
/// were recorded.
///
/// Immutable after construction: no locks, any thread. Nothing fails; `close` does nothing.
class ReplaySource final : public SensorSource {
  public:
    explicit ReplaySource(const RecordedMachine& recorded);

    /// Available unless the recording has system facts only.
    SourceStatus status() override;

    /// The keys: those of the SMC in the order of the text, then those of the kernel.
    std::vector<std::string> discoverKeys(const KeySet& listedBefore) override;
    std::vector<RawReading> readCandidateKeys(std::span<const std::string> keys) override;

    std::vector<RawReading> readSMCSuperIOFans() override { return fans_; }

    void close() override {}

  private:
    /// Adds a reading unless its key is present.
    void add(RawReading reading);

    std::vector<RawReading> readings_;
    std::unordered_map<std::string, std::size_t> places_; ///< indexes into `readings_` by key
    std::vector<RawReading> fans_;
};

} // namespace kelvinbar
