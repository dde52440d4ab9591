#include "machines/linux/sources/LiveSensor.h"

#include "base/Text.h"
#include "machines/linux/files/SystemFile.h"

#include <algorithm>
#include <array>
#include <thread>
#include <utility>

namespace kelvinbar {

DevicePower::DevicePower(const std::vector<std::filesystem::path>& states,
                         std::shared_ptr<const MonotonicClock> clock)
    : clock_(std::move(clock)), askedAt_((clock_->now() - 2 * validity).count()) {
    states_.reserve(states.size());
    for (const auto& state : states) states_.push_back(SensorFile::shared(state));
}

bool DevicePower::isAsleep() const {
    const auto now = clock_->now();
    if (now - std::chrono::nanoseconds(askedAt_.load()) > validity) {
        wasAsleep_ = askKernel();
        askedAt_ = now.count();
    }
    return wasAsleep_;
}

bool DevicePower::askKernel() const {
    return std::ranges::any_of(states_, [](const std::shared_ptr<const SensorFile>& state) {
        std::array<char, 32> buffer{};
        const auto status = state->line(buffer);
        return status == "suspended" || status == "suspending";
    });
}

std::chrono::nanoseconds PowerMeter::timeToFirstPower(std::chrono::nanoseconds now) const {
    if (!joules_ || power_) return std::chrono::nanoseconds(0);
    return std::clamp<std::chrono::nanoseconds>(time_ + shortestTime - now, std::chrono::nanoseconds(0),
                                                shortestTime);
}

std::optional<double> PowerMeter::powerOf(double growth, double seconds) const {
    if (growth >= 0) return growth / seconds;
    // It went round, unless that would take more power than there is: then it began anew at 0, as after
    // hibernation.
    const double power = (growth + range_) / seconds;
    return power >= 0 && power <= mostPower ? std::optional(power) : std::nullopt;
}

std::optional<double> PowerMeter::powerAt(double joules, std::chrono::nanoseconds now) {
    if (joules_ && now - time_ < shortestTime) return power_;
    const std::chrono::duration<double> elapsed = now - time_;
    power_ = joules_ ? powerOf(joules - *joules_, elapsed.count()) : std::nullopt;
    joules_ = joules;
    time_ = now;
    return power_;
}

LiveSensor::LiveSensor(const SensorChannel& channel, std::shared_ptr<const DevicePower> power,
                       std::shared_ptr<const MonotonicClock> clock)
    : kind_(channel.kind)
    , countsPerUnit_(channel.countsPerUnit)
    , text_(channel.text)
    , power_(std::move(power))
    , clock_(std::move(clock)) {
    if (!channel.file.empty()) file_ = SensorFile::shared(channel.file);
    if (!channel.fault.empty()) fault_ = SensorFile::shared(channel.fault);
    if (kind_ != SensorKind::energy) return;
    const auto range = channel.range.empty() ? std::nullopt : systemFileNumber(channel.range);
    meter_ = std::make_shared<PowerMeter>(static_cast<double>(range.value_or(0)) / countsPerUnit_);
}

void LiveSensor::meter(const LiveSensor* earlier) {
    if (meter_ == nullptr) return;
    if (earlier != nullptr && earlier->meter_ != nullptr) {
        meter_ = earlier->meter_;
        return;
    }
    if (!isTrustworthy()) return;
    if (const auto counts = number()) {
        static_cast<void>(meter_->powerAt(static_cast<double>(*counts) / countsPerUnit_, clock_->now()));
    }
}

std::optional<std::int64_t> LiveSensor::number() const {
    return file_ == nullptr ? std::nullopt : file_->number();
}

bool LiveSensor::isTrustworthy() const {
    if (power_ != nullptr && power_->isAsleep()) return false;
    return fault_ == nullptr || !fault_->isOpen() || fault_->number() == 0;
}

std::optional<double> LiveSensor::value() const {
    if (!isTrustworthy()) return std::nullopt;
    std::optional<double> value;
    if (meter_ != nullptr) {
        value = meteredPower();
    } else if (const auto counts = number()) {
        value = static_cast<double>(*counts) / countsPerUnit_;
    }
    return value && isPossibleValue(kind_, *value) ? value : std::nullopt;
}

std::optional<double> LiveSensor::meteredPower() const {
    if (const auto wait = meter_->timeToFirstPower(clock_->now()); wait.count() > 0) {
        std::this_thread::sleep_for(wait);
    }
    const auto counts = number();
    if (!counts) return std::nullopt;
    return meter_->powerAt(static_cast<double>(*counts) / countsPerUnit_, clock_->now());
}

std::optional<SMCBytes> LiveSensor::bytes(const SensorType& type) const {
    if (kind_ == SensorKind::text || kind_ == SensorKind::fanName) return textBytes();
    const auto read = value();
    return read ? encodedNumber(type, *read) : std::nullopt;
}

std::optional<SMCBytes> LiveSensor::textBytes() const {
    if (power_ != nullptr && power_->isAsleep()) return std::nullopt;
    if (kind_ == SensorKind::fanName) return encodedText(text_);
    std::array<char, 64> buffer{};
    const auto line = file_ == nullptr ? std::nullopt : file_->line(buffer);
    return line ? std::optional(encodedText(trimmed(*line))) : std::nullopt;
}

} // namespace kelvinbar
