#include "panel/PanelWindow.h"

#include "panel/PanelContent.h"
#include "panel/PanelStyle.h"
#include "tests/fakes/FakeShell.h"
#include "tests/panel/PanelScreens.h"
#include "tests/store/StoreFixture.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QMargins>
#include <QPointer>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QScreen>
#include <QTest>
#include <memory>

#include <gtest/gtest.h>

namespace kelvinbar::panel_window_test {

namespace {

struct PanelWindowTest : fakes::StoreFixture {
    fakes::ShellJournal journal;
    fakes::FakeLoginItemService loginItemService{journal};
    LoginItemManager loginItem{loginItemService};
    std::unique_ptr<PanelWindow> panel;
    bool prefersMoreContrast = false;

    void open() {
        makeRefreshedStore({fakes::temperatureKey("TC0P", 48)});
        panel = makePanelWindow(*store, {.loginItem = loginItem,
                                         .close = [] {},
                                         .prefersReducedMotion = [] { return true; },
                                         .prefersMoreContrast = [this] { return prefersMoreContrast; },
                                         .systemSymbols = {},
                                         .roundedFontFile = [] { return std::string(); }});
        panel->window().resize(462, 690);
        panel->window().show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&panel->window()));
    }

    [[nodiscard]] PanelStyle& style() const {
        return *qmlEngine(qobject_cast<QQuickView*>(&panel->window())->rootObject())
                    ->singletonInstance<PanelStyle*>(qmlTypeId("Kelvinbar.Panel", 1, 0, "PanelStyle"));
    }

    [[nodiscard]] QQuickItem* root() const {
        return qobject_cast<QQuickView*>(&panel->window())->rootObject();
    }

    [[nodiscard]] PanelContent& content() const {
        const QObject* const root = qobject_cast<QQuickView*>(&panel->window())->rootObject();
        return *root->property("content").value<PanelContent*>();
    }
};

TEST_F(PanelWindowTest, RunsAChangeThatWaitedForASecondClickBeforeItsWindowEnds) {
    open();
    content().sensors()->hover("TC0P", true);
    content().pressRow("TC0P", QPointF(100, 100));
    const QPointer<QWindow> window = &panel->window();
    bool isWindowThere = false;
    int changes = 0;
    panel->whenContentMayMove([&] {
        ++changes;
        isWindowThere = qobject_cast<QQuickView*>(window.data()) != nullptr;
    });
    ASSERT_EQ(changes, 0);
    panel = nullptr;
    EXPECT_EQ(changes, 1);
    EXPECT_TRUE(isWindowThere);
}

TEST_F(PanelWindowTest, KeepsTheStoreThatItShows) {
    open();
    const std::weak_ptr<KelvinbarStore> witness = store;
    store = nullptr;
    EXPECT_FALSE(witness.expired());
    QTest::qWait(0);
    panel = nullptr;
    EXPECT_TRUE(witness.expired());
}

TEST_F(PanelWindowTest, LeavesNothingInTheEnvironmentForOtherPrograms) {
    const QByteArray before = qgetenv("QV4_FORCE_INTERPRETER");
    open();
    EXPECT_EQ(qgetenv("QV4_FORCE_INTERPRETER"), before);
}

TEST_F(PanelWindowTest, HasRoundCornersAndRoomForItsShadowWhereTheWindowCanShowThem) {
    open();
    const QQuickItem& frame = *qobject_cast<QQuickView*>(&panel->window())->rootObject();
    panel->setFrame(true, QMargins(24, 0, 10, 24));
    EXPECT_EQ(qobject_cast<QQuickView*>(&panel->window())->color().alpha(), 0);
    EXPECT_TRUE(frame.property("isRounded").toBool());
    EXPECT_EQ(frame.property("rightRoom").toInt(), 10);
    panel->setFrame(false, {});
    EXPECT_EQ(qobject_cast<QQuickView*>(&panel->window())->color().alpha(), 255);
    EXPECT_FALSE(frame.property("isRounded").toBool());
    EXPECT_EQ(frame.property("leftRoom").toInt(), 0);
}

TEST_F(PanelWindowTest, OpensWithTheContrastThatTheUserWants) {
    open();
    const QColor usual = style().metadataInk();
    panel->window().hide();
    prefersMoreContrast = true;
    panel->window().show();
    EXPECT_GT(style().metadataInk().alpha(), usual.alpha());
    panel->window().hide();
    prefersMoreContrast = false;
    panel->window().show();
    EXPECT_EQ(style().metadataInk(), usual);
}

