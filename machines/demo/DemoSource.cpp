#include "machines/demo/DemoSource.h"

#include "base/NumberText.h"
#include "catalogue/SMCKeyDatabase.h"
#include "machines/demo/Load.h"
#include "machines/linux/naming/SensorMeaning.h"
#include "smc/SMCKeyText.h"
#include "smc/SMCValueDecoding.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <string_view>
#include <utility>

namespace kelvinbar {

namespace {

using namespace std::chrono_literals;

using Bytes = std::vector<std::uint8_t>;

void scaleFloat(Bytes& bytes, double factor) {
    std::uint32_t bits = 0;
    for (std::size_t place = 4; place > 0; --place) bits = (bits << 8U) | bytes[place - 1];
    bits = std::bit_cast<std::uint32_t>(static_cast<float>(std::bit_cast<float>(bits) * factor));
    for (std::size_t place = 0; place < 4; ++place)
        bytes[place] = static_cast<std::uint8_t>(bits >> (8 * place));
}

/// An integer or fixed-point number of two bytes. Its scale does not matter: scaling the bytes scales the
/// value.
void scaleTwoBytes(Bytes& bytes, double factor, bool isSigned) {
    const auto pattern = static_cast<std::uint16_t>((bytes[0] << 8U) | bytes[1]);
    const double number = isSigned ? static_cast<std::int16_t>(pattern) : pattern;
    const double lowest = isSigned ? std::numeric_limits<std::int16_t>::min() : 0;
    const double highest =
        isSigned ? std::numeric_limits<std::int16_t>::max() : std::numeric_limits<std::uint16_t>::max();
    const auto scaled = static_cast<std::int32_t>(std::clamp(std::round(number * factor), lowest, highest));
    bytes[0] = static_cast<std::uint8_t>(static_cast<std::uint32_t>(scaled) >> 8U);
    bytes[1] = static_cast<std::uint8_t>(static_cast<std::uint32_t>(scaled));
}

/// Returns whether the type can be scaled.
bool scale(Bytes& bytes, std::string_view type, double factor) {
    const bool isSigned = type.starts_with("sp") || type == "si16";
    if (type == "flt ") {
        scaleFloat(bytes, factor);
    } else if (isSigned || type.starts_with("fp") || type == "ui16") {
        scaleTwoBytes(bytes, factor, isSigned);
    } else {
        return false;
    }
    return true;
}

std::string_view featureOfKey(std::string_view key) { return key.substr(key.rfind('/') + 1); }

/// Hashes a key, so that keys that differ in one character get unrelated noise.
std::uint32_t noiseSeed(std::string_view key) {
    std::uint32_t seed = 0;
    for (const char character : key) seed = seed * 31 + static_cast<unsigned char>(character);
    return seed;
}

/// A number that was recorded without a fraction comes from a sensor with whole numbers.
std::int64_t stepOf(std::int64_t counts, double number) {
    if (distanceFromWhole(number) != 0) return 1;
    const auto units = static_cast<std::int64_t>(number);
    return counts % units == 0 ? counts / units : 1;
}

} // namespace

DemoSource::DemoSource(std::shared_ptr<SensorSource> recorded, std::shared_ptr<const MonotonicClock> clock)
    : recorded_(std::move(recorded)), clock_(std::move(clock)) {}

/// Energy counters are left alone: their raw text grows with time, not with the power that is shown.
DemoSource::Motion DemoSource::motionOfSensor(std::string_view key) {
    const auto kind = kindOfFeature(featureOfKey(key));
    if (!kind) return Motion::none;
    switch (*kind) {
    case SensorKind::temperature:
        return Motion::heat;
    case SensorKind::fan:
        return Motion::fan;
    case SensorKind::power:
    case SensorKind::current:
        return Motion::work;
    case SensorKind::frequency:
        return Motion::clock;
    case SensorKind::voltage:
        return Motion::rail;
    default:
        return Motion::none;
    }
}

DemoSource::Motion DemoSource::motionOfControllerKey(const std::string& key) {
    const auto definition = SMCKeyDatabase::hwMonitorDefinition(key);
    if (!definition) return Motion::none;
    if (definition->unit == "°C") return Motion::heat;
    if (definition->unit == "V") return Motion::rail;
    const bool isLimit = key == "PCPL";
    if ((definition->unit == "W" || definition->unit == "A") && !isLimit) return Motion::work;
    return key.ends_with("Ac") || key.ends_with("Tg") ? Motion::fan : Motion::none;
}

double DemoSource::factor(Motion motion, std::uint32_t seed) const {
    const auto now = clock_->now();
    switch (motion) {
    case Motion::heat:
        return 0.82 + 0.5 * laggingLoadAt(now, 12s) + 0.006 * noiseAt(now, seed);
    case Motion::fan:
        return 0.95 + 0.45 * laggingLoadAt(now, 40s) + 0.004 * noiseAt(now, seed);
    case Motion::work:
        return 0.35 + 1.8 * loadAt(now) + 0.03 * noiseAt(now, seed);
    case Motion::clock:
        return 0.55 + 0.9 * loadAt(now) + 0.01 * noiseAt(now, seed);
    case Motion::rail:
        return 1 + 0.003 * noiseAt(now, seed);
    case Motion::none:
        break;
    }
    return 1;
}

void DemoSource::moveSensor(RawReading& reading) const {
    const Motion motion = motionOfSensor(reading.key);
    const double number = reading.numericValue.value_or(0);
    const auto counts = wholeNumberIn<std::int64_t>(reading.raw);
    if (motion == Motion::none || number == 0 || !counts || *counts == 0) return;
    const std::int64_t step = motion == Motion::rail ? 1 : stepOf(*counts, number);
    const double wanted = static_cast<double>(*counts) * factor(motion, noiseSeed(reading.key));
    const std::int64_t moved = std::llround(wanted / static_cast<double>(step)) * step;
    reading.raw = std::to_string(moved);
    reading.numericValue = number * static_cast<double>(moved) / static_cast<double>(*counts);
    reading.value = plainNumberText(*reading.numericValue);
}

/// Scales the bytes of the SMC and decodes them again, so that the raw text changes with the value.
void DemoSource::moveControllerKey(RawReading& reading) const {
    const Motion motion = motionOfControllerKey(reading.key);
    auto bytes = bytesOfHexString(reading.raw);
    if (motion == Motion::none || !reading.numericValue || !bytes) return;
    if (!scale(*bytes, reading.type, factor(motion, packedSMCKey(reading.key)))) return;
    SMCParamBlock block;
    block.dataSize = reading.size;
    block.dataType = packedSMCKey(reading.type);
    std::ranges::copy(*bytes, block.bytes.begin());
    if (auto moved = dictionaryForKey(reading.key, block)) reading = *std::move(moved);
}

std::vector<RawReading> DemoSource::readCandidateKeys(std::span<const std::string> keys) {
    std::vector<RawReading> readings = recorded_->readCandidateKeys(keys);
    for (RawReading& reading : readings) {
        if (isSelfNamedKey(reading.key)) {
            moveSensor(reading);
        } else {
            moveControllerKey(reading);
        }
    }
    return readings;
}

} // namespace kelvinbar
