#include "tests/panel/views/ViewStage.h"

#include "base/NotificationCenter.h"
#include "machines/demo/DemoMachine.h"
#include "panel/PanelLook.h"
#include "qt/QtText.h"
#include "sensors/Machine.h"
#include "shell/PopoverSizing.h"
#include "store/InMemoryUserDefaults.h"
#include "store/KelvinbarStore.h"
#include "tests/fakes/FakeClocks.h"
#include "tests/fakes/FakeMachine.h"
#include "tests/fakes/ManualQueues.h"
#include "tests/panel/EmptyMachine.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QFile>
#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QTest>
#include <QtQuickTest/quicktest.h>
#include <chrono>
#include <string>
#include <utility>

namespace kelvinbar {

namespace {

using Clock = std::shared_ptr<fakes::FakeMonotonicClock>;

template <typename Texts>
QStringList qtTexts(const Texts& texts) {
    QStringList result;
    for (const std::string& text : texts) result << qtText(text);
    return result;
}

void collectItems(QQuickItem& root, QVariantList& items) {
    if (!root.isVisible()) return;
    items << QVariant::fromValue(&root);
    const QList<QQuickItem*> children = root.childItems();
    for (QQuickItem* const child : children) collectItems(*child, items);
}

SMCReading readingOf(const QString& key, const QString& name, const QString& value) {
    return {.key = key.toStdString(),
            .name = name.toStdString(),
            .category = SMCCategory::cpu,
            .type = "sp78",
            .value = value.toStdString(),
            .numericValue = 1,
            .unit = "°C",
            .raw = "00",
            .status = "OK"};
}

} // namespace

/// A store whose queues run by hand, and the panel's content over it.
struct ViewStage::Scene {
    Clock clock;
    InMemoryUserDefaults defaults;
    NotificationCenter notifications;
    fakes::FakeWallClock wallClock;
    fakes::ManualMainQueue mainQueue;
    fakes::ManualBackgroundQueue backgroundQueue;
    std::shared_ptr<KelvinbarStore> store;
    int closings = 0;
    PanelContent content;
    std::vector<std::unique_ptr<PanelControls>> controls;

    Scene(Clock sceneClock, Machine machine, LoginItemManager& loginItem)
        : clock(std::move(sceneClock))
        , store(KelvinbarStore::create({.machine = std::move(machine),
                                        .defaults = defaults,
                                        .notifications = notifications,
                                        .mainQueue = mainQueue,
                                        .backgroundQueue = backgroundQueue,
                                        .wallClock = wallClock}))
        , content(*store, loginItem, SensorListMetrics(textScale(QGuiApplication::primaryScreen())),
                  [this] { ++closings; }) {}

    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    ~Scene() { store->shutdown(); }

