#include "panel/HiddenRows.h"

#include "panel/SensorRowTexts.h"
#include "qt/QtText.h"
#include "tests/store/StoreFixture.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace kelvinbar::hidden_rows_test {

namespace {

using fakes::StoreFixture;
using fakes::temperatureKey;

struct HiddenRowsTest : StoreFixture {
    void SetUp() override {
        makeRefreshedStore(
            {temperatureKey("TC0P", 40), temperatureKey("TC1C", 41), temperatureKey("TC2C", 42)});
    }

    [[nodiscard]] const SMCReading& reading(std::size_t index) const {
        return store->readings().value()[index];
    }

    [[nodiscard]] const KeySet& hidden() const { return store->hiddenKeys().value(); }
};

TEST_F(HiddenRowsTest, CountWhatTheStoreHides) {
    HiddenRows rows(*store);
    store->hideReading(reading(0));
    rows.storeChanged();
    EXPECT_EQ(rows.count(), 1);
    const QSignalSpy changes(&rows, &HiddenRows::countChanged);
    rows.storeChanged();
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(HiddenRowsTest, OfferToUndoTheLast) {
    HiddenRows rows(*store);
    rows.hide(reading(0));
    const QString first = rows.lastName();
    rows.hide(reading(1));
    EXPECT_NE(rows.lastName(), "");
    EXPECT_NE(rows.lastName(), first);
    rows.undo();
    EXPECT_EQ(rows.lastName(), "");
    EXPECT_EQ(hidden(), KeySet{"TC0P"});
}

TEST_F(HiddenRowsTest, UndoAfterTheOfferHasEnded) {
    HiddenRows rows(*store);
    rows.hide(reading(0));
    rows.endOffer();
    rows.undo();
    EXPECT_EQ(hidden(), KeySet{});
}

TEST_F(HiddenRowsTest, OfferNothingForAReadingThatIsShownAgain) {
    HiddenRows rows(*store);
    rows.hide(reading(0));
    rows.storeChanged();
    EXPECT_NE(rows.lastName(), "");
    store->unhideAllReadings();
    rows.storeChanged();
    EXPECT_EQ(rows.lastName(), "");
}

TEST_F(HiddenRowsTest, ShowASingleReadingOfTheirList) {
    HiddenRows rows(*store);
    for (std::size_t index = 0; index < 3; ++index) rows.hide(reading(index));
    rows.list();
    ASSERT_EQ(rows.names().size(), 3);
    rows.show(static_cast<int>(rows.names().indexOf(qtText(rowName(reading(1))))));
    EXPECT_EQ(hidden().size(), 2U);
    EXPECT_FALSE(hidden().contains("TC1C"));
    rows.show(3);
    rows.show(-1);
    EXPECT_EQ(hidden().size(), 2U);
}

} // namespace
} // namespace kelvinbar::hidden_rows_test
