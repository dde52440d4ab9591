#include "tools/cost/OwnReadings.h"

#include "base/Text.h"
#include "tools/OutputFormats.h"
#include "tools/ReadingSelection.h"

#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::own_readings_test {

namespace {

using testing::ElementsAre;

constexpr ProgramCost known{.measuredTime = 600,
                            .cpuTimePerMinute = 0.25,
                            .wakeUpsPerMinute = 12,
                            .residentMemory = 3 * 1024 * 1024,
                            .privateMemory = 1024 * 1024,
                            .accessesOfLastPass = 40};

SMCReading sensor() {
    SMCReading reading;
    reading.key = "chip-isa-0000/temp1";
    reading.name = "Chip";
    reading.category = SMCCategory::cpu;
    reading.type = "chip";
    reading.value = reading.raw = "40";
    reading.numericValue = 40;
    reading.unit = "°C";
    return reading;
}

std::vector<SMCReading> sensorAndCost() {
    std::vector<SMCReading> readings{sensor()};
    for (const SMCReading& reading : ownReadings(known, "tray program")) readings.push_back(reading);
    return readings;
}

std::vector<std::string> keysOf(const std::vector<SMCReading>& readings) {
    std::vector<std::string> keys;
    for (const SMCReading& reading : readings) keys.push_back(reading.key);
    return keys;
}

std::string printed(std::string_view format) {
    return findOutputFormat(format)->makeWriter({})(
        {.machine = "this machine", .time = {}, .status = "", .readings = sensorAndCost()});
}

TEST(OwnReadings, HaveAKeyANameAndAUnitEach) {
    std::vector<std::string> lines;
    for (const SMCReading& reading : ownReadings(known, "tray program")) {
        lines.push_back(reading.key + " | " + reading.name + " | " + reading.displayValue());
        EXPECT_EQ(reading.type, "tray program");
        EXPECT_TRUE(reading.hasDisplayableValue());
        EXPECT_EQ(categoryTitle(reading), "Kelvinbar");
    }
    EXPECT_THAT(lines, ElementsAre("kelvinbar/cpu-time | CPU Time a Minute | 0.25 s",
                                   "kelvinbar/wake-ups | Wake-Ups a Minute | 12",
                                   "kelvinbar/measured-time | Measured Time | 600 s",
                                   "kelvinbar/resident-memory | Resident Memory | 3 MB",
                                   "kelvinbar/private-memory | Private Memory | 1 MB",
                                   "kelvinbar/accesses | Accesses a Pass | 40"));
}

TEST(OwnReadings, ShowTwoDigitsOfALowCost) {
    const auto shown = [](double cpuTime) {
        ProgramCost cost;
        cost.cpuTimePerMinute = cpuTime;
        return ownReadings(cost, "tray program").front().displayValue();
    };
    EXPECT_EQ(shown(0), "0 s");
    EXPECT_EQ(shown(0.00042), "0.00042 s");
    EXPECT_EQ(shown(0.0031), "0.0031 s");
    EXPECT_EQ(shown(0.00496), "0.0050 s");
    EXPECT_EQ(shown(0.009996), "0.0100 s");
    EXPECT_EQ(shown(0.0123), "0.012 s");
    EXPECT_EQ(shown(1e-300), "0 s");
}

TEST(OwnReadings, LeaveOutWhatIsNotKnown) {
    ProgramCost cost;
    EXPECT_TRUE(ownReadings(cost, "tray program").empty());
    cost.wakeUpsPerMinute = 0;
    EXPECT_THAT(keysOf(ownReadings(cost, "tray program")), ElementsAre("kelvinbar/wake-ups"));
}

TEST(OwnReadings, AreSelectedByTheirOwnCategoryAndNoOther) {
    const auto readings = sensorAndCost();
    EXPECT_EQ(selectedReadings(readings, {.hasOwnCategory = true}).size(), 6U);
    EXPECT_THAT(keysOf(selectedReadings(readings, {.categories = {SMCCategory::cpu, SMCCategory::unknown}})),
                ElementsAre("chip-isa-0000/temp1"));
    EXPECT_EQ(selectedReadings(readings, {.categories = {SMCCategory::cpu}, .hasOwnCategory = true}).size(),
              7U);
    EXPECT_EQ(selectedReadings(readings, {}).size(), 7U);
}

TEST(OwnReadings, AreNotReadFromTheMachine) {
    const auto keys = keysToRead(sensorAndCost(), {.hasOwnCategory = true});
    ASSERT_NE(keys, nullptr); // which would be all keys
    EXPECT_TRUE(keys->empty());
}

TEST(OwnReadings, ArePrintedUnderTheirCategory) {
    EXPECT_TRUE(contains(printed("json"), "\"category\": \"Kelvinbar\""));
    EXPECT_TRUE(contains(printed("jsonl"), "\"category\":\"Kelvinbar\""));
    EXPECT_TRUE(contains(printed("csv"), "\nkelvinbar/cpu-time,CPU Time a Minute,Kelvinbar,tray program,"));
    EXPECT_TRUE(contains(printed("table"), "\n\nKELVINBAR\n  CPU Time a Minute"));
    EXPECT_FALSE(contains(printed("table"), "OTHER"));
}

TEST(OwnReadings, AreMetricsInBaseUnitsWithTheProgramAsALabel) {
    const std::string metrics = printed("openmetrics");
    for (const std::string_view line :
         {"kelvinbar_duration_seconds{key=\"kelvinbar/cpu-time\",name=\"CPU Time a "
          "Minute\",category=\"Kelvinbar\",program=\"tray program\"} 0.25\n",
          "program=\"tray program\"} 3145728\n", "# UNIT kelvinbar_memory_bytes bytes\n"}) {
        EXPECT_TRUE(contains(metrics, line)) << metrics;
    }
}

} // namespace
} // namespace kelvinbar::own_readings_test
