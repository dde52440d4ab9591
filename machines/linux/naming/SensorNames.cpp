#include "machines/linux/naming/SensorNames.h"

#include "base/Text.h"
#include "machines/linux/naming/LeftOut.h"
#include "machines/linux/naming/NameText.h"
#include "machines/linux/naming/NamedDevices.h"
#include "machines/linux/naming/SensorMeaning.h"
#include "machines/linux/naming/SensorWords.h"
#include "machines/linux/naming/SupplyMonitors.h"
#include "machines/linux/naming/UniqueNames.h"

#include <algorithm>

namespace kelvinbar {

namespace {

/// The words for a label, and whether they are the complete name.
struct LabelWords {
    std::string text;
    bool isWhole = false;
};

bool isOneOfSeveral(const NamedDevice& device, SensorKind kind) { return device.channelCounts.at(kind) > 1; }

std::string numbered(std::string_view words, const NamedDevice& device, const SensorChannel& channel) {
    if (!isOneOfSeveral(device, channel.kind) && channel.number <= 1) return std::string(words);
    return joined(words, std::to_string(channel.number));
}

std::string rowText(const LabelRow& row, const NamedDevice& device, const SensorChannel& channel,
                    const std::string& label) {
    if (row.words == "*") return label;
    if (row.words.empty()) return isOneOfSeveral(device, channel.kind) ? numbered("", device, channel) : "";
    const bool hasNumber = contains(row.words, "#");
    return hasNumber ? cleanedText(replacedAll(row.words, "#", lastNumber(label).value_or("")))
                     : std::string(row.words);
}

LabelWords labelWords(const NamedDevice& device, const SensorChannel& channel) {
    const std::string ownLabel = channel.isLabelled ? cleanedText(channel.label) : std::string();
    const std::string label = ownLabel.empty() ? featureOf(channel) : ownLabel;
    const bool isWhole = !ownLabel.empty() && device.row != nullptr && device.row->hasWholeLabels;
    if (const LabelRow* const row = labelRowOf(device.family, channel.kind, label)) {
        return {rowText(*row, device, channel, label), isWhole || row->isWhole};
    }
    if (ownLabel.empty()) return {numbered(kindWords(channel.kind), device, channel), false};
    return {label, isWhole};
}

/// Joins device, detail and label. A name that is too long loses part of the detail first, then the device.
std::string composed(const std::string& device, const std::string& detail, const std::string& label) {
    const std::size_t used = characterCount(joined(device, label));
    if (used > longestSensorName) return cutText(label, longestSensorName);
    constexpr std::size_t shortestDetail = 4;
    const std::size_t room = longestSensorName - used;
    const bool hasRoom = room > shortestDetail;
    return joined(joined(device, hasRoom ? shortenedModel(detail, room - 1) : ""), label);
}

std::string nameOf(const NamedDevice& device, const SensorChannel& channel) {
    const auto [label, isWhole] = labelWords(device, channel);
    const bool needsDevice = device.isNumberShown || !device.detail.empty();
    if (isWhole && !needsDevice) return composed("", "", label);
    const std::string number = device.isNumberShown ? std::to_string(device.number) : "";
    const bool repeats = beginsWithWords(label, device.words);
    const std::string rest =
        repeats ? cleanedText(std::string_view(label).substr(device.words.size())) : label;
    return composed(joined(repeats ? label.substr(0, device.words.size()) : device.words, number),
                    device.detail, rest);
}

/// Avoids names of four characters without a space, which look like SMC keys.
std::string speakingName(const std::string& name, SensorKind kind) {
    constexpr std::size_t keyLength = 4;
    if (name.empty()) return std::string(kindWords(kind));
    const bool isLikeKey = characterCount(name) == keyLength && !contains(name, " ");
    return isLikeKey ? joined(name, kindWords(kind)) : name;
}

SensorName readingOf(const NamedDevice& device, const SensorChannel& channel) {
    SensorName reading;
    reading.key = std::string(device.keyStart).append("/").append(keyText(featureOf(channel)));
    reading.name = speakingName(nameOf(device, channel), channel.kind);
    reading.unit = unitOf(channel.kind);
    reading.type = device.type;
    return reading;
}

/// Why the channel has no reading of its own; no value if it has one.
std::optional<LeftOutReason> reasonAgainst(const SensorChip& chip, const SensorChannel& channel,
                                           const SupplyMonitors& monitors) {
    if (!isMeasured(channel)) return LeftOutReason::setting;
    if (monitors.find(chip, channel.kind) != nullptr) return LeftOutReason::repeated;
    return std::nullopt;
}

/// A reading whose name may still change.
struct NamedReading {
    SensorName* reading = nullptr;
    SensorKind kind = SensorKind::temperature;
};

void finish(const std::vector<NamedReading>& readings) {
    std::vector<NameInList> names;
    names.reserve(readings.size());
    for (const auto& [reading, kind] : readings) names.push_back({&reading->name, kind, reading->type});
    makeUnique(names);
    for (const auto& [reading, kind] : readings) {
        reading->category = categoryOf(reading->type, kind, reading->name);
    }
}

} // namespace

std::vector<std::vector<std::optional<SensorName>>> sensorNames(const std::vector<SensorChip>& chips,
                                                                LeftOutChannels* leftOut) {
    std::vector<std::vector<std::optional<SensorName>>> names;
    names.reserve(chips.size());
    for (const SensorChip& chip : chips) names.emplace_back(chip.channels.size());
    std::vector<NamedReading> readings;
    const SupplyMonitors monitors(chips);
    for (const NamedDevice& device : namedDevices(chips)) {
        auto& ofChip = names[static_cast<std::size_t>(device.chip - chips.data())];
        for (std::size_t index = 0; index < ofChip.size(); ++index) {
            const SensorChannel& channel = device.chip->channels[index];
            if (const auto reason = reasonAgainst(*device.chip, channel, monitors)) {
                leaveOut(leftOut, *device.chip, channel, *reason);
                continue;
            }
            ofChip[index] = readingOf(device, channel);
            readings.push_back({&*ofChip[index], channel.kind});
        }
    }
    finish(readings);
    return names;
}

} // namespace kelvinbar
