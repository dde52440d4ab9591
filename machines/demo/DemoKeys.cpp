#include "machines/demo/DemoKeys.h"

#include "catalogue/SMCKeyDatabase.h"
#include "machines/demo/Load.h"
#include "smc/SMCKeyText.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <string_view>
#include <utility>

namespace kelvinbar {

namespace {

using namespace std::chrono_literals;

void scaleFloat(SMCBytes& bytes, double factor) {
    std::uint32_t bits = 0;
    for (std::size_t place = 4; place > 0; --place) bits = (bits << 8U) | bytes[place - 1];
    bits = std::bit_cast<std::uint32_t>(static_cast<float>(std::bit_cast<float>(bits) * factor));
    for (std::size_t place = 0; place < 4; ++place)
        bytes[place] = static_cast<std::uint8_t>(bits >> (8 * place));
}

/// A whole or fixed-point number of two bytes: whatever its scale, a multiple of it is the multiple of its
/// bytes.
void scaleTwoBytes(SMCBytes& bytes, double factor, bool isSigned) {
    const auto pattern = static_cast<std::uint16_t>((bytes[0] << 8U) | bytes[1]);
    const double number = isSigned ? static_cast<std::int16_t>(pattern) : pattern;
    const double lowest = isSigned ? std::numeric_limits<std::int16_t>::min() : 0;
    const double highest =
        isSigned ? std::numeric_limits<std::int16_t>::max() : std::numeric_limits<std::uint16_t>::max();
    const auto scaled = static_cast<std::int32_t>(std::clamp(std::round(number * factor), lowest, highest));
    bytes[0] = static_cast<std::uint8_t>(static_cast<std::uint32_t>(scaled) >> 8U);
    bytes[1] = static_cast<std::uint8_t>(static_cast<std::uint32_t>(scaled));
}

void scale(SMCBytes& bytes, std::string_view type, double factor) {
    if (type == "flt ") return scaleFloat(bytes, factor);
    if (type.starts_with("sp") || type == "si16") return scaleTwoBytes(bytes, factor, true);
    if (type.starts_with("fp") || type == "ui16") return scaleTwoBytes(bytes, factor, false);
}

} // namespace

DemoKeys::DemoKeys(std::vector<RecordedKey> keys, std::shared_ptr<const MonotonicClock> clock)
    : recorded_({}, true), clock_(std::move(clock)) {
    for (const RecordedKey& key : keys) motions_.emplace(key.code, motionOf(key.code));
    recorded_ = RecordedKeys(std::move(keys), true);
}

DemoKeys::Motion DemoKeys::motionOf(std::uint32_t code) {
    const std::string key = fourCharString(code);
    const auto definition = SMCKeyDatabase::hwMonitorDefinition(key);
    if (!definition) return Motion::none;
    if (definition->unit == "°C") return Motion::heat;
    if (definition->unit == "V") return Motion::rail;
    const bool isLimit = key == "PCPL";
    if ((definition->unit == "W" || definition->unit == "A") && !isLimit) return Motion::work;
    return key.ends_with("Ac") || key.ends_with("Tg") ? Motion::fan : Motion::none;
}

double DemoKeys::factor(Motion motion, std::uint32_t code) const {
    const auto now = clock_->now();
    switch (motion) {
    case Motion::heat:
        return 0.82 + 0.5 * laggingLoadAt(now, 12s) + 0.006 * noiseAt(now, code);
    case Motion::fan:
        return 0.95 + 0.45 * laggingLoadAt(now, 40s) + 0.004 * noiseAt(now, code);
    case Motion::work:
        return 0.35 + 1.8 * loadAt(now) + 0.03 * noiseAt(now, code);
    case Motion::rail:
        return 1 + 0.003 * noiseAt(now, code);
    case Motion::none:
        break;
    }
    return 1;
}

std::uint8_t DemoKeys::readBytes(std::uint32_t code, SMCBytes& bytes) {
    const std::uint8_t result = recorded_.readBytes(code, bytes);
    const auto motion = motions_.find(code);
    if (result != smcresult::success || motion == motions_.end() || motion->second == Motion::none)
        return result;
    const auto info = recorded_.keyInfo(code);
    if (info) scale(bytes, fourCharString(info->dataType), factor(motion->second, code));
    return result;
}

} // namespace kelvinbar
