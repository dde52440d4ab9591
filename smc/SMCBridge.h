#pragma once

#include "base/Value.h"
#include "smc/SMCValueDecoding.h"

#include <span>
#include <string>
#include <vector>

namespace kelvinbar {

/// The gateway to the controller: everything the store asks of it. Operations of the class only; they block,
/// may be called from any thread, and give empty lists where nothing could be read.
class SMCBridge {
  public:
    SMCBridge() = delete;

    /// Opens the connection and tells how that went: "available" (truth) and "message" (text for people).
    static Dictionary status();

    /// The printable keys that the controller lists, in its order, each once. Empty unless it reports 1 to
    /// 8192 keys.
    static std::vector<std::string> discoverKeys();

    /// As discoverKeys, with every listed key read and decoded; keys that cannot be read are left out.
    static std::vector<SMCKeyResult> readAllKeys();

    /// Reads the first 1024 of `keys` in their order; unprintable, repeated and unreadable ones are left out.
    static std::vector<SMCKeyResult> readCandidateKeys(std::span<const std::string> keys);

    /// Fan speeds that sensor drivers publish in the registry. Needs no connection; kept for 15 seconds.
    static std::vector<SMCKeyResult> readSMCSuperIOFans();

    static void close();
};

} // namespace kelvinbar
