#include "tools/IdentificationReport.h"

#include "base/Text.h"

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::identification_report_test {

namespace {

SMCReading reading(std::string key, std::string name, std::string unit) {
    SMCReading made;
    made.key = std::move(key);
    made.name = std::move(name);
    made.category = SMCCategory::cpu;
    made.unit = std::move(unit);
    return made;
}

/// A record of six values at rest and six under load.
class RecordedRun {
  public:
    explicit RecordedRun(LoadPhase busy = LoadPhase::load) {
        auto& phases = record_.recording.phases;
        phases.assign(6, LoadPhase::rest);
        phases.insert(phases.end(), 6, busy);
    }

    RecordedRun& add(const SMCReading& reading, double rest, double busy, double wobble) {
        ReadingSeries series{.key = reading.key, .values = {}};
        for (std::size_t index = 0; index < record_.recording.phases.size(); ++index) {
            series.values.emplace_back((index < 6 ? rest : busy) + (index % 2 == 0 ? wobble : -wobble));
        }
        record_.recording.series.push_back(std::move(series));
        record_.readings.emplace(reading.key, reading);
        return *this;
    }

    [[nodiscard]] const IdentificationRecord& record() const { return record_; }

  private:
    IdentificationRecord record_;
};

TEST(IdentificationText, NamesTheLikeliestReadingsWithTheirChange) {
    RecordedRun run;
    run.add(reading("k10temp-pci-00c3/temp1", "CPU Tctl", "°C"), 40, 70, 0.1);
    run.add(reading("BAT0/current_now", "Battery Current", "A"), 4, 1, 0.1);
    run.add(reading("fan-isa-0000/fan1", "Fan", "RPM"), 900, 901, 20);
    EXPECT_EQ(identificationText(run.record()),
              "Score     Change  At rest  Name             Key\n"
              " 99 %  +30.03 °C    40 °C  CPU Tctl         k10temp-pci-00c3/temp1\n"
              " 90 %   -3.033 A      4 A  Battery Current  BAT0/current_now\n"
              "\nTo name one of them, put its lines into a file in /etc/sensors.d, with your name for it:\n"
              "\nchip \"k10temp-pci-00c3\"\n    label temp1 \"CPU Tctl\"\n");
}

TEST(IdentificationText, SaysThatNothingResponded) {
    RecordedRun run;
    run.add(reading("fan-isa-0000/fan1", "Fan", "RPM"), 900, 901, 20);
    EXPECT_EQ(identificationText(run.record()), "No reading responded clearly.\n");
}

TEST(IdentificationText, CountsWhatItDoesNotName) {
    RecordedRun run;
    for (int number = 1; number <= 12; ++number) {
        run.add(reading("chip/x" + std::to_string(number), "Reading", ""), 10, 20, 0.1);
    }
    const std::string text = identificationText(run.record());
    EXPECT_TRUE(contains(text, "chip/x10\n")) << text;
    EXPECT_FALSE(contains(text, "chip/x11\n")) << text;
    EXPECT_TRUE(text.ends_with("\nand 2 more\n")) << text;
}

TEST(IdentificationText, CannotBeBrokenByANameThatEndsALine) {
    RecordedRun run;
    run.add(reading("chip-isa-0000/temp1", "a\nb\"", "°C"), 10, 20, 0.1);
    const std::string text = identificationText(run.record());
    EXPECT_FALSE(contains(text, "a\nb")) << text;
    EXPECT_TRUE(contains(text, "label temp1 \"a\xEF\xBF\xBD"
                               "b\\\"\"\n"))
        << text;
}

TEST(IdentificationJson, HasEveryReadingThatChanged) {
    RecordedRun run;
    run.add(reading("BAT0/current_now", "Battery Current", "A"), 4, 1, 0.1);
    run.add(reading("k10temp-pci-00c3/temp1", "CPU Tctl", "°C"), 40, 70, 0.1);
    run.add(reading("fan-isa-0000/fan1", "Fan", "RPM"), 900, 901, 20);
    const auto document = nlohmann::json::parse(identificationJson(run.record()));
    EXPECT_EQ(document["schema"], 1);
    EXPECT_EQ(document["mode"], "load");
    EXPECT_EQ(document["end"], "planned");
    ASSERT_EQ(document["ranking"].size(), 3U);
    const auto& first = document["ranking"][0];
    EXPECT_EQ(first["key"], "k10temp-pci-00c3/temp1");
    EXPECT_EQ(first["category"], "CPU");
    EXPECT_EQ(first["sensorsChip"], "k10temp-pci-00c3");
    EXPECT_EQ(first["sensorsFeature"], "temp1");
    EXPECT_GT(first["correlation"], 0.9);
    EXPECT_NEAR(first["rest"].get<double>(), 40, 1e-9);
    EXPECT_FALSE(document["ranking"][1].contains("sensorsChip"));
    EXPECT_LT(document["ranking"][2]["score"], likelyScore);
}

TEST(IdentificationJson, HasNoCorrelationWithoutALoad) {
    RecordedRun run(LoadPhase::byHand);
    run.add(reading("fan-isa-0000/fan1", "Fan", "RPM"), 900, 400, 5);
    const auto document = nlohmann::json::parse(identificationJson(run.record()));
    EXPECT_EQ(document["mode"], "by hand");
    EXPECT_FALSE(document["ranking"][0].contains("correlation"));
}

} // namespace
} // namespace kelvinbar::identification_report_test
