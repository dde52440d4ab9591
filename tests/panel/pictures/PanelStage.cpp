#include "tests/panel/pictures/PanelStage.h"

#include "shell/PopoverSizing.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScreen>
#include <QTest>

namespace kelvinbar {

namespace {

/// The screen that the panel would open on.
constexpr Rect visibleFrame{0, 0, 1440, 1200};

bool isNamed(QQuickItem& item, const QString& name) {
    const auto* const accessible = QAccessible::queryAccessibleInterface(&item);
    if (accessible == nullptr || !item.isVisible()) return false;
    const QString found = accessible->text(QAccessible::Name);
    return found == name || found.startsWith(name + ", ");
}

QQuickItem* itemNamed(QQuickItem& root, const QString& name) {
    if (isNamed(root, name)) return &root;
    const QList<QQuickItem*> children = root.childItems();
    for (QQuickItem* const child : children) {
        if (QQuickItem* const found = itemNamed(*child, name)) return found;
    }
    return nullptr;
}

QPoint middleOf(const QQuickItem& item) {
    return item.mapToScene(QPointF(item.width() / 2, item.height() / 2)).toPoint();
}

/// Longer than any animation and than the delay of a tooltip, in milliseconds.
constexpr int untilNothingMoves = 1000;

} // namespace

PanelStage::PanelStage(const MakeMachine& makeMachine, const ProgramDifferences& differences)
    : store_(KelvinbarStore::create({.machine = makeMachine(std::make_shared<fakes::FakeMonotonicClock>()),
                                     .defaults = defaults_,
                                     .notifications = notifications_,
                                     .mainQueue = mainQueue_,
                                     .backgroundQueue = backgroundQueue_,
                                     .wallClock = wallClock_}))
    , panel_(makePanelWindow(*store_,
                             {.loginItem = loginItem_,
                              .close = [] {},
                              .prefersReducedMotion = [] { return true; },
                              .prefersMoreContrast = [this] { return isContrastHigh_; },
                              .systemSymbols = {},
                              .roundedFontFile = [file = differences.roundedFontFile] { return file; },
                              .program = {.version = "1.2.3",
                                          .author = "The Kelvinbar developers",
                                          .contact = differences.contact,
                                          .donationPage = differences.donationPage,
                                          .preferencesPlace = "/home/ada/.config/kelvinbar/kelvinbar.conf",
                                          .program = "/usr/bin/kelvinbar"}})) {}

PanelStage::~PanelStage() {
    panel_.reset();
    store_->shutdown();
}

void PanelStage::finishRefresh() {
    backgroundQueue_.runAll();
    mainQueue_.drain();
    QCoreApplication::processEvents();
}

void PanelStage::open() {
    open(targetPopoverSize({.visibleFrame = visibleFrame,
                            .displayMode = store_->displayMode().value(),
                            .manualPopoverHeight = store_->manualPopoverHeight().value(),
                            .readings = store_->readings().value(),
                            .hiddenKeys = store_->hiddenKeys().value()}));
}

void PanelStage::open(Size size) {
    window().resize(static_cast<int>(size.width), static_cast<int>(size.height));
    window().show();
    static_cast<void>(QTest::qWaitForWindowExposed(&window()));
}

void PanelStage::useScreen(int screen) {
    window().setPosition(QGuiApplication::screens().at(screen)->geometry().topLeft());
}

QQuickWindow& PanelStage::window() { return static_cast<QQuickWindow&>(panel_->window()); }

QQuickItem* PanelStage::item(const QString& name) { return itemNamed(*window().contentItem(), name); }

void PanelStage::pointAt(const QString& name) {
    if (const QQuickItem* const found = item(name)) QTest::mouseMove(&window(), middleOf(*found));
}

void PanelStage::click(const QString& name, Qt::MouseButton button) {
    if (const QQuickItem* const found = item(name)) {
        QTest::mouseMove(&window(),
                         QPoint()); // the item would not notice a pointer that the last stage has left there
        QTest::mouseClick(&window(), button, Qt::NoModifier, middleOf(*found));
    }
}

QImage PanelStage::picture() {
    QTest::qWait(untilNothingMoves);
    return window().grabWindow();
}

} // namespace kelvinbar
