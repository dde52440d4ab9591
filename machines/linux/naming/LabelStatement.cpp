#include "machines/linux/naming/LabelStatement.h"

#include "base/Text.h"

#include <algorithm>
#include <array>

namespace kelvinbar {

namespace {

/// Feature types of libsensors; it knows no others.
constexpr std::array<std::string_view, 7> featureTypes{"in",   "fan",    "temp",    "power",
                                                       "curr", "energy", "humidity"};

/// Whose number libsensors takes only with a bus statement.
constexpr std::array<std::string_view, 4> numberedBuses{"-i2c-", "-spi-", "-hid-", "-scsi-"};

constexpr std::array<std::string_view, 5> otherBuses{"-isa-", "-pci-", "-virtual-", "-acpi-", "-mdio-"};

bool isFeature(std::string_view text) {
    return std::ranges::any_of(featureTypes, [&](std::string_view type) {
        return text.starts_with(type) && isDecimalDigits(text.substr(type.size()));
    });
}

/// "spd5118-i2c-*-50" of "spd5118-i2c-0-50"; others as they are.
std::string withoutBusNumber(std::string_view chip) {
    for (const std::string_view bus : numberedBuses) {
        const std::size_t place = chip.rfind(bus);
        if (place == std::string_view::npos) continue;
        const std::size_t number = place + bus.size();
        const std::size_t address = chip.find('-', number);
        if (address == std::string_view::npos) continue;
        return std::string(chip.substr(0, number)).append("*").append(chip.substr(address));
    }
    return std::string(chip);
}

bool isChip(std::string_view name) {
    const auto isOnBus = [&](std::string_view bus) { return contains(name, bus); };
    const bool isKnown =
        std::ranges::any_of(numberedBuses, isOnBus) || std::ranges::any_of(otherBuses, isOnBus);
    return isKnown && !contains(name, "#"); // the second chip of a name
}

/// Between quotation marks, with the two characters escaped that end or change such a text.
std::string quoted(std::string_view text) {
    const std::string escaped = replacedAll(replacedAll(text, "\\", "\\\\"), "\"", "\\\"");
    return "\"" + replacedAll(escaped, "\n", " ") + "\"";
}

} // namespace

std::optional<LabelledFeature> labelledFeature(std::string_view key) {
    const std::size_t slash = key.rfind('/');
    if (slash == std::string_view::npos) return std::nullopt;
    const std::string_view chip = key.substr(0, slash);
    const std::string_view feature = key.substr(slash + 1);
    if (!isChip(chip) || !isFeature(feature)) return std::nullopt;
    return LabelledFeature{.chip = withoutBusNumber(chip), .feature = std::string(feature)};
}

std::string labelStatement(const LabelledFeature& feature, std::string_view label) {
    return "chip " + quoted(feature.chip) + "\n    label " + feature.feature + " " + quoted(label) + "\n";
}

} // namespace kelvinbar
