#include "tools/SelectionReader.h"

#include "tests/fakes/FakeMachine.h"
#include "tests/fakes/FakeSensorSource.h"

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::selection_reader_test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class SelectionReaderTest : public testing::Test {
  protected:
    SelectionReaderTest() {
        add("chip/temp1");
        add("chip/fan1");
    }

    void add(const std::string& key) {
        source->add(key, "40");
        source->readings.back().numericValue = 40;
        source->readings.back().name = key;
        source->readings.back().category = "CPU";
        source->readings.back().unit = "";
    }

    void begin(const ReadingSelection& selection, const Dictionary& preferences = {}) {
        reader = std::make_unique<SelectionReader>(taker, selection);
        Machine machine = fake.machine();
        machine.source = source;
        reader->begin(machine, preferences);
    }

    /// The keys that are printed of the next snapshot.
    std::vector<std::string> next() {
        std::vector<std::string> keys;
        for (const SMCReading& reading : reader->selected(reader->next())) keys.push_back(reading.key);
        return keys;
    }

    std::vector<std::string> nextAfterDiscovery() {
        fake.clock->advance(std::chrono::minutes(6));
        return next();
    }

    [[nodiscard]] const std::vector<std::string>& lastRequest() const { return source->requests.back(); }

    fakes::FakeMachine fake;
    std::shared_ptr<fakes::FakeSensorSource> source = std::make_shared<fakes::FakeSensorSource>();
    SnapshotTaker taker;
    std::unique_ptr<SelectionReader> reader;
};

Dictionary pins(const TextList& keys) { return {{"KelvinbarMenuBarKeys", keys}}; }

TEST_F(SelectionReaderTest, ReadsWhatIsSelectedAndNothingElse) {
    begin({.match = "temp"});
    EXPECT_THAT(next(), ElementsAre("chip/temp1"));
    EXPECT_THAT(lastRequest(), ElementsAre("chip/temp1"));
}

TEST_F(SelectionReaderTest, ADeviceThatComesStays) {
    begin({.match = "temp"});
    add("drive/temp1");
    add("drive/fan1");
    EXPECT_THAT(next(), ElementsAre("chip/temp1"));
    EXPECT_THAT(nextAfterDiscovery(), ElementsAre("chip/temp1", "drive/temp1"));
    EXPECT_THAT(next(), ElementsAre("chip/temp1", "drive/temp1"));
    EXPECT_EQ(lastRequest().size(), 2U);
}

TEST_F(SelectionReaderTest, ADeviceThatWentIsReadNoMore) {
    begin({.match = "chip"});
    source->readings.erase(source->readings.begin());
    EXPECT_THAT(next(), ElementsAre("chip/fan1"));
    EXPECT_EQ(lastRequest().size(), 2U); // it may be there again before the next search
    EXPECT_THAT(nextAfterDiscovery(), ElementsAre("chip/fan1"));
    next();
    EXPECT_THAT(lastRequest(), ElementsAre("chip/fan1"));
}

TEST_F(SelectionReaderTest, AKeyThatWasAskedForIsReadAlsoWhileItIsMissing) {
    begin({.keys = {"drive/temp1"}});
    EXPECT_THAT(nextAfterDiscovery(), IsEmpty());
    EXPECT_THAT(next(), IsEmpty());
    EXPECT_THAT(lastRequest(), ElementsAre("drive/temp1"));
}

TEST_F(SelectionReaderTest, AMaskedKeyStandsForTheOneThatItHides) {
    begin({.keys = {"enxxxxxxxxxxx47/temp1"}});
    add("enx001122334455/temp1");
    EXPECT_THAT(nextAfterDiscovery(), ElementsAre("enx001122334455/temp1"));
    EXPECT_THAT(next(), ElementsAre("enx001122334455/temp1"));
    EXPECT_THAT(lastRequest(), ElementsAre("enx001122334455/temp1"));
}

TEST_F(SelectionReaderTest, PinsFollowThePreferences) {
    begin({.isPinned = true}, pins({"chip/temp1"}));
    EXPECT_THAT(next(), ElementsAre("chip/temp1"));
    reader->followPins(pins({"chip/fan1", "chip/temp1"}));
    EXPECT_THAT(next(), ElementsAre("chip/fan1", "chip/temp1"));
    reader->followPins({});
    EXPECT_THAT(next(), IsEmpty());
    EXPECT_THAT(lastRequest(), IsEmpty());
    reader->followPins(pins({"chip/fan1"}));
    EXPECT_THAT(next(), ElementsAre("chip/fan1"));
    EXPECT_THAT(lastRequest(), ElementsAre("chip/fan1"));
    EXPECT_THAT(nextAfterDiscovery(), ElementsAre("chip/fan1"));
}

TEST_F(SelectionReaderTest, WithoutAPinNothingIsSelected) {
    begin({.isPinned = true});
    EXPECT_THAT(nextAfterDiscovery(), IsEmpty());
    EXPECT_THAT(next(), IsEmpty());
}

} // namespace
} // namespace kelvinbar::selection_reader_test