TEST_F(PanelWindowTest, KeepsItsViewsWhileNothingOfTheDesktopChanges) {
    open();
    const QPointer<QQuickItem> views = root();
    panel->window().hide();
    panel->window().show();
    EXPECT_EQ(views, root());
}

TEST_F(PanelWindowTest, FollowsTheInterfaceFontWhileItIsOpen) {
    open();
    panel->setFrame(true, QMargins(24, 0, 10, 24));
    const QFont former = QGuiApplication::font();
    QFont other = former;
    other.setFamily("Another Family");
    QGuiApplication::setFont(other);
    EXPECT_EQ(style().font(12, QFont::Bold).family(), "Another Family");
    EXPECT_TRUE(root()->property("isRounded").toBool());
    EXPECT_EQ(root()->property("rightRoom").toInt(), 10);
    QGuiApplication::setFont(former);
    EXPECT_EQ(style().font(12, QFont::Bold).family(), former.family());
}

TEST_F(PanelWindowTest, FollowsTheTextSizeOfTheScreenItIsMovedTo) {
    open();
    panel->setFrame(true, QMargins(24, 0, 10, 24));
    const double rowHeight = content().sensors()->rowHeight();
    const double pointSize = style().valueFont().pointSizeF();
    const QList<QScreen*> all = QGuiApplication::screens();
    panel->window().setScreen(all.at(screens::textTwiceAsLarge));
    EXPECT_EQ(style().scaled(10), 20);
    EXPECT_NEAR(style().valueFont().pointSizeF(), 2 * pointSize, 0.01);
    EXPECT_EQ(content().sensors()->rowHeight(), 2 * rowHeight);
    EXPECT_EQ(root()->property("leftRoom").toInt(), 24);
    EXPECT_EQ(panel->window().width(), 462);
    panel->window().setScreen(all.at(screens::usual));
    EXPECT_EQ(style().scaled(10), 10);
    EXPECT_EQ(content().sensors()->rowHeight(), rowHeight);
}

/// The platform without a display cannot change a text size, so something else of the look changes.
TEST_F(PanelWindowTest, LooksAgainWhenTheTextSizeOfItsScreenOrThePrimaryOneChanges) {
    open();
    panel->window().setScreen(QGuiApplication::screens().at(screens::anotherUsual));
    for (QScreen* const screen : {panel->window().screen(), QGuiApplication::primaryScreen()}) {
        prefersMoreContrast = !prefersMoreContrast;
        emit screen->logicalDotsPerInchChanged(screen->logicalDotsPerInch());
        EXPECT_EQ(style().titleInk().alphaF() == 1, prefersMoreContrast) << qPrintable(screen->name());
    }
    prefersMoreContrast = true;
    QScreen* const left = QGuiApplication::screens().at(screens::textTwiceAsLarge);
    emit left->logicalDotsPerInchChanged(left->logicalDotsPerInch());
    EXPECT_LT(style().titleInk().alphaF(), 1);
}

TEST(PanelStyleTest, PointsOfFontsAreThoseOfThePrimaryScreen) {
    PanelStyle style;
    const double pointSize = style.font(12, QFont::Bold).pointSizeF();
    PanelLook look = PanelLook::of(QGuiApplication::primaryScreen(), {}, false);
    look.dotsPerInch *= 2;
    style.setLook(look);
    EXPECT_NEAR(style.font(12, QFont::Bold).pointSizeF(), pointSize / 2, 0.01);
}

TEST(PanelStyleTest, LengthsAndFontsGrowWithTheText) {
    PanelStyle style;
    const double pointSize = style.font(12, QFont::Bold).pointSizeF();
    style.setLook(
        {.dotsPerInch = 96, .textScale = 2, .family = "Some Family", .roundedFamily = "Some Round Family"});
    EXPECT_EQ(style.headerHeight(), 160);
    EXPECT_EQ(style.scaled(23), 46);
    EXPECT_NEAR(style.font(12, QFont::Bold).pointSizeF(), 2 * pointSize, 0.01);
    EXPECT_EQ(style.font(12, QFont::Bold).family(), "Some Family");
    EXPECT_EQ(style.roundedFont(12, QFont::Bold).family(), "Some Round Family");
    EXPECT_EQ(style.valueFont().family(), "Some Round Family");
}

} // namespace
} // namespace kelvinbar::panel_window_test
