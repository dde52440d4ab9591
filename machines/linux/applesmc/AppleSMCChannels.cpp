#include "machines/linux/applesmc/AppleSMCChannels.h"

#include "smc/SMCKeyText.h"
#include "smc/SMCValueDecoding.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace kelvinbar {

namespace {

struct FanAttribute {
    SensorKind kind;
    std::string_view keyEnd;
    std::string_view type;
};

constexpr std::array fanAttributes{
    FanAttribute{SensorKind::fan, "Ac", "fpe2"},        FanAttribute{SensorKind::fanMinimum, "Mn", "fpe2"},
    FanAttribute{SensorKind::fanMaximum, "Mx", "fpe2"}, FanAttribute{SensorKind::fanTarget, "Tg", "fpe2"},
    FanAttribute{SensorKind::fanSafe, "Sf", "fpe2"},    FanAttribute{SensorKind::fanMode, "Md", "ui8 "},
};

/// An integer or fixed-point type, big-endian in the SMC's bytes.
struct WholeType {
    std::string_view name;
    std::uint32_t size; ///< in bytes
    double scale;
    double lowest;
    double highest;
};

constexpr std::array wholeTypes{
    WholeType{"sp78", 2, 256, -32768, 32767},
    WholeType{"fpe2", 2, 4, 0, 65535},
    WholeType{"ui8 ", 1, 1, 0, 255},
};

/// The driver numbers fans from 1, the SMC from 0.
std::optional<std::string> fanKey(int number, std::string_view keyEnd) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    if (number < 1 || static_cast<std::size_t>(number) > digits.size()) return std::nullopt;
    return std::string("F").append(1, digits[static_cast<std::size_t>(number) - 1]).append(keyEnd);
}

SMCParamBlock blockOf(std::string_view type, std::uint32_t size) {
    SMCParamBlock block;
    block.dataType = packedSMCKey(type);
    block.dataSize = size;
    return block;
}

} // namespace

std::optional<ControllerKey> controllerKeyOf(const SensorChannel& channel) {
    if (channel.kind == SensorKind::temperature) {
        const bool isKey = channel.isLabelled && isPrintableSMCKey(channel.label);
        return isKey ? std::optional(ControllerKey{channel.label, "sp78"}) : std::nullopt;
    }
    const auto* const attribute = std::ranges::find(fanAttributes, channel.kind, &FanAttribute::kind);
    if (attribute == fanAttributes.end()) return std::nullopt;
    auto key = fanKey(channel.number, attribute->keyEnd);
    return key ? std::optional(ControllerKey{*std::move(key), attribute->type}) : std::nullopt;
}

std::optional<RawReading> controllerReading(std::string_view key, std::string_view type, double number) {
    const auto* const whole = std::ranges::find(wholeTypes, type, &WholeType::name);
    if (whole == wholeTypes.end() || !std::isfinite(number)) return std::nullopt;
    const double scaled = std::round(number * whole->scale);
    if (scaled < whole->lowest || scaled > whole->highest) return std::nullopt;
    SMCParamBlock block = blockOf(type, whole->size);
    const auto bits = static_cast<std::uint32_t>(static_cast<std::int32_t>(scaled));
    for (std::uint32_t place = 0; place < whole->size; ++place) {
        block.bytes[place] = static_cast<std::uint8_t>(bits >> (8 * (whole->size - 1 - place)));
    }
    return dictionaryForKey(key, block);
}

std::optional<RawReading> fanNameReading(const SensorChannel& fan) {
    const auto key = fan.isLabelled ? fanKey(fan.number, "ID") : std::nullopt;
    if (!key) return std::nullopt;
    constexpr std::uint32_t size = 32;
    SMCParamBlock block = blockOf("ch8*", size);
    std::ranges::copy(fan.label.substr(0, size), block.bytes.begin());
    return dictionaryForKey(*key, block);
}

} // namespace kelvinbar
