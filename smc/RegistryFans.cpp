#include "smc/RegistryFans.h"

#include "base/NumberText.h"
#include "base/Text.h"
#include "catalogue/SMCCategory.h"
#include "sensors/ReadWatch.h"
#include "smc/SMCKeyText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <span>
#include <unordered_set>
#include <utility>

namespace kelvinbar {

namespace {

constexpr std::chrono::seconds cacheLifetime{15};
constexpr std::size_t maximumEntries = 4096;
constexpr std::size_t maximumFans = 16;
constexpr double maximumSpeed = 30000;

bool containsAny(std::string_view text, std::span<const std::string_view> parts) {
    return std::ranges::any_of(parts, [&](std::string_view part) { return contains(text, part); });
}

/// `name` cut to what fits into the registry's 128-byte name buffer with its terminating zero.
std::string nameBufferText(const std::string& name) {
    constexpr std::size_t capacity = 127;
    return name.substr(0, std::min(name.find('\0'), capacity));
}

/// The parts of an entry that all its properties share. Read once per entry.
struct EntryIdentity {
    std::string className;
    std::string name;
    bool isSensorDriver = false;
};

bool describesSensorDriver(std::string_view description) {
    constexpr std::array<std::string_view, 7> words{
        "smcsuperio", "superio", "fakesmc", "hwsensors", "lpcsensors", "acpisensors", "virtualsmc",
    };
    return containsAny(asciiLowercased(description), words);
}

EntryIdentity identityOf(const IORegistryEntry& entry) {
    EntryIdentity identity{nameBufferText(entry.className()), nameBufferText(entry.name())};
    std::string description = identity.className + " " + identity.name;
    for (const std::string_view property : {"compatible", "model"}) {
        const std::string text = registryStringValue(entry, property);
        if (!text.empty()) description.append(" ").append(text);
    }
    identity.isSensorDriver = describesSensorDriver(description);
    return identity;
}

/// Whether the name of a property suggests a fan speed. Outside sensor drivers the name must also begin with
/// "fan": many properties there mention fans without being a speed.
bool namesAFan(std::string_view property, bool onSensorDriver) {
    if (!stringContainsFanHint(property)) return false;
    return onSensorDriver || property.starts_with("FAN") || property.starts_with("Fan") ||
           property.starts_with("fan");
}

/// The two bytes as a speed. Drivers use either byte order, so the one that yields a plausible speed is
/// chosen, and big-endian if neither or both do.
double likelySpeed(std::uint8_t first, std::uint8_t second) {
    const unsigned bigEndian = first * 256U + second;
    const unsigned littleEndian = second * 256U + first;
    const auto likely = [](unsigned speed) { return speed >= 80 && speed <= 25000; };
    return !likely(bigEndian) && likely(littleEndian) ? littleEndian : bigEndian;
}

std::optional<double> numberInData(const Data& data) {
    if (data.empty()) return std::nullopt;
    return data.size() == 1 ? data[0] : likelySpeed(data[0], data[1]);
}

std::optional<double> positiveNumberInText(std::string_view text) {
    const double number = leadingNumber(text);
    return number > 0 ? std::optional(number) : std::nullopt;
}

std::optional<double> candidateSpeed(const Value& value) {
    if (const auto* data = std::get_if<Data>(&value)) return numberInData(*data);
    if (const auto* text = std::get_if<std::string>(&value)) return positiveNumberInText(*text);
    return numberIn(value);
}

/// `number` as an unsigned 64-bit integer. A cast alone is undefined for doubles outside the range.
std::uint64_t wholeBits(double number) {
    constexpr double past = 18446744073709551616.0; // 2^64
    if (number >= past) return std::numeric_limits<std::uint64_t>::max();
    if (number >= 0) return static_cast<std::uint64_t>(number);
    if (std::isnan(number)) return 0;
    constexpr double lowest = -past / 2;
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(std::max(number, lowest)));
}

/// The speed in a property's value, 0 to 30000 RPM. No value if there is none.
std::optional<double> fanSpeed(const Value& value) {
    const auto speed = candidateSpeed(value);
    const bool plausible = speed && std::isfinite(*speed) && *speed >= 0 && *speed <= maximumSpeed;
    return plausible ? speed : std::nullopt;
}

/// The reading of the fan at the zero-based `index` in the order found.
RawReading fanReading(std::string_view property, const Value& value, double speed, std::size_t index) {
    constexpr std::size_t lastNumberedFan = 9;
    const bool nameIsKey = isPrintableSMCKey(property) && property.starts_with('F');
    RawReading fan;
    fan.key = nameIsKey ? property : "FAN" + std::to_string(std::min(index, lastNumberedFan));
    fan.type = "ioreg";
    fan.value = plainNumberText(speed);
    fan.numericValue = speed;
    fan.raw = fanRawText(value);
    fan.name = nameIsKey || property.empty() ? "Fan " + std::to_string(index) : std::string(property);
    fan.category = rawValue(SMCCategory::fans);
    fan.unit = "RPM";
    return fan;
}

/// One iteration over the registry.
class FanWalk {
  public:
    [[nodiscard]] bool isFull() const { return fans_.size() >= maximumFans; }

