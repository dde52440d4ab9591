// The I/O Kit code, with a fake I/O Kit that counts references.

#include "machines/macos/IOKitRegistry.h"
#include "machines/macos/IOKitSMCDriver.h"
#include "tests/machines/macos/FakeIOKit.h"

#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <string_view>

#include <gtest/gtest.h>

namespace kelvinbar::io_kit_test {

namespace {

using fakes::FakeIOKit;
using fakes::FakeNumber;
using fakes::FakeValue;

bool any(std::string_view /*name*/) { return true; }

class IOKit : public testing::Test {
  protected:
    IOKit() { fake.reset(); }

    void TearDown() override { EXPECT_EQ(fake.liveCount(), 0U) << "something was not released"; }

    SMCDriver::Connection openedConnection() {
        return driver.open(driver.findService("AppleSMC").value_or(0)).connection;
    }

    /// The entries of the registry, in the order of the walk.
    std::unique_ptr<IORegistryIterator> walk() { return registry.iterateRecursively("IOService"); }

    /// The properties that the program reads from an entry with these.
    std::optional<Dictionary> propertiesOf(std::vector<std::pair<FakeValue, FakeValue>> properties) {
        fake.entries = {{.className = "SMCSuperIO", .name = "SuperIO", .properties = std::move(properties)}};
        const auto entries = walk();
        return entries->next()->properties(any);
    }

