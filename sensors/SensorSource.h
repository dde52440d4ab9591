#pragma once

#include "catalogue/KeySet.h"
#include "sensors/RawReading.h"
#include "sensors/SourceReport.h"

#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace kelvinbar {

/// Whether a source can be read at the moment.
struct SourceStatus {
    bool isAvailable = false;
    std::string message; ///< for people

    friend bool operator==(const SourceStatus&, const SourceStatus&) = default;
};

/// How keys that were stored earlier relate to the keys that a source lists now.
struct KeyHistory {
    /// By key, its device and channel. Only for keys that may change after a restart, such as those that
    /// contain the number of a bus.
    std::map<std::string, std::string> places;

    /// By the key that version 0.1 stored, the current key of the same reading. No value if the source's keys
    /// were the same then.
    std::optional<std::map<std::string, std::string>> formerKeys;
};

/// Port: something that sensor values come from, such as a controller, the kernel or a recorded snapshot.
///
/// The store calls, in this order: `status`, now and then `discoverKeys`, then `readCandidateKeys`. All
/// functions block until the hardware has answered. They may be called from any thread, also from two
/// threads at once; each source has its own lock. Nothing throws: what cannot be read is left out.
class SensorSource {
  public:
    virtual ~SensorSource() = default;

    /// Opens the source if it is closed, and returns whether it is open. The next call after a failure tries
    /// again.
    virtual SourceStatus status() = 0;

    /// The keys that can be read now, without duplicates. `listedBefore` are the keys of the sources that
    /// precede this one in a chain; a source may leave out what those already measure.
    virtual std::vector<std::string> discoverKeys(const KeySet& listedBefore) = 0;

    /// How stored keys relate to those of the last `discoverKeys`. `withFormerKeys` is false once the keys of
    /// version 0.1 have been migrated.
    virtual KeyHistory keyHistory(bool /*withFormerKeys*/) { return {}; }

    /// The readings of `keys`, in their order. Unknown, repeated and unreadable keys are left out.
    virtual std::vector<RawReading> readCandidateKeys(std::span<const std::string> keys) = 0;

    /// Fan speeds that drivers publish in the I/O registry rather than under a key. Most sources have none.
    virtual std::vector<RawReading> readSMCSuperIOFans() = 0;

    /// What became of all channels, by class of devices. Looks for devices and reads all of them, so it takes
    /// longer than a pass. Empty for a source that leaves nothing out of which it knows.
    virtual std::vector<SourceReport> report() { return {}; }

    /// Releases what `status` opened. A later `status` opens it again.
    virtual void close() = 0;
};

} // namespace kelvinbar
