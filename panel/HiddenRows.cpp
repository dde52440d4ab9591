#include "panel/HiddenRows.h"

#include "panel/SensorRowTexts.h"
#include "qt/QtText.h"
#include "store/KelvinbarStore.h"

#include <utility>

namespace kelvinbar {

HiddenRows::HiddenRows(KelvinbarStore& store) : store_(store) {
    offerTime_.setSingleShot(true);
    offerTime_.setInterval(offer);
    connect(&offerTime_, &QTimer::timeout, this, &HiddenRows::endOffer);
}

void HiddenRows::hide(const SMCReading& reading) {
    lastKey_ = reading.key;
    history_.hide(store_, reading);
    setLastName(qtText(rowName(reading)));
    offerTime_.start();
}

void HiddenRows::undo() {
    endOffer();
    history_.undo(store_);
}

void HiddenRows::endOffer() {
    offerTime_.stop();
    setLastName({});
}

void HiddenRows::setLastName(const QString& name) {
    if (std::exchange(lastName_, name) != name) emit lastNameChanged();
}

void HiddenRows::storeChanged() {
    const KeySet& hidden = store_.hiddenKeys().value();
    const int count = static_cast<int>(hidden.size());
    if (std::exchange(count_, count) != count) emit countChanged();
    if (!lastName_.isEmpty() && !hidden.contains(lastKey_)) endOffer();
}

void HiddenRows::list() {
    names_.clear();
    listedKeys_.clear();
    for (const SMCReading* const reading : hiddenReadings(store_)) {
        names_ << qtText(rowName(*reading));
        listedKeys_.push_back(reading->key);
    }
    emit namesChanged();
}

void HiddenRows::show(int index) {
    if (index < 0 || index >= names_.size()) return;
    const std::string key = listedKeys_[static_cast<std::size_t>(index)]; // showing it may list anew
    store_.showReading(key);
}

} // namespace kelvinbar
