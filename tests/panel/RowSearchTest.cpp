#include "panel/RowSearch.h"

#include "panel/SensorList.h"

#include <QSignalSpy>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::row_search_test {

namespace {

/// A list of four rows.
struct RowSearchTest : testing::Test {
    SensorList list{SensorListMetrics(1)};
    RowSearch search{list};

    void SetUp() override {
        list.update({named("K1", "Core 1"), named("K2", "Core 2"), named("K3", "CPU Die Ü"),
                     named("K4", "Diode Edge")},
                    {}, {});
        list.setViewport(0, 500);
    }

    static SMCReading named(const std::string& key, const std::string& name) {
        return {.key = key,
                .name = name,
                .category = SMCCategory::cpu,
                .type = "sp78",
                .value = "40",
                .numericValue = 40,
                .unit = "°C",
                .raw = "2800",
                .status = "OK"};
    }

    QString typed(const char* letter) {
        EXPECT_TRUE(search.type(QString::fromUtf8(letter)));
        return list.currentKey();
    }
};

TEST_F(RowSearchTest, GoesToTheNextNameWithTheLetter) {
    EXPECT_EQ(typed("d"), "K4");
    EXPECT_TRUE(search.isFound());
}

TEST_F(RowSearchTest, FurtherLettersStayAtARowThatHasThemToo) {
    list.setCurrentKey("K2");
    for (const char* const letter : {"c", "o", "r", "e", " "}) typed(letter);
    EXPECT_EQ(list.currentKey(), "K1") << "the first letter went on to another row";
    EXPECT_EQ(typed("2"), "K2");
    EXPECT_EQ(search.text(), "core 2");
}

TEST_F(RowSearchTest, AnotherSearchGoesOnFromTheCurrentRowAndAroundTheEnd) {
    EXPECT_EQ(typed("e"), "K1");
    EXPECT_TRUE(search.end());
    EXPECT_EQ(typed("e"), "K2");
    EXPECT_TRUE(search.end());
    list.setCurrentKey("K3"); // the last row
    EXPECT_EQ(typed("e"), "K1");
}

TEST_F(RowSearchTest, TheOnlyRowWithTheLetterStaysCurrent) {
    list.setCurrentKey("K4");
    EXPECT_EQ(typed("g"), "K4");
}

TEST_F(RowSearchTest, CaseDoesNotMatterInAnyAlphabet) { EXPECT_EQ(typed("ü"), "K3"); }

TEST_F(RowSearchTest, ATextThatNoNameContainsMovesNothingAndIsTold) {
    list.setCurrentKey("K2");
    EXPECT_EQ(typed("z"), "K2");
    EXPECT_FALSE(search.isFound());
    EXPECT_TRUE(search.eraseLast());
    EXPECT_EQ(search.text(), "");
}

TEST_F(RowSearchTest, BackspaceTakesTheLastLetterBack) {
    typed("d");
    typed("x");
    EXPECT_TRUE(search.eraseLast());
    EXPECT_EQ(search.text(), "d");
    EXPECT_TRUE(search.isFound());
    EXPECT_TRUE(search.eraseLast());
    EXPECT_FALSE(search.eraseLast());
}

TEST_F(RowSearchTest, EndingItTellsWhetherThereWasOne) {
    EXPECT_FALSE(search.end());
    typed("c");
    EXPECT_TRUE(search.end());
    EXPECT_EQ(search.text(), "");
}

TEST_F(RowSearchTest, DoesNotBeginWithASpaceNorWithWhatIsNoLetter) {
    for (const char* const other : {" ", "", "\t", "\r", "\x1b"}) {
        EXPECT_FALSE(search.type(QString::fromUtf8(other)));
    }
    EXPECT_EQ(search.text(), "");
}

} // namespace
} // namespace kelvinbar::row_search_test
