#pragma once

#include "machines/replay/RecordedMachine.h"
#include "sensors/SensorSource.h"

#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kelvinbar {

/// The sensors of a recorded machine: the controller's lines decoded from their bytes, all other lines as
/// they were recorded. Nothing changes after construction, so any thread may read.
class ReplaySource final : public SensorSource {
  public:
    explicit ReplaySource(const RecordedMachine& recorded);

    /// Available unless the recording holds system facts alone.
    SourceStatus status() override;

    /// The keys in the order of the text.
    std::vector<std::string> discoverKeys(const KeySet& listedBefore) override;
    std::vector<RawReading> readCandidateKeys(std::span<const std::string> keys) override;

    std::vector<RawReading> readSMCSuperIOFans() override { return fans_; }

    void close() override {}

  private:
    void add(RawReading reading);

    std::vector<RawReading> readings_;
    std::unordered_map<std::string, std::size_t> places_;
    std::vector<RawReading> fans_;
};

} // namespace kelvinbar
