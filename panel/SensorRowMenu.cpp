#include "panel/SensorRowMenu.h"

#include "panel/SensorList.h"
#include "panel/SensorRowTexts.h"
#include "qt/Clipboard.h"
#include "store/KelvinbarStore.h"

#include <algorithm>

namespace kelvinbar {

QString SensorRowMenu::key() const { return qtText(reading_.key); }

QString SensorRowMenu::name() const { return qtText(rowName(reading_)); }

bool SensorRowMenu::open(const QString& key) {
    const SMCReading* const reading = sensors_.reading(key);
    if (reading == nullptr) return false;
    reading_ = *reading;
    isPinned_ = std::ranges::count(store_.menuBarKeys().value(), reading_.key) > 0;
    showRange(store_.ranges().range(reading_.key));
    emit changed();
    return true;
}

void SensorRowMenu::showRange(const std::optional<ReadingRange>& range) {
    const auto text = [this](double number) { return qtText(rowValue(reading_, number)); };
    lowest_ = range ? text(range->lowest) : QString();
    highest_ = range ? text(range->highest) : QString();
    mean_ = range ? text(range->mean()) : QString();
}

void SensorRowMenu::copyValue() const { copyToClipboard(reading_.displayValue()); }

void SensorRowMenu::copyName() const { copyToClipboard(fullName(reading_)); }

void SensorRowMenu::copyKey() const { copyToClipboard(reading_.key); }

} // namespace kelvinbar
