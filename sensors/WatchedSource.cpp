#include "sensors/WatchedSource.h"

#include "sensors/ReadWatch.h"

#include <utility>

namespace kelvinbar {

namespace {

/// The result of an abandoned pass may be cut short.
bool isWhole() {
    const WatchedPass* const pass = WatchedPass::current();
    return pass == nullptr || !pass->isAbandoned();
}

} // namespace

WatchedSource::WatchedSource(std::shared_ptr<SensorSource> source, std::string name, LogCategory category)
    : source_(std::move(source)), name_(std::move(name)), category_(category) {}

SourceStatus WatchedSource::status() {
    const DeviceVisit visit(name_, category_);
    if (visit.isAllowed()) {
        SourceStatus status = source_->status();
        const std::lock_guard lock(mutex_);
        if (isWhole()) lastStatus_ = SourceStatus(status);
        return status;
    }
    const std::lock_guard lock(mutex_);
    return lastStatus_;
}

std::vector<std::string> WatchedSource::discoverKeys(const KeySet& listedBefore) {
    const DeviceVisit visit(name_, category_);
    if (visit.isAllowed()) {
        std::vector<std::string> keys = source_->discoverKeys(listedBefore);
        const std::lock_guard lock(mutex_);
        if (isWhole()) listedKeys_ = std::vector(keys);
        return keys;
    }
    const std::lock_guard lock(mutex_);
    return listedKeys_;
}

KeyHistory WatchedSource::keyHistory(bool withFormerKeys) {
    const DeviceVisit visit(name_, category_);
    return visit.isAllowed() ? source_->keyHistory(withFormerKeys) : KeyHistory();
}

/// Remembers the readings that are new.
void WatchedSource::learn(Prototypes& known, const std::vector<RawReading>& readings) {
    for (const RawReading& reading : readings) {
        if (!known.contains(reading.key)) known.emplace(reading.key, unansweredReading(reading));
    }
}

std::vector<RawReading> WatchedSource::readCandidateKeys(std::span<const std::string> keys) {
    const DeviceVisit visit(name_, category_);
    std::vector<RawReading> readings;
    if (visit.isAllowed()) {
        readings = source_->readCandidateKeys(keys);
        const std::lock_guard lock(mutex_);
        learn(knownKeys_, readings);
        return readings;
    }
    const std::lock_guard lock(mutex_);
    for (const std::string& key : keys) {
        const auto known = knownKeys_.find(key);
        if (known != knownKeys_.end()) readings.push_back(known->second);
    }
    return readings;
}

std::vector<RawReading> WatchedSource::readSMCSuperIOFans() {
    const DeviceVisit visit(name_, category_);
    std::vector<RawReading> fans;
    if (visit.isAllowed()) {
        fans = source_->readSMCSuperIOFans();
        const std::lock_guard lock(mutex_);
        learn(knownFans_, fans);
        return fans;
    }
    const std::lock_guard lock(mutex_);
    for (const auto& [key, reading] : knownFans_) fans.push_back(reading);
    return fans;
}

std::vector<SourceReport> WatchedSource::report() {
    const DeviceVisit visit(name_, category_);
    return visit.isAllowed() ? source_->report() : std::vector<SourceReport>();
}

void WatchedSource::close() {
    const DeviceVisit visit(name_, category_);
    if (visit.isAllowed()) source_->close();
}

} // namespace kelvinbar
