#include "store/InMemoryUserDefaults.h"

#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace kelvinbar::in_memory_user_defaults_test {

namespace {

TEST(InMemoryUserDefaults, BeginsEmpty) {
    const InMemoryUserDefaults defaults;
    EXPECT_EQ(defaults.text("a"), std::nullopt);
    EXPECT_EQ(defaults.textList("a"), std::nullopt);
    EXPECT_EQ(defaults.number("a"), 0);
}

TEST(InMemoryUserDefaults, ReturnsTheLastValue) {
    InMemoryUserDefaults defaults;
    defaults.setText("text", "first");
    defaults.setText("text", "second");
    defaults.setTextList("list", {"a", "b"});
    defaults.setNumber("number", 0.1);
    EXPECT_EQ(defaults.text("text"), "second");
    EXPECT_EQ(defaults.textList("list"), (TextList{"a", "b"}));
    EXPECT_EQ(defaults.number("number"), 0.1);
}

TEST(InMemoryUserDefaults, AnEmptyListIsPresent) {
    InMemoryUserDefaults defaults;
    defaults.setTextList("list", {});
    EXPECT_EQ(defaults.textList("list"), TextList{});
}

TEST(InMemoryUserDefaults, AValueOfAnotherTypeCountsAsAbsent) {
    InMemoryUserDefaults defaults;
    defaults.setText("text", "5");
    defaults.setTextList("list", {"5"});
    defaults.setNumber("number", 5);
    EXPECT_EQ(defaults.number("text"), 0);
    EXPECT_EQ(defaults.textList("text"), std::nullopt);
    EXPECT_EQ(defaults.text("list"), std::nullopt);
    EXPECT_EQ(defaults.number("list"), 0);
    EXPECT_EQ(defaults.text("number"), std::nullopt);
    EXPECT_EQ(defaults.textList("number"), std::nullopt);
}

TEST(InMemoryUserDefaults, AValueMayChangeItsType) {
    InMemoryUserDefaults defaults;
    defaults.setText("key", "5");
    defaults.setNumber("key", 5);
    EXPECT_EQ(defaults.text("key"), std::nullopt);
    EXPECT_EQ(defaults.number("key"), 5);
}

TEST(InMemoryUserDefaults, ARemovedValueIsAbsent) {
    InMemoryUserDefaults defaults;
    defaults.setText("text", "a");
    defaults.setText("other", "b");
    defaults.remove("text");
    defaults.remove("never there");
    EXPECT_EQ(defaults.text("text"), std::nullopt);
    EXPECT_EQ(defaults.text("other"), "b");
}

} // namespace
} // namespace kelvinbar::in_memory_user_defaults_test
