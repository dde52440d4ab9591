#pragma once

#include "base/Log.h"
#include "sensors/SensorSource.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace kelvinbar {

/// A source that is one device for the watch, such as a controller: it has one reader at a time, and is set
/// aside as a whole. While it is, it repeats its last status and list, and its readings say "no answer".
///
/// Outside a watched pass it passes every call on. Any thread.
class WatchedSource final : public SensorSource {
  public:
    /// `name` and `category` are for the log.
    WatchedSource(std::shared_ptr<SensorSource> source, std::string name, LogCategory category);

    SourceStatus status() override;
    std::vector<std::string> discoverKeys(const KeySet& listedBefore) override;
    KeyHistory keyHistory(bool withFormerKeys) override;
    std::vector<RawReading> readCandidateKeys(std::span<const std::string> keys) override;
    std::vector<RawReading> readSMCSuperIOFans() override;
    std::vector<SourceReport> report() override;

    /// Does nothing while the source is set aside.
    void close() override;

  private:
    /// By key, what a reading is apart from its value.
    using Prototypes = std::map<std::string, RawReading, std::less<>>;

    static void learn(Prototypes& known, const std::vector<RawReading>& readings);

    const std::shared_ptr<SensorSource> source_;
    const std::string name_;
    const LogCategory category_;
    std::mutex mutex_; ///< guards the members below; not held while reading
    SourceStatus lastStatus_{.isAvailable = false, .message = std::string(noAnswer)};
    std::vector<std::string> listedKeys_;
    Prototypes knownKeys_;
    Prototypes knownFans_;
};

} // namespace kelvinbar
