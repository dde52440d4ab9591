#include "panel/SensorRowMenu.h"

#include "panel/SensorList.h"
#include "tests/store/StoreFixture.h"

#include <QClipboard>
#include <QGuiApplication>

#include <gtest/gtest.h>

namespace kelvinbar::sensor_row_menu_test {

namespace {

using fakes::StoreFixture;
using fakes::temperatureKey;

struct SensorRowMenuTest : StoreFixture {
    SensorList list{SensorListMetrics(1)};

    void SetUp() override {
        makeRefreshedStore({temperatureKey("TC0P", 40), temperatureKey("TC1C", 41)});
        fakes::setKeys(driver(), {temperatureKey("TC0P", 60), temperatureKey("TC1C", 41)});
        refresh();
        update();
    }

    void update() {
        list.update(store->readings().value(), store->hiddenKeys().value(), store->menuBarKeys().value());
    }

    [[nodiscard]] static QString clipboard() { return QGuiApplication::clipboard()->text(); }
};

TEST_F(SensorRowMenuTest, TellsLowestHighestAndMeanInTheFormOfTheRow) {
    SensorRowMenu menu(*store, list);
    ASSERT_TRUE(menu.open("TC0P"));
    EXPECT_EQ(menu.lowest(), QString::fromUtf8("40°"));
    EXPECT_EQ(menu.highest(), QString::fromUtf8("60°"));
    EXPECT_EQ(menu.mean(), QString::fromUtf8("50°"));
}

TEST_F(SensorRowMenuTest, TellsWhetherTheRowIsPinned) {
    SensorRowMenu menu(*store, list);
    store->setMenuBarKeys({"TC1C"});
    menu.open("TC0P");
    EXPECT_FALSE(menu.isPinned());
    menu.open("TC1C");
    EXPECT_TRUE(menu.isPinned());
}

TEST_F(SensorRowMenuTest, CopiesValueNameAndKey) {
    SensorRowMenu menu(*store, list);
    menu.open("TC0P");
    menu.copyValue();
    EXPECT_EQ(clipboard(), QString::fromUtf8("60 °C"));
    menu.copyName();
    EXPECT_EQ(clipboard(), QString::fromStdString(store->readings().value().front().name));
    menu.copyKey();
    EXPECT_EQ(clipboard(), "TC0P");
}

TEST_F(SensorRowMenuTest, KeepsItsReadingWhenTheListLosesIt) {
    SensorRowMenu menu(*store, list);
    menu.open("TC0P");
    list.update({}, {}, {});
    EXPECT_EQ(menu.key(), "TC0P");
    EXPECT_FALSE(menu.open("TC1C")) << "the list is empty";
    EXPECT_EQ(menu.key(), "TC0P");
}

TEST_F(SensorRowMenuTest, AReadingWithoutANumberHasNoRange) {
    SMCReading reading;
    reading.key = "K001";
    reading.category = SMCCategory::storage;
    reading.value = "asleep";
    reading.raw = "suspended";
    list.update({reading}, {}, {});
    SensorRowMenu menu(*store, list);
    ASSERT_TRUE(menu.open("K001"));
    EXPECT_EQ(menu.lowest() + menu.highest() + menu.mean(), "");
}

} // namespace
} // namespace kelvinbar::sensor_row_menu_test
