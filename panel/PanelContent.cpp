#include "panel/PanelContent.h"

#include "platform/qt/QtText.h"
#include "store/KelvinbarStore.h"

#include <QGuiApplication>
#include <QStyleHints>
#include <utility>

namespace kelvinbar {

PanelContent::PanelContent(KelvinbarStore& store, const SensorListMetrics& metrics,
                           std::function<void()> closeAction)
    : store_(store), closeAction_(std::move(closeAction)), sensors_(metrics), controls_(store) {
    secondClickWait_.setSingleShot(true);
    connect(&secondClickWait_, &QTimer::timeout, this, &PanelContent::secondClickMayNotComeAnyMore);
    observe();
}

void PanelContent::observe() {
    const auto follow = [this](const auto& field, bool isForSensors) {
        observers_.push_back(field.observe([this, isForSensors](const auto&) {
            areSensorsStale_ = areSensorsStale_ || isForSensors;
            postUpdate();
        }));
    };
    follow(store_.readings(), true);
    follow(store_.hiddenKeys(), true);
    follow(store_.menuBarKeys(), true);
    follow(store_.isLoading(), false);
    follow(store_.smcAvailable(), false);
    follow(store_.statusMessage(), false);
    follow(store_.samplingRate(), false);
    follow(store_.displayMode(), false);
    follow(store_.manualPopoverHeight(), false);
}

/// The fields of a refresh change one after the other: they are looked at together, when all of them have.
void PanelContent::postUpdate() {
    if (!isOpen_ || std::exchange(isUpdatePosted_, true)) return;
    const auto updateOnce = [this] {
        if (isUpdatePosted_) update();
    };
    QMetaObject::invokeMethod(this, updateOnce, Qt::QueuedConnection);
}

void PanelContent::update() {
    isUpdatePosted_ = false;
    if (!isOpen_) return;
    emit controls_.changed();
    if (secondClickWait_.isActive()) return;
    if (std::exchange(areSensorsStale_, false)) {
        sensors_.update(store_.readings().value(), store_.hiddenKeys().value(), store_.menuBarKeys().value());
    }
    updateTexts();
}

void PanelContent::updateTexts() {
    const auto state =
        static_cast<State>(contentState(store_.isLoading().value(), store_.smcAvailable().value(),
                                        sensors_.visibleReadingCount(), sensors_.sectionCount()));
    if (std::exchange(state_, state) != state) emit stateChanged();
    const QString message = qtText(store_.statusMessage().value());
    if (std::exchange(statusMessage_, message) != message) emit statusMessageChanged();
}

void PanelContent::panelWillOpen(bool reducedMotion) {
    isOpen_ = true;
    if (std::exchange(reducedMotion_, reducedMotion) != reducedMotion) emit reducedMotionChanged();
    controls_.readLoginItem();
    update();
    emit opened();
}

void PanelContent::panelDidClose() {
    isOpen_ = false;
    secondClickMayNotComeAnyMore();
}

// Rows

void PanelContent::pressRow(const QString& key) {
    isSameRowPressed_ = key == pressedKey_;
    pressedKey_ = key;
    secondClickWait_.start(QGuiApplication::styleHints()->mouseDoubleClickInterval());
}

void PanelContent::doubleClickRow(const QString& key) {
    if (isSameRowPressed_ && key == pressedKey_) toggleRow(key);
}

void PanelContent::toggleRow(const QString& key) {
    secondClickMayNotComeAnyMore();
    if (const SMCReading* const reading = sensors_.reading(key)) store_.toggleMenuBarReading(*reading);
}

void PanelContent::hideRow(const QString& key) {
    secondClickMayNotComeAnyMore();
    if (const SMCReading* const reading = sensors_.reading(key)) store_.hideReading(*reading);
}

void PanelContent::secondClickMayNotComeAnyMore() {
    secondClickWait_.stop();
    if (const auto change = std::exchange(changeAfterWait_, nullptr)) change();
    update();
}

void PanelContent::whenRowsMayMove(std::function<void()> change) {
    if (secondClickWait_.isActive()) {
        changeAfterWait_ = std::move(change);
    } else {
        change();
    }
}

} // namespace kelvinbar
