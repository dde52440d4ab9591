#include "base/Value.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::dictionary_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNull;
using testing::Pointee;

std::vector<std::string> keysOf(const Dictionary& dictionary) {
    std::vector<std::string> keys;
    for (const auto& [key, value] : dictionary) keys.push_back(key);
    return keys;
}

Dictionary oneOfEachKind() {
    return {{"truth", true},        {"whole", std::int64_t{42}},
            {"floating", 2.5},      {"text", std::string("forty-two")},
            {"data", Data{0, 255}}, {"list", TextList{"a", "b"}}};
}

TEST(Dictionary, FindsAnEntryOnlyUnderItsOwnType) {
    const Dictionary dictionary = oneOfEachKind();

    EXPECT_THAT(dictionary.find<bool>("truth"), Pointee(true));
    EXPECT_THAT(dictionary.find<std::int64_t>("whole"), Pointee(42));
    EXPECT_THAT(dictionary.find<double>("floating"), Pointee(2.5));
    EXPECT_THAT(dictionary.find<std::string>("text"), Pointee(std::string("forty-two")));
    EXPECT_THAT(dictionary.find<Data>("data"), Pointee(Data{0, 255}));
    EXPECT_THAT(dictionary.find<TextList>("list"), Pointee(TextList{"a", "b"}));

    EXPECT_THAT(dictionary.find<std::int64_t>("truth"), IsNull());
    EXPECT_THAT(dictionary.find<double>("whole"), IsNull());
    EXPECT_THAT(dictionary.find<std::int64_t>("floating"), IsNull());
    EXPECT_THAT(dictionary.find<Data>("text"), IsNull());
    EXPECT_THAT(dictionary.find<std::string>("data"), IsNull());
    EXPECT_THAT(dictionary.find<std::string>("list"), IsNull());
}

TEST(Dictionary, ReturnsNullForAKeyThatItDoesNotHold) {
    const Dictionary dictionary{{"key", std::string("TC0P")}};
    EXPECT_THAT(dictionary.find("Key"), IsNull());
    EXPECT_THAT(dictionary.find("key "), IsNull());
    EXPECT_THAT(dictionary.find(""), IsNull());
    EXPECT_THAT(dictionary.find<std::string>("name"), IsNull());
}

TEST(Dictionary, TreatsATextLiteralAsTextNotAsTruth) {
    Dictionary dictionary{{"listed", "one"}};
    dictionary.set("set", "two");
    dictionary.append("appended", "three");
    EXPECT_THAT(dictionary.find<std::string>("listed"), Pointee(std::string("one")));
    EXPECT_THAT(dictionary.find<std::string>("set"), Pointee(std::string("two")));
    EXPECT_THAT(dictionary.find<std::string>("appended"), Pointee(std::string("three")));
}

TEST(Dictionary, KeepsTheOrderOfInsertion) {
    Dictionary dictionary{{"z", 1.0}, {"a", 2.0}};
    dictionary.append("m", 3.0);
    dictionary.set("b", 4.0);
    EXPECT_THAT(keysOf(dictionary), ElementsAre("z", "a", "m", "b"));
}

TEST(Dictionary, ReplacesAValueInItsPlaceAndMayChangeItsKind) {
    Dictionary dictionary{{"first", 1.0}, {"second", 2.0}, {"third", 3.0}};
    dictionary.set("second", std::string("two"));

    EXPECT_THAT(keysOf(dictionary), ElementsAre("first", "second", "third"));
    EXPECT_THAT(dictionary.find<std::string>("second"), Pointee(std::string("two")));
    EXPECT_THAT(dictionary.find<double>("second"), IsNull());
}

TEST(Dictionary, HoldsAKeyThatIsListedTwiceOnceWithTheLastValue) {
    const Dictionary dictionary{{"key", 1.0}, {"other", 2.0}, {"key", 3.0}};
    EXPECT_THAT(keysOf(dictionary), ElementsAre("key", "other"));
    EXPECT_THAT(dictionary.find<double>("key"), Pointee(3.0));
}

TEST(Dictionary, HasNoEntryUntilOneIsSet) {
    Dictionary dictionary;
    EXPECT_THAT(keysOf(dictionary), IsEmpty());
    dictionary.set("key", false);
    EXPECT_THAT(keysOf(dictionary), ElementsAre("key"));
}

TEST(Dictionary, ComparesByKeysValuesAndOrder) {
    const Dictionary dictionary{{"a", 1.0}, {"b", 2.0}};
    EXPECT_EQ(dictionary, (Dictionary{{"a", 1.0}, {"b", 2.0}}));
    EXPECT_NE(dictionary, (Dictionary{{"b", 2.0}, {"a", 1.0}}));
    EXPECT_NE(dictionary, (Dictionary{{"a", 1.0}, {"b", 3.0}}));
    EXPECT_NE(dictionary, (Dictionary{{"a", 1.0}, {"b", std::int64_t{2}}}));
    EXPECT_NE(dictionary, (Dictionary{{"a", 1.0}}));
}

TEST(Value, ReturnsWholeAndFloatingNumbersAsDoubles) {
    EXPECT_EQ(numberIn(Value(std::int64_t{-3})), -3.0);
    EXPECT_EQ(numberIn(Value(2.5)), 2.5);
    EXPECT_EQ(numberIn(Value(std::numeric_limits<double>::infinity())),
              std::numeric_limits<double>::infinity());
    const std::optional<double> nan = numberIn(Value(std::numeric_limits<double>::quiet_NaN()));
    ASSERT_TRUE(nan.has_value());
    EXPECT_TRUE(std::isnan(*nan));
}

TEST(Value, HasNoNumberInATruthValueATextBytesOrAList) {
    EXPECT_EQ(numberIn(Value(true)), std::nullopt);
    EXPECT_EQ(numberIn(Value(false)), std::nullopt);
    EXPECT_EQ(numberIn(Value(std::string("12"))), std::nullopt);
    EXPECT_EQ(numberIn(Value(Data{12})), std::nullopt);
    EXPECT_EQ(numberIn(Value(TextList{"12"})), std::nullopt);
}

} // namespace
} // namespace kelvinbar::dictionary_test