    FakeIOKit& fake = FakeIOKit::shared();
    IOKitSMCDriver driver;
    IOKitRegistry registry;
};

// The controller's driver

TEST_F(IOKit, FindsAServiceByItsClass) {
    EXPECT_FALSE(driver.findService("AppleSMCX").has_value());
    const auto service = driver.findService("AppleSMC");
    ASSERT_TRUE(service.has_value());
    driver.close(driver.open(*service).connection);
}

TEST_F(IOKit, FindsNoServiceWhereThereIsNone) {
    fake.serviceClass.clear();
    EXPECT_FALSE(driver.findService("AppleSMC").has_value());
}

TEST_F(IOKit, ReleasesTheServiceWhenItIsOpen) {
    const auto result = driver.open(driver.findService("AppleSMC").value_or(0));
    EXPECT_EQ(result.code, kernSuccess);
    EXPECT_NE(result.connection, 0U);
    EXPECT_EQ(fake.liveCount(), 1U); // the connection alone
    driver.close(result.connection);
}

TEST_F(IOKit, ARefusedOpenWithoutAHandleGivesTheCodeAndReleasesTheService) {
    fake.openCode = static_cast<kern_return_t>(0xE00002C1);
    fake.opensHandle = false;
    const auto result = driver.open(driver.findService("AppleSMC").value_or(0));
    EXPECT_EQ(result.code, 0xE00002C1U);
    EXPECT_EQ(result.connection, 0U);
}

TEST_F(IOKit, ARefusedOpenWithAHandleGivesThatToBeClosed) {
    fake.openCode = 5;
    const auto result = driver.open(driver.findService("AppleSMC").value_or(0));
    EXPECT_EQ(result.code, 5U);
    EXPECT_NE(result.connection, 0U);
    driver.close(result.connection);
}

TEST_F(IOKit, PassesACallOnAsItIs) {
    const std::array<std::byte, 80> input{std::byte{1}, std::byte{2}};
    std::array<std::byte, 80> output{};
    fake.call = [&](std::uint32_t selector, const void* bytes, std::size_t size, void* result,
                    std::size_t* resultSize) {
        EXPECT_EQ(selector, 2U);
        EXPECT_EQ(size, 80U);
        EXPECT_EQ(*resultSize, 80U);
        std::memcpy(result, bytes, size);
        *resultSize = 40;
        return static_cast<kern_return_t>(0xE00002BC);
    };
    const auto connection = openedConnection();
    std::size_t outputSize = output.size();
    EXPECT_EQ(driver.callStructMethod(connection, 2, input, output, outputSize), 0xE00002BCU);
    EXPECT_EQ(outputSize, 40U);
    EXPECT_EQ(output, input);
    driver.close(connection);
}

TEST_F(IOKit, EveryCallHasAScopeOfItsOwn) {
    fake.call = [&](auto, auto, auto, auto, auto) {
        EXPECT_EQ(fake.openScopes, 1U);
        return KERN_SUCCESS;
    };
    const auto connection = openedConnection();
    std::array<std::byte, 80> block{};
    std::size_t size = block.size();
    const std::size_t before = fake.scopes;
    for (int call = 0; call < 3; ++call) driver.callStructMethod(connection, 2, block, block, size);
    EXPECT_EQ(fake.scopes, before + 3);
    EXPECT_EQ(fake.openScopes, 0U);
    driver.close(connection);
}

// The registry

TEST_F(IOKit, WalksThePlaneWithAllThatIsBelow) {
    fake.entries = {{.className = "A", .name = "a", .properties = {}},
                    {.className = "B", .name = "b", .properties = {}}};
    const auto entries = walk();
    EXPECT_EQ(fake.openedPlane, "IOService");
    EXPECT_EQ(fake.openedOptions, static_cast<IOOptionBits>(kIORegistryIterateRecursively));
    const IORegistryEntry* entry = entries->next();
    EXPECT_EQ(entry->className(), "A");
    EXPECT_EQ(entry->name(), "a");
    entry = entries->next();
    EXPECT_EQ(entry->className(), "B");
    EXPECT_EQ(entries->next(), nullptr);
    EXPECT_EQ(entries->next(), nullptr);
}

TEST_F(IOKit, KeepsOneEntryAtATime) {
    fake.entries.assign(10, {.className = "A", .name = "a", .properties = {}});
    const auto entries = walk();
    while (entries->next() != nullptr) EXPECT_EQ(fake.liveCount(), 2U); // and the iterator
}

TEST_F(IOKit, AWalkMayEndEarly) {
    fake.entries.assign(10, {.className = "A", .name = "a", .properties = {}});
    const auto entries = walk();
    entries->next();
}

TEST_F(IOKit, AnIteratorThatIsRefusedIsNoWalk) {
    fake.iteratorCode = 5;
    EXPECT_EQ(walk(), nullptr);
}

TEST_F(IOKit, AnIteratorThatBecomesInvalidEndsTheWalk) {
    fake.entries.assign(10, {.className = "A", .name = "a", .properties = {}});
    fake.invalidAfter = 3;
    const auto entries = walk();
    int count = 0;
    while (entries->next() != nullptr) ++count;
    EXPECT_EQ(count, 3);
}

TEST_F(IOKit, ALongClassNameFillsTheBufferAndNoMore) {
    fake.entries = {{.className = std::string(200, 'C'), .name = std::string(127, 'n'), .properties = {}}};
    const auto entries = walk();
    const IORegistryEntry* const entry = entries->next();
    EXPECT_EQ(entry->className(), std::string(127, 'C'));
    EXPECT_EQ(entry->name(), std::string(127, 'n'));
}

TEST_F(IOKit, ANameThatCannotBeReadIsEmpty) {
    fake.entries = {{.className = "A", .name = "a", .properties = {}, .nameCode = 5}};
    const auto entries = walk();
    const IORegistryEntry* const entry = entries->next();
    EXPECT_EQ(entry->className(), "");
    EXPECT_EQ(entry->name(), "");
}

TEST_F(IOKit, HasOneTextProperty) {
    fake.entries = {{.className = "A",
                     .name = "a",
                     .properties = {{u"model", u"X1 µ"}, {u"FAN0", FakeNumber(std::int64_t{7})}}}};
    const auto entries = walk();
    const IORegistryEntry* const entry = entries->next();
    EXPECT_EQ(entry->textProperty("model"), "X1 µ");
    EXPECT_EQ(entry->textProperty("FAN0"), std::nullopt);
    EXPECT_EQ(entry->textProperty("compatible"), std::nullopt);
    EXPECT_EQ(entry->textProperty("\xFF"), std::nullopt);
}

TEST_F(IOKit, PropertiesThatAreRefusedOrMissingAreNone) {
    fake.entries = {
        {.className = "A", .name = "a", .properties = {{u"FAN0", true}}, .propertiesCode = 5},
        {.className = "A", .name = "a", .properties = {{u"FAN0", true}}, .givesNoDictionary = true}};
    const auto entries = walk();
    EXPECT_FALSE(entries->next()->properties(any).has_value());
    EXPECT_FALSE(entries->next()->properties(any).has_value());
}

TEST_F(IOKit, PropertiesComeInTheirOwnOrderByTheirTypes) {
    const auto properties = propertiesOf({{u"whole", FakeNumber(std::int64_t{-3})},
                                          {u"least", FakeNumber(std::numeric_limits<std::int64_t>::min())},
                                          {u"great", FakeNumber(std::numeric_limits<std::uint64_t>::max())},
                                          {u"real", FakeNumber(1450.5)},
                                          {u"wholeReal", FakeNumber(1450.0)},
                                          {u"truth", true},
                                          {u"bytes", std::vector<std::uint8_t>{0x05, 0xDC}},
                                          {u"nothing", std::vector<std::uint8_t>{}},
                                          {u"text", std::u16string(u"12 RPM")},
                                          {u"date", fakes::OtherObject{}}});
    const Dictionary expected{{"whole", std::int64_t{-3}},
                              {"least", std::numeric_limits<std::int64_t>::min()},
                              {"great", 18446744073709551615.0},
                              {"real", 1450.5},
                              {"wholeReal", 1450.0},
                              {"truth", true},
                              {"bytes", Data{0x05, 0xDC}},
                              {"nothing", Data{}},
                              {"text", std::string("12 RPM")}};
    EXPECT_EQ(properties, expected);
}

TEST_F(IOKit, NumbersOfEveryTypeKeepTheirValue) {
    const auto properties = propertiesOf({{u"8", FakeNumber(std::int8_t{-128})},
                                          {u"16", FakeNumber(std::int16_t{-32768})},
                                          {u"32", FakeNumber(std::int32_t{-2147483647})},
                                          {u"64", FakeNumber(std::int64_t{1} << 62)},
                                          {u"float", FakeNumber(1450.25F)},
                                          {u"whole float", FakeNumber(1450.0F)},
                                          {u"double", FakeNumber(0.1)},
                                          {u"infinite", FakeNumber(HUGE_VAL)}});
    const Dictionary expected{{"8", std::int64_t{-128}},
                              {"16", std::int64_t{-32768}},
                              {"32", std::int64_t{-2147483647}},
                              {"64", std::int64_t{1} << 62},
                              {"float", 1450.25},
                              {"whole float", 1450.0},
                              {"double", 0.1},
                              {"infinite", HUGE_VAL}};
    EXPECT_EQ(properties, expected);
}

TEST_F(IOKit, APropertyWithoutATextualNameIsLeftOut) {
    const auto properties = propertiesOf({{FakeNumber(std::int64_t{1}), true}, {u"FAN0", true}});
    EXPECT_EQ(properties, (Dictionary{{"FAN0", true}}));
}

TEST_F(IOKit, AZeroInATextIsPartOfIt) {
    const auto properties = propertiesOf({{u"text", std::u16string(u"a\0b", 3)}});
    EXPECT_EQ(properties, (Dictionary{{"text", std::string("a\0b", 3)}}));
}

TEST_F(IOKit, ATextThatIsNoUnicodeIsLeftOut) {
    EXPECT_EQ(propertiesOf({{u"text", std::u16string(1, char16_t{0xD800})}}), Dictionary());
}

TEST_F(IOKit, ATextBeyondTheFirstPlaneIsWhole) {
    EXPECT_EQ(propertiesOf({{u"text", std::u16string(u"\U0001F321")}}),
              (Dictionary{{"text", std::string("\U0001F321")}}));
}

TEST_F(IOKit, OnlyWantedPropertiesAreConverted) {
    fake.entries = {{.className = "A",
                     .name = "a",
                     .properties = {{u"FAN0", FakeNumber(std::int64_t{7})},
                                    {u"image", std::vector<std::uint8_t>(4096)},
                                    {u"FAN1", true}}}};
    const auto entries = walk();
    const auto properties =
        entries->next()->properties([](std::string_view name) { return name.starts_with("FAN"); });
    EXPECT_EQ(properties, (Dictionary{{"FAN0", std::int64_t{7}}, {"FAN1", true}}));
    EXPECT_EQ(fake.convertedValues, 2U);
}

TEST_F(IOKit, AnEntryWithoutPropertiesHasNone) { EXPECT_EQ(propertiesOf({}), Dictionary()); }

} // namespace
} // namespace kelvinbar::io_kit_test
