#include "sensors/SourceChain.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

namespace kelvinbar {

SourceChain::SourceChain(std::vector<std::shared_ptr<SensorSource>> sources)
    : sources_(std::move(sources)), owners_(std::make_shared<const Owners>()) {}

SourceStatus SourceChain::status() {
    SourceStatus result;
    for (const auto& source : sources_) {
        SourceStatus status = source->status();
        if (!result.isAvailable && (status.isAvailable || result.message.empty())) result = std::move(status);
    }
    return result;
}

std::vector<std::string> SourceChain::discoverKeys(const KeySet& listedBefore) {
    auto owners = std::make_shared<Owners>();
    KeySet listed = listedBefore;
    std::vector<std::string> keys;
    for (std::size_t place = 0; place < sources_.size(); ++place) {
        for (std::string& key : sources_[place]->discoverKeys(listed)) {
            if (owners->try_emplace(key, place).second) keys.push_back(std::move(key));
        }
        listed.insert(keys.begin(), keys.end());
    }
    const std::lock_guard lock(mutex_);
    owners_ = std::move(owners);
    return keys;
}

KeyHistory SourceChain::keyHistory(bool withFormerKeys) {
    KeyHistory history;
    for (const auto& source : sources_) {
        KeyHistory next = source->keyHistory(withFormerKeys);
        history.places.merge(next.places);
        if (!next.formerKeys) continue;
        if (!history.formerKeys) history.formerKeys.emplace();
        history.formerKeys->merge(*next.formerKeys);
    }
    return history;
}

/// The index of the source that listed all of `keys`. No value if there is none.
std::optional<std::size_t> SourceChain::commonOwner(const Owners& owners, std::span<const std::string> keys) {
    std::optional<std::size_t> common;
    for (const std::string& key : keys) {
        const auto owner = owners.find(key);
        if (owner == owners.end() || owner->second != common.value_or(owner->second)) return std::nullopt;
        common = owner->second;
    }
    return common;
}

std::vector<RawReading> SourceChain::readCandidateKeys(std::span<const std::string> keys) {
    const auto known = owners();
    // The usual case: one source has all keys, so nothing needs to be distributed.
    if (const auto place = commonOwner(*known, keys)) return sources_[*place]->readCandidateKeys(keys);
    std::vector<RawReading> readings;
    readings.reserve(keys.size());
    KeySet readWithoutOwner;
    for (std::size_t place = 0; place < sources_.size(); ++place) {
        std::vector<std::string> wanted;
        for (const std::string& key : keys) {
            const auto owner = known->find(key);
            const bool hasOwner = owner != known->end();
            if (hasOwner ? owner->second == place : !readWithoutOwner.contains(key)) wanted.push_back(key);
        }
        for (RawReading& reading : sources_[place]->readCandidateKeys(wanted)) {
            if (!known->contains(reading.key)) readWithoutOwner.insert(reading.key);
            readings.push_back(std::move(reading));
        }
    }
    return readings;
}

std::vector<RawReading> SourceChain::readSMCSuperIOFans() {
    std::vector<RawReading> fans;
    for (const auto& source : sources_) {
        std::ranges::move(source->readSMCSuperIOFans(), std::back_inserter(fans));
    }
    return fans;
}

std::vector<SourceReport> SourceChain::report() {
    std::vector<SourceReport> reports;
    for (const auto& source : sources_) std::ranges::move(source->report(), std::back_inserter(reports));
    return reports;
}

void SourceChain::close() {
    for (const auto& source : sources_) source->close();
}

std::shared_ptr<const SourceChain::Owners> SourceChain::owners() const {
    const std::lock_guard lock(mutex_);
    return owners_;
}

} // namespace kelvinbar
