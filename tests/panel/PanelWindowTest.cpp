#include "panel/PanelWindow.h"

#include "panel/PanelContent.h"
#include "tests/fakes/FakeShell.h"
#include "tests/store/StoreFixture.h"

#include <QMargins>
#include <QPointer>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>
#include <memory>

#include <gtest/gtest.h>

namespace kelvinbar {

namespace {

struct PanelWindowTest : fakes::StoreFixture {
    fakes::ShellJournal journal;
    fakes::FakeLoginItemService loginItemService{journal};
    LoginItemManager loginItem{loginItemService};
    std::unique_ptr<PanelWindow> panel;

    void open() {
        makeRefreshedStore({fakes::temperatureKey("TC0P", 48)});
        panel = makePanelWindow(*store, {.loginItem = loginItem,
                                         .close = [] {},
                                         .prefersReducedMotion = [] { return true; },
                                         .systemSymbols = {}});
        panel->window().resize(462, 690);
        panel->window().show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&panel->window()));
    }

    [[nodiscard]] PanelContent& content() const {
        const QObject* const root = qobject_cast<QQuickView*>(&panel->window())->rootObject();
        return *root->property("content").value<PanelContent*>();
    }
};

} // namespace

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

} // namespace kelvinbar
