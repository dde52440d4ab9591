#include "machines/linux/sources/LiveSensor.h"

#include "base/Text.h"
#include "machines/linux/files/SystemFile.h"

#include <algorithm>
#include <array>
#include <thread>
#include <utility>

namespace kelvinbar {

namespace {

/// 0 for a negative number that would be displayed as "-0".
double withoutSignOfZero(double number) {
    constexpr double smallest = 0.005; // displayed with two decimals or more
    return number <= 0 && number > -smallest ? 0 : number;
}

} // namespace

DevicePower::DevicePower(const std::vector<std::filesystem::path>& states, SensorFiles& files,
                         std::shared_ptr<const MonotonicClock> clock)
    : clock_(std::move(clock)), askedAt_((clock_->now() - 2 * validity).count()) {
    states_.reserve(states.size());
    for (const auto& state : states) states_.push_back(files.open(state));
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
        return state->line(buffer) == "suspended";
    });
}

std::chrono::nanoseconds PowerMeter::timeToFirstPower(std::chrono::nanoseconds now) const {
    const std::lock_guard lock(mutex_);
    if (!joules_ || power_) return std::chrono::nanoseconds(0);
    return std::clamp<std::chrono::nanoseconds>(time_ + shortestTime - now, std::chrono::nanoseconds(0),
                                                shortestTime);
}

std::optional<double> PowerMeter::powerOf(double growth, double seconds) const {
    if (growth >= 0) return growth / seconds;
    // The counter wrapped around. If that implies an impossible power, it was reset instead, as after
    // hibernation.
    const double power = (growth + range_) / seconds;
    return power >= 0 && power <= maximumPower ? std::optional(power) : std::nullopt;
}

std::optional<double> PowerMeter::powerAt(double joules, std::chrono::nanoseconds now) {
    const std::lock_guard lock(mutex_);
    if (joules_ && now - time_ < shortestTime) return power_;
    const std::chrono::duration<double> elapsed = now - time_;
    power_ = joules_ ? powerOf(joules - *joules_, elapsed.count()) : std::nullopt;
    joules_ = joules;
    time_ = now;
    return power_;
}

LiveSensor::LiveSensor(const SensorChannel& channel, ValueRange range, SensorFiles& files,
                       std::shared_ptr<const DevicePower> power, std::shared_ptr<const MonotonicClock> clock)
    : kind_(channel.kind)
    , isSwitchedOff_(channel.file.empty())
    , countsPerUnit_(channel.countsPerUnit)
    , range_(range)
    , file_(files.open(channel.file))
    , power_(std::move(power))
    , clock_(std::move(clock)) {
    if (!channel.fault.empty()) fault_ = files.open(channel.fault);
    if (kind_ != SensorKind::energy) return;
    const auto wrap = channel.range.empty() ? std::nullopt : systemFileNumber(channel.range);
    meter_ = std::make_shared<PowerMeter>(static_cast<double>(wrap.value_or(0)) / countsPerUnit_);
}

void LiveSensor::configure(std::shared_ptr<const ConfiguredValue> configured) {
    configured_ = std::move(configured);
    if (configured_ == nullptr || configured_->isDecided()) return;
    if (power_ != nullptr && power_->isAsleep()) return;
    if (const auto value = fileValue()) static_cast<void>(configuredValue(*value));
}

/// The number in the file, in the unit of the kind.
std::optional<double> LiveSensor::fileValue() const {
    const auto counts = file_->number();
    return counts ? std::optional(static_cast<double>(*counts) / countsPerUnit_) : std::nullopt;
}

std::optional<double> LiveSensor::configuredValue(double fromFile) const {
    if (configured_ == nullptr) return fromFile;
    return configured_->value(fromFile, [this] { return fileValue(); });
}

void LiveSensor::meter(const LiveSensor* earlier) {
    if (meter_ == nullptr) return;
    if (earlier != nullptr && earlier->meter_ != nullptr) {
        meter_ = earlier->meter_;
    } else if (power_ == nullptr || !power_->isAsleep()) {
        const auto fromFile = fileValue();
        const auto joules = fromFile ? configuredValue(*fromFile) : std::nullopt;
        if (joules) meter_->powerAt(*joules, clock_->now());
    }
}

bool LiveSensor::isFaulty() const { return fault_ != nullptr && fault_->isOpen() && fault_->number() != 0; }

std::optional<SensorSample> LiveSensor::read() const {
    LeftOutReason ignored{};
    return read(ignored);
}

std::optional<SensorSample> LiveSensor::read(LeftOutReason& reason) const {
    if (power_ != nullptr && power_->isAsleep()) {
        return SensorSample{.number = std::nullopt, .text = "asleep", .raw = "suspended", .isAsleep = true};
    }
    if (isFaulty()) {
        reason = LeftOutReason::unconnected;
        return std::nullopt;
    }
    auto sample = readOnce(reason);
    // A counter that was just met, or reset while its device slept, has no power before its second reading.
    if (!sample && waitForFirstPower()) sample = readOnce(reason);
    return sample;
}

std::optional<SensorSample> LiveSensor::readOnce(LeftOutReason& reason) const {
    reason = isSwitchedOff_ ? LeftOutReason::switchedOff : LeftOutReason::unreadable;
    std::array<char, 64> buffer; // NOLINT(cppcoreguidelines-pro-type-member-init): filled by line
    const auto line = file_->line(buffer);
    if (!line) return std::nullopt;
    return kind_ == SensorKind::text ? readText(*line) : readNumber(*line, reason);
}

bool LiveSensor::waitForFirstPower() const {
    const auto wait =
        meter_ == nullptr ? std::chrono::nanoseconds(0) : meter_->timeToFirstPower(clock_->now());
    if (wait.count() > 0) std::this_thread::sleep_for(wait);
    return wait.count() > 0;
}

std::optional<SensorSample> LiveSensor::readText(std::string_view line) {
    const std::string_view text = trimmed(line);
    if (text.empty() || !isValidUtf8(text)) return std::nullopt;
    return SensorSample{.number = std::nullopt, .text = std::string(text), .raw = std::string(text)};
}

std::optional<SensorSample> LiveSensor::readNumber(std::string_view line, LeftOutReason& reason) const {
    const auto counts = numberInLine(line);
    if (!counts) return std::nullopt;
    auto number = configuredValue(static_cast<double>(*counts) / countsPerUnit_);
    if (!number && configured_->isSilent()) {
        return SensorSample{.number = std::nullopt, .text = {}, .raw = {}, .isSilent = true};
    }
    if (meter_ != nullptr && number) number = meter_->powerAt(*number, clock_->now());
    if (!number) return std::nullopt;
    if (!range_.contains(*number)) {
        reason = LeftOutReason::unconnected;
        return std::nullopt;
    }
    SensorSample sample{.number = withoutSignOfZero(*number), .text = {}, .raw = std::string(trimmed(line))};
    if (kind_ == SensorKind::flag) {
        sample.text = *number > 0 ? "Yes" : "No";
        sample.number.reset();
    }
    return sample;
}

} // namespace kelvinbar
