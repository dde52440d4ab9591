#include "smc/SMCBridge.h"

#include "smc/SMCKeyText.h"
#include "smc/SMCValueDecoding.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <unordered_set>
#include <utility>

namespace kelvinbar {

namespace {

/// Limits on the cost of one pass.
constexpr std::uint32_t maximumKeyCount = 8192;
constexpr std::size_t maximumCandidates = 1024;

/// Detects duplicates among printable keys.
class SeenKeys {
  public:
    explicit SeenKeys(std::size_t expectedCount) { codes_.reserve(expectedCount); }

    bool addIfNew(std::string_view printableKey) { return codes_.insert(packedSMCKey(printableKey)).second; }

  private:
    std::unordered_set<std::uint32_t> codes_;
};

} // namespace

SMCBridge::SMCBridge(std::shared_ptr<SMCDriver> driver, std::shared_ptr<IORegistry> registry,
                     std::shared_ptr<const MonotonicClock> clock, Log* log)
    : connection_(std::move(driver)), fans_(std::move(registry), std::move(clock)), log_(log) {}

/// Calls `visit` for every key of the controller's list. Skips duplicates.
template <typename Visit>
void SMCBridge::visitListedKeys(Visit visit) {
    if (connection_.openSMC() != kernSuccess) return;
    const std::uint32_t count = connection_.readKeyCount();
    if (count == 0 || count > maximumKeyCount) return;
    SeenKeys seen(count);
    std::string key;
    for (std::uint32_t index = 0; index < count; ++index) {
        if (connection_.readKeyByIndex(index, key) == kernSuccess && seen.addIfNew(key)) {
            visit(std::as_const(key));
        }
    }
}

void SMCBridge::appendReading(std::vector<RawReading>& readings, const std::string& key) {
    SMCParamBlock block;
    if (connection_.readKey(key, block) != kernSuccess) return;
    if (auto reading = dictionaryForKey(key, block)) readings.push_back(*std::move(reading));
}

SourceStatus SMCBridge::status() {
    const bool isAvailable = connection_.openSMC() == kernSuccess;
    return {.isAvailable = isAvailable,
            .message = isAvailable ? "AppleSMC connected"
                                   : "AppleSMC service not available. This app is intended for "
                                     "Hackintosh/macOS systems with SMC emulation."};
}

std::vector<std::string> SMCBridge::discoverKeys(const KeySet& /*listedBefore*/) {
    std::vector<std::string> keys;
    visitListedKeys([&](const std::string& key) { keys.push_back(key); });
    return keys;
}

std::vector<RawReading> SMCBridge::readAllKeys() {
    std::vector<RawReading> readings;
    visitListedKeys([&](const std::string& key) { appendReading(readings, key); });
    return readings;
}

std::vector<RawReading> SMCBridge::readCandidateKeys(std::span<const std::string> keys) {
    std::vector<RawReading> readings;
    if (connection_.openSMC() != kernSuccess) return readings;
    const auto candidates = keys.first(std::min(keys.size(), maximumCandidates));
    if (candidates.size() < keys.size()) logLeftOut(keys.size() - candidates.size());
    readings.reserve(candidates.size());
    SeenKeys seen(candidates.size());
    for (const std::string& key : candidates) {
        if (isPrintableSMCKey(key) && seen.addIfNew(key)) appendReading(readings, key);
    }
    return readings;
}

void SMCBridge::logLeftOut(std::size_t count) const {
    if (log_ == nullptr) return;
    log_->once(LogCategory::sourceSMC, LogLevel::warning, [count] {
        return std::to_string(count) + " keys of the controller are left out: a pass reads " +
               std::to_string(maximumCandidates);
    });
}

std::vector<RawReading> SMCBridge::readSMCSuperIOFans() { return fans_.read(); }

void SMCBridge::close() { connection_.close(); }

} // namespace kelvinbar
