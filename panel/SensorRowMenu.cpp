#include "panel/SensorRowMenu.h"

#include "panel/PropertyChange.h"
#include "panel/SensorList.h"
#include "panel/SensorRowTexts.h"
#include "qt/Clipboard.h"
#include "store/KelvinbarStore.h"

#include <algorithm>

namespace kelvinbar {

bool SensorRowMenu::open(const QString& key) {
    const SMCReading* const reading = sensors_.reading(key);
    if (reading == nullptr) return false;
    reading_ = *reading;
    changeProperty(*this, key_, qtText(reading_.key), &SensorRowMenu::keyChanged);
    changeProperty(*this, name_, qtText(rowName(reading_)), &SensorRowMenu::nameChanged);
    const bool isPinned = std::ranges::count(store_.menuBarKeys().value(), reading_.key) > 0;
    changeProperty(*this, isPinned_, isPinned, &SensorRowMenu::isPinnedChanged);
    showRange(store_.ranges().range(reading_.key));
    return true;
}

void SensorRowMenu::showRange(const std::optional<ReadingRange>& range) {
    const auto text = [this](double number) { return qtText(rowValue(reading_, number)); };
    changeProperty(*this, lowest_, range ? text(range->lowest) : QString(), &SensorRowMenu::lowestChanged);
    changeProperty(*this, highest_, range ? text(range->highest) : QString(), &SensorRowMenu::highestChanged);
    changeProperty(*this, mean_, range ? text(range->mean()) : QString(), &SensorRowMenu::meanChanged);
}

void SensorRowMenu::copyValue() const { copyToClipboard(reading_.displayValue()); }

void SensorRowMenu::copyName() const { copyToClipboard(fullName(reading_)); }

void SensorRowMenu::copyKey() const { copyToClipboard(reading_.key); }

} // namespace kelvinbar