    void visit(const IORegistryEntry& entry) {
        const EntryIdentity identity = identityOf(entry);
        const auto fans =
            entry.properties([&](std::string_view name) { return namesAFan(name, identity.isSensorDriver); });
        if (!fans) return;
        for (const auto& [name, value] : *fans) take(identity, name, value);
    }

    std::vector<RawReading> finish() && { return std::move(fans_); }

  private:
    void take(const EntryIdentity& identity, const std::string& property, const Value& value) {
        const auto speed = fanSpeed(value);
        if (!speed) return;
        const std::string identification =
            identity.className + ":" + identity.name + ":" + property + ":" + fixedText(*speed, 0);
        if (seen_.insert(identification).second) {
            fans_.push_back(fanReading(property, value, *speed, fans_.size()));
        }
    }

    std::unordered_set<std::string> seen_;
    std::vector<RawReading> fans_;
};

std::optional<std::vector<RawReading>> walkRegistry(IORegistry& registry) {
    const auto entries = registry.iterateRecursively("IOService");
    if (entries == nullptr) return std::nullopt;
    FanWalk walk;
    for (std::size_t visited = 0; visited < maximumEntries && !walk.isFull(); ++visited) {
        const NotedRead noted("the I/O registry");
        if (!noted.isAllowed()) return std::nullopt;
        const IORegistryEntry* const entry = entries->next();
        if (entry == nullptr) break;
        walk.visit(*entry);
    }
    return std::move(walk).finish();
}

} // namespace

RegistryFans::RegistryFans(std::shared_ptr<IORegistry> registry, std::shared_ptr<const MonotonicClock> clock)
    : registry_(std::move(registry)), clock_(std::move(clock)) {}

std::vector<RawReading> RegistryFans::read() {
    if (registry_ == nullptr) return {};
    {
        const std::lock_guard lock(monitor_);
        const bool isFresh = clock_->now() - superIOFanCacheDate_ < cacheLifetime;
        if (superIOFanCache_ && isFresh) return *superIOFanCache_;
    }
    auto fans = walkRegistry(*registry_);
    if (!fans) return {};
    const std::lock_guard lock(monitor_);
    superIOFanCache_ = fans;
    superIOFanCacheDate_ = clock_->now();
    return *std::move(fans);
}

bool stringContainsFanHint(std::string_view text) {
    constexpr std::array<std::string_view, 7> hints{"fan", "tach", "rpm", "f0ac", "f1ac", "f2ac", "f3ac"};
    return containsAny(asciiLowercased(text), hints);
}

std::string registryStringValue(const IORegistryEntry& entry, std::string_view name) {
    return entry.textProperty(name).value_or("");
}

std::string fanRawText(const Value& value) {
    if (const auto* data = std::get_if<Data>(&value)) return hexString(*data);
    if (const auto* text = std::get_if<std::string>(&value)) return *text;
    if (const auto* number = std::get_if<std::int64_t>(&value)) {
        return hexadecimalText(static_cast<std::uint64_t>(*number));
    }
    if (const auto* number = std::get_if<double>(&value)) return hexadecimalText(wholeBits(*number));
    return "";
}

} // namespace kelvinbar
