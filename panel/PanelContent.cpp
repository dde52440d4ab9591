#include "panel/PanelContent.h"

#include "panel/PanelFrameMetrics.h"
#include "panel/SensorRowTexts.h"
#include "qt/Clipboard.h"
#include "qt/QtText.h"
#include "shell/PopoverSizing.h"
#include "store/KelvinbarStore.h"

#include <QGuiApplication>
#include <QStyleHints>
#include <algorithm>
#include <utility>

namespace kelvinbar {

PanelContent::PanelContent(KelvinbarStore& store, LoginItemManager& loginItem,
                           const SensorListMetrics& metrics, std::function<void()> closeAction,
                           PanelEnvironment environment)
    : store_(store)
    , closeAction_(std::move(closeAction))
    , sensors_(metrics, store.texts())
    , controls_(store, loginItem, std::move(environment))
    , hidden_(store)
    , search_(sensors_)
    , rowMenu_(store, sensors_) {
    secondClickWait_.setSingleShot(true);
    connect(&secondClickWait_, &QTimer::timeout, this, &PanelContent::endDoubleClickWait);
    scanWait_.setSingleShot(true);
    connect(&scanWait_, &QTimer::timeout, this, [this] {
        isScanLong_ = true;
        updateTexts();
    });
    // The open panel grabs the pointer, which the program that opens now needs.
    connect(&controls_, &PanelControls::linkOpened, this, &PanelContent::close);
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

/// A refresh sets the store's fields one after the other. One update follows when all are set.
void PanelContent::postUpdate() {
    if (!isOpen_ || std::exchange(isUpdatePosted_, true)) return;
    QMetaObject::invokeMethod(this, &PanelContent::updateAsPosted, Qt::QueuedConnection);
}

/// Does nothing if another update has come first.
void PanelContent::updateAsPosted() {
    if (isUpdatePosted_) update();
}

void PanelContent::update() {
    isUpdatePosted_ = false;
    if (!isOpen_) return;
    controls_.storeChanged();
    hidden_.storeChanged();
    updateSensors();
    updateSpareHeight();
    updateTexts();
}

void PanelContent::updateSensors() {
    if (!areSensorsStale_) return;
    if (secondClickWait_.isActive() || isListMoving_) {
        sensors_.updateInPlace(store_.readings().value(), store_.menuBarKeys().value());
    } else {
        sensors_.update(store_.readings().value(), store_.hiddenKeys().value(), store_.menuBarKeys().value());
        areSensorsStale_ = false;
        updateNotice();
    }
}

void PanelContent::updateSpareHeight() {
    double spare = 0;
    if (store_.displayMode().value() == SMCWindowDisplayMode::dynamic) {
        const double given = dynamicPopoverHeight(store_.readings().value(), store_.hiddenKeys().value());
        spare = std::max(0.0, given - PanelFrameMetrics().height() - sensors_.contentHeight());
    }
    if (std::exchange(spareHeight_, spare) != spare) emit spareHeightChanged();
}

void PanelContent::updateTexts() {
    const auto state =
        static_cast<State>(contentState(store_.isLoading().value(), store_.smcAvailable().value(),
                                        sensors_.visibleReadingCount(), sensors_.sectionCount()));
    if (state == Scanning && state_ != Scanning && !isScanLong_) {
        if (!scanWait_.isActive()) scanWait_.start(longScan);
        return;
    }
    scanWait_.stop();
    isScanLong_ = false;
    const bool hidesRows = state_ == Sections && state != Sections;
    if (!hidesRows || !secondClickWait_.isActive()) setState(state);
    const QString message = qtText(store_.statusMessage().value());
    if (std::exchange(statusMessage_, message) != message) emit statusMessageChanged();
}

void PanelContent::setState(State state) {
    if (std::exchange(state_, state) != state) emit stateChanged();
}

/// Not taken from the status, which changes with every refresh.
void PanelContent::updateNotice() {
    const bool isNeeded = areSystemFacts(store_.readings().value());
    const QString notice = isNeeded ? qtText(store_.texts().systemFactsOnly) : QString();
    if (std::exchange(notice_, notice) != notice) emit noticeChanged();
}

double PanelContent::minimumHeight() { return minimumPopoverSize.height; }

void PanelContent::panelWillOpen(bool reducedMotion) {
    isOpen_ = true;
    if (std::exchange(reducedMotion_, reducedMotion) != reducedMotion) emit reducedMotionChanged();
    controls_.readLoginItem();
    update();
    emit opened();
}

void PanelContent::panelDidClose() {
    isOpen_ = false;
    scanWait_.stop();
    controls_.forgetRefresh();
    search_.end();
    hidden_.endOffer();
    isListMoving_ = false;
    endDoubleClickWait();
}

void PanelContent::setListMoving(bool isMoving) {
    isListMoving_ = isMoving;
    if (!isMoving && areSensorsStale_) update();
}

void PanelContent::close() {
    const auto closeAction = closeAction_; // a copy: see the declaration
    closeAction();
}

// Rows

void PanelContent::pressRow(const QString& key, const QPointF& place) {
    sensors_.setCurrentKey(key);
    isSameRowPressed_ = key == pressedKey_;
    pressedKey_ = key;
    pressedPlace_ = place;
    secondClickWait_.start(QGuiApplication::styleHints()->mouseDoubleClickInterval());
}

void PanelContent::doubleClickRow(const QString& key) {
    if (isSameRowPressed_ && key == pressedKey_) toggleRow(key);
}

void PanelContent::toggleRow(const QString& key) {
    apply([this](const SMCReading& reading) { store_.toggleMenuBarReading(reading); }, key);
}

void PanelContent::hideRow(const QString& key) {
    apply([this](const SMCReading& reading) { hidden_.hide(reading); }, key);
}

void PanelContent::copyCurrentRow() const {
    if (const SMCReading* const reading = sensors_.reading(sensors_.currentKey())) {
        copyToClipboard(clipboardLine(*reading));
    }
}

void PanelContent::apply(const RowAction& action, const QString& key) {
    const SMCReading* const shown = sensors_.reading(key);
    if (shown == nullptr) return;
    const SMCReading reading = *shown; // a copy: the delayed update may remove it
    isListMoving_ = false;             // what the user asks for is seen at once
    endDoubleClickWait();
    action(reading);
}

void PanelContent::pressHideButton(const QString& key, const QPointF& place) {
    if (key == pressedKey_ || !isSecondPressAt(place)) hideRow(key);
}

bool PanelContent::isSecondPressAt(const QPointF& place) const {
    const int greatestDistance = QGuiApplication::styleHints()->mouseDoubleClickDistance();
    return secondClickWait_.isActive() && (place - pressedPlace_).manhattanLength() <= greatestDistance;
}

void PanelContent::endDoubleClickWait() {
    secondClickWait_.stop();
    if (const auto change = std::exchange(changeAfterWait_, nullptr)) change();
    update();
}

void PanelContent::whenRowsMayMove(std::function<void()> change) {
    if (secondClickWait_.isActive() && sensors_.isHovered()) {
        changeAfterWait_ = std::move(change);
    } else {
        change();
    }
}

QString PanelContent::pinnedText() const { return qtText(store_.texts().pinned); }

QString PanelContent::pinText() const { return qtText(store_.texts().pin); }

QString PanelContent::unpinText() const { return qtText(store_.texts().unpin); }

QString PanelContent::scanningText() const { return qtText(store_.texts().scanning); }

} // namespace kelvinbar