    void finishRefresh() {
        backgroundQueue.runAll();
        mainQueue.drain();
        QCoreApplication::processEvents();
    }
};

ViewStage::ViewStage() = default;

ViewStage::~ViewStage() = default;

PanelContent* ViewStage::content() const { return scenes_.empty() ? nullptr : &scene().content; }

int ViewStage::closings() const { return scene().closings; }

// Scenes

void ViewStage::enter(std::unique_ptr<Scene> scene) {
    if (!scenes_.empty()) scenes_.back()->content.panelDidClose();
    loginItemService_.reset();
    constexpr bool reducedMotion = true;
    scene->content.panelWillOpen(reducedMotion);
    scenes_.push_back(std::move(scene));
    emit contentChanged();
}

void ViewStage::startScanning() {
    const auto clock = std::make_shared<fakes::FakeMonotonicClock>();
    const Machine host{.source = nullptr, .system = nullptr, .clock = clock};
    enter(std::make_unique<Scene>(clock, makeDemoMachine("intel-notebook", host), loginItem_));
}

void ViewStage::start() {
    startScanning();
    finishRefresh();
}

void ViewStage::startEmpty(bool hasController) {
    const auto clock = std::make_shared<fakes::FakeMonotonicClock>();
    enter(std::make_unique<Scene>(clock, fakes::emptyMachine(hasController, clock), loginItem_));
    finishRefresh();
}

void ViewStage::startWithSystemFacts() {
    const fakes::FakeMachine machine;
    machine.driver->hasService = false;
    enter(std::make_unique<Scene>(machine.clock, machine.machine(), loginItem_));
    finishRefresh();
}

PanelControls* ViewStage::makeControls(const QString& author, const QString& contact,
                                       const QString& donationPage) {
    openedAddresses_.clear();
    quits_ = 0;
    auto environment =
        PanelEnvironment::ofThisProgram({.version = "1.2.3",
                                         .author = author.toStdString(),
                                         .contact = contact.toStdString(),
                                         .donationPage = donationPage.toStdString(),
                                         .preferencesPlace = "/home/ada/.config/kelvinbar/kelvinbar.conf",
                                         .program = "/opt/a/very/long/place/of/programs/kelvinbar"});
    environment.open = [this](const QUrl& address) { openedAddresses_ << address.toString(); };
    environment.quit = [this] { ++quits_; };
    scene().controls.push_back(
        std::make_unique<PanelControls>(*scene().store, loginItem_, std::move(environment)));
    PanelControls* const controls = scene().controls.back().get();
    QQmlEngine::setObjectOwnership(controls, QQmlEngine::CppOwnership);
    return controls;
}

// The machine

void ViewStage::advanceClock(int seconds) { scene().clock->advance(std::chrono::seconds(seconds)); }

void ViewStage::beginRefresh() {
    scene().store->refresh(false);
    QCoreApplication::processEvents();
}

void ViewStage::finishRefresh() { scene().finishRefresh(); }

void ViewStage::refresh() {
    beginRefresh();
    finishRefresh();
}

bool ViewStage::isRefreshing() const { return scene().backgroundQueue.waitingCount() > 0; }

void ViewStage::showReadings(const QStringList& names, const QString& value) {
    std::vector<SMCReading> readings;
    for (const QString& name : names) {
        readings.push_back(readingOf(QString("T%1").arg(100 + readings.size()), name, value));
    }
    scene().content.sensors()->update(readings, {}, {});
}

// The store

QStringList ViewStage::pins() const { return qtTexts(scene().store->menuBarKeys().value()); }

void ViewStage::setPins(const QStringList& keys) {
    std::vector<std::string> texts;
    for (const QString& key : keys) texts.push_back(key.toStdString());
    scene().store->setMenuBarKeys(texts);
    QCoreApplication::processEvents();
}

QStringList ViewStage::hiddenKeys() const { return qtTexts(scene().store->hiddenKeys().value()); }

void ViewStage::hide(const QString& key) {
    SMCReading reading;
    reading.key = key.toStdString();
    scene().store->hideReading(reading);
    QCoreApplication::processEvents();
}

void ViewStage::showAll() {
    scene().store->unhideAllReadings();
    QCoreApplication::processEvents();
}

bool ViewStage::isFast() const { return scene().store->samplingRate().value() == SMCSamplingRate::fast; }

bool ViewStage::isDynamic() const {
    return scene().store->displayMode().value() == SMCWindowDisplayMode::dynamic;
}

void ViewStage::setDynamic(bool isDynamic) {
    scene().store->setDisplayMode(isDynamic ? SMCWindowDisplayMode::dynamic : SMCWindowDisplayMode::fixed);
    QCoreApplication::processEvents();
}

double ViewStage::height() const { return scene().store->manualPopoverHeight().value(); }

void ViewStage::setHeight(double height) {
    scene().store->setManualPopoverHeight(height);
    QCoreApplication::processEvents();
}

double ViewStage::dynamicHeight() const {
    return dynamicPopoverHeight(scene().store->readings().value(), scene().store->hiddenKeys().value());
}

bool ViewStage::isLoading() const { return scene().store->isLoading().value(); }

QString ViewStage::statusMessage() const { return qtText(scene().store->statusMessage().value()); }

QString ViewStage::exportText() const { return qtText(scene().store->exportText()); }

QVariantList ViewStage::itemsIn(QQuickItem* root) {
    QVariantList items;
    collectItems(*root, items);
    return items;
}

void ViewStage::layOut(QQuickItem* item) {
    static_cast<void>(QQuickTest::qWaitForPolish(item->window()));
    QCoreApplication::processEvents();
}

// The desktop

QString ViewStage::clipboardText() { return QGuiApplication::clipboard()->text(); }

void ViewStage::setClipboardText(const QString& text) { QGuiApplication::clipboard()->setText(text); }

bool ViewStage::hasDrawing(const QString& symbol) { return QFile::exists(":/symbols/" + symbol + ".shape"); }

void ViewStage::clickTwice(QQuickItem* item, int milliseconds) {
    const QPointF middle = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
    constexpr int pause = 10'000;
    clickAt(item, middle.x(), middle.y(), pause);
    clickAt(item, middle.x(), middle.y(), milliseconds);
}

void ViewStage::clickAt(QQuickItem* item, double x, double y, int milliseconds) {
    QQuickWindow& window = *item->window();
    const QPointF place(x, y);
    mouseTime_ += milliseconds;
    const auto turnButton = [&](Qt::MouseButtons down, QEvent::Type event, int time) {
        qt_handleMouseEvent(&window, place, window.mapToGlobal(place), down, Qt::LeftButton, event,
                            Qt::NoModifier, time);
        QCoreApplication::processEvents();
    };
    turnButton(Qt::LeftButton, QEvent::MouseButtonPress, mouseTime_);
    turnButton(Qt::NoButton, QEvent::MouseButtonRelease, mouseTime_ + 1);
}

} // namespace kelvinbar
