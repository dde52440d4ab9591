#include "smc/SMCBridge.h"

#include "smc/RegistryFans.h"
#include "smc/SMCConnection.h"
#include "smc/SMCKeyText.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <unordered_set>
#include <utility>

namespace kelvinbar {

namespace {

/// Bounds on what one pass may cost.
constexpr std::uint32_t maximumKeyCount = 8192;
constexpr std::size_t maximumCandidates = 1024;

/// Tells printable keys that have come before from new ones.
class SeenKeys {
  public:
    explicit SeenKeys(std::size_t expectedCount) { codes_.reserve(expectedCount); }

    bool addIfNew(std::string_view printableKey) { return codes_.insert(packedSMCKey(printableKey)).second; }

  private:
    std::unordered_set<std::uint32_t> codes_;
};

/// Calls `visit` with every key of the controller's list that was not listed before.
template <typename Visit>
void visitListedKeys(Visit visit) {
    if (openSMC() != kernSuccess) return;
    const std::uint32_t count = readKeyCount();
    if (count == 0 || count > maximumKeyCount) return;
    SeenKeys seen(count);
    std::string key;
    for (std::uint32_t index = 0; index < count; ++index) {
        if (readKeyByIndex(index, key) == kernSuccess && seen.addIfNew(key)) visit(std::as_const(key));
    }
}

void appendReading(std::vector<SMCKeyResult>& results, const std::string& key) {
    SMCParamBlock block;
    if (readKey(key, block) != kernSuccess) return;
    SMCKeyResult result = dictionaryForKey(key, block);
    if (!result.empty()) results.push_back(std::move(result));
}

} // namespace

Dictionary SMCBridge::status() {
    const bool available = openSMC() == kernSuccess;
    return {{"available", available},
            {"message", available ? "AppleSMC connected"
                                  : "AppleSMC service not available. This app is intended for "
                                    "Hackintosh/macOS systems with SMC emulation."}};
}

std::vector<std::string> SMCBridge::discoverKeys() {
    std::vector<std::string> keys;
    visitListedKeys([&](const std::string& key) { keys.push_back(key); });
    return keys;
}

std::vector<SMCKeyResult> SMCBridge::readAllKeys() {
    std::vector<SMCKeyResult> results;
    visitListedKeys([&](const std::string& key) { appendReading(results, key); });
    return results;
}

std::vector<SMCKeyResult> SMCBridge::readCandidateKeys(std::span<const std::string> keys) {
    std::vector<SMCKeyResult> results;
    if (openSMC() != kernSuccess) return results;
    const auto candidates = keys.first(std::min(keys.size(), maximumCandidates));
    results.reserve(candidates.size());
    SeenKeys seen(candidates.size());
    for (const std::string& key : candidates) {
        if (isPrintableSMCKey(key) && seen.addIfNew(key)) appendReading(results, key);
    }
    return results;
}

std::vector<SMCKeyResult> SMCBridge::readSMCSuperIOFans() { return cachedRegistryFans(); }

void SMCBridge::close() { closeSMC(); }

} // namespace kelvinbar
