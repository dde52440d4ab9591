#include "panel/SensorSections.h"

#include "base/NaturalOrder.h"
#include "base/Text.h"
#include "store/VisibleReadings.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <string>

namespace kelvinbar {

namespace {

/// Words that rank a reading; the first match counts.
constexpr std::array<std::string_view, 6> rankingWords{"proximity", "package", "core",
                                                       "diode",     "fan",     "voltage"};
constexpr int lastPriority = 20;

struct RankedReading {
    int priority;
    const SMCReading* reading;
};

bool comesBefore(const RankedReading& left, const RankedReading& right) {
    if (left.priority != right.priority) return left.priority < right.priority;
    return comesBeforeNaturally(left.reading->name, right.reading->name);
}

/// The readings of `categories`, in the order of the panel.
ReadingList sectionReadings(const ReadingList& visible, std::initializer_list<SMCCategory> categories) {
    std::vector<RankedReading> ranked;
    for (const SMCReading* const reading : visible) {
        if (std::ranges::find(categories, reading->category) == categories.end()) continue;
        ranked.push_back({sortPriority(*reading), reading});
    }
    std::ranges::stable_sort(ranked, comesBefore);
    ReadingList readings;
    readings.reserve(ranked.size());
    for (const RankedReading& entry : ranked) readings.push_back(entry.reading);
    return readings;
}

struct Section {
    std::string_view id;
    std::string_view title;
    std::string_view subtitle; ///< empty for the machine's own text
    std::string_view icon;
    Accent accent;
    ReadingList (*readings)(const ReadingList& visible);
};

constexpr std::array sections{
    Section{"cpu", "CPU", "Package, cores, diode, PECI and CPU power", "cpu", Accent::cyan, cpuReadings},
    Section{"graphics", "GRAPHICS", "iGPU / dGPU temperatures and activity", "display", Accent::purple,
            graphicsReadings},
    Section{"memory", "RAM", "", "memorychip", Accent::pink, memoryReadings},
    Section{"storage", "STORAGE", "NVMe / SATA media health keys", "internaldrive", Accent::grey,
            storageReadings},
    Section{"fans", "FANS", "Tachometers and fan targets", "fanblades", Accent::mint, fanReadings},
    Section{"voltages", "VOLTAGES", "Voltage rails with real values only", "waveform.path.ecg",
            Accent::orange, voltageReadings},
    Section{"power", "POWER / BATTERY", "Power, current and battery keys", "bolt.fill", Accent::yellow,
            powerReadings},
    Section{"thermal", "THERMAL ZONES", "Board and misc thermal probes", "thermometer.medium", Accent::red,
            thermalReadings},
};

} // namespace

ReadingList visibleReadings(const std::vector<SMCReading>& readings, const KeySet& hiddenKeys) {
    ReadingList visible;
    visible.reserve(readings.size());
    for (const SMCReading& reading : readings) {
        if (isVisibleReading(reading, hiddenKeys)) visible.push_back(&reading);
    }
    return visible;
}

ReadingList cpuReadings(const ReadingList& visible) { return sectionReadings(visible, {SMCCategory::cpu}); }

ReadingList graphicsReadings(const ReadingList& visible) {
    return sectionReadings(visible, {SMCCategory::gpu});
}

ReadingList memoryReadings(const ReadingList& visible) {
    return sectionReadings(visible, {SMCCategory::memory});
}

ReadingList storageReadings(const ReadingList& visible) {
    return sectionReadings(visible, {SMCCategory::storage});
}

ReadingList fanReadings(const ReadingList& visible) { return sectionReadings(visible, {SMCCategory::fans}); }

ReadingList voltageReadings(const ReadingList& visible) {
    return sectionReadings(visible, {SMCCategory::voltages});
}

ReadingList powerReadings(const ReadingList& visible) {
    return sectionReadings(visible, {SMCCategory::power, SMCCategory::currents, SMCCategory::battery});
}

ReadingList thermalReadings(const ReadingList& visible) {
    return sectionReadings(visible, {SMCCategory::thermal, SMCCategory::sensors});
}

int sortPriority(const SMCReading& reading) {
    std::string text = reading.key;
    text.append(" ").append(reading.name);
    text = asciiLowercased(text);
    const auto* const found =
        std::ranges::find_if(rankingWords, [&](std::string_view word) { return contains(text, word); });
    return found == rankingWords.end() ? lastPriority : static_cast<int>(found - rankingWords.begin());
}

std::vector<SensorSectionModel> sectionModels(const ReadingList& visible, std::string_view memorySubtitle) {
    std::vector<SensorSectionModel> models;
    for (const Section& section : sections) {
        ReadingList readings = section.readings(visible);
        if (readings.empty()) continue;
        const auto subtitle = section.subtitle.empty() ? memorySubtitle : section.subtitle;
        models.push_back(
            {section.id, section.title, subtitle, section.icon, section.accent, std::move(readings)});
    }
    return models;
}

} // namespace kelvinbar
