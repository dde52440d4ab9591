#include "tools/OutputFormats.h"

#include "base/Text.h"

#include <chrono>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::output_formats_test {

namespace {

using testing::HasSubstr;
using testing::Not;

SMCReading numberReading(std::string_view key, std::string_view name, SMCCategory category, double number,
                         std::string_view value, std::string_view unit) {
    return {.key = std::string(key),
            .name = std::string(name),
            .category = category,
            .type = "chip",
            .value = std::string(value),
            .numericValue = number,
            .unit = std::string(unit),
            .raw = "1",
            .status = "OK"};
}

SMCReading temperature() {
    return numberReading("k10temp-pci-00c3/temp1", "CPU Tctl", SMCCategory::cpu, 61.25, "61.25", "°C");
}

SMCReading fan() { return numberReading("F0Ac", "Fan 0", SMCCategory::fans, 1200, "1200", "RPM"); }

SMCReading text() {
    SMCReading reading = numberReading("BAT0/status", "Battery", SMCCategory::battery, 0, "Charging", "");
    reading.numericValue.reset();
    return reading;
}

Report reportWith(std::vector<SMCReading> readings) {
    const std::chrono::sys_days day(std::chrono::year(2026) / 3 / 1);
    return {.machine = "this machine",
            .time = day + std::chrono::hours(14),
            .status = "Loaded 3 sensors",
            .readings = std::move(readings)};
}

std::string written(std::string_view format, const Report& report, const FormatSettings& settings = {}) {
    return findOutputFormat(format)->makeWriter(settings)(report);
}

TEST(OutputFormats, HaveNamesOfTheirOwn) {
    std::set<std::string_view> names;
    for (const OutputFormat& format : outputFormats()) {
        names.insert(format.name);
        EXPECT_EQ(findOutputFormat(format.name), &format);
    }
    EXPECT_EQ(names.size(), outputFormats().size());
    EXPECT_EQ(findOutputFormat("xml"), nullptr);
    EXPECT_EQ(findOutputFormat(""), nullptr);
}

TEST(OutputFormats, EndEachReportWithALineFeedExceptTheText) {
    const Report report = reportWith({temperature(), fan(), text()});
    for (const OutputFormat& format : outputFormats()) {
        EXPECT_EQ(format.makeWriter({})(report).ends_with('\n'), format.name != "text") << format.name;
        EXPECT_TRUE(format.makeWriter({.isSeries = true})(report).ends_with('\n')) << format.name;
    }
}

/// Only for formats that append lines, such as to a file that grows.
TEST(OutputFormats, WriteOneLineAReportWhereTheyAppendLines) {
    const Report report = reportWith({temperature(), fan(), text()});
    for (const OutputFormat& format : outputFormats()) {
        if (format.repetition != Repetition::lines) continue;
        const ReportWriter write = format.makeWriter({.isSeries = true});
        static_cast<void>(write(report)); // perhaps with a heading
        const std::string line = write(report);
        EXPECT_EQ(line.find('\n'), line.size() - 1) << format.name;
    }
}

TEST(OutputFormats, AreWellFormedWhateverADriverNamesItsSensors) {
    SMCReading odd = temperature();
    odd.name = "a\nb\"c\\d,\x1b[2J\xFF{}";
    for (const OutputFormat& format : outputFormats()) {
        if (format.name == "text") continue; // has the name as it is
        const std::string output = written(format.name, reportWith({odd}));
        EXPECT_TRUE(isValidUtf8(output)) << format.name;
        EXPECT_THAT(output, Not(HasSubstr("\x1b"))) << format.name;
        EXPECT_THAT(output, Not(HasSubstr("a\nb"))) << format.name;
    }
}

TEST(TextFormat, KeepsAnOrderThatIsAskedFor) {
    EXPECT_EQ(written("text", reportWith({temperature(), fan()}), {.isOrdered = true}),
              "Kelvinbar snapshot\nGenerated: 2026-03-01T14:00:00Z\nActive keys: 2\n"
              "\nk10temp-pci-00c3/temp1\tchip\tCPU Tctl\t61.25 °C\tRAW=1"
              "\nF0Ac\tchip\tFan 0\t1200 RPM\tRAW=1");
}

TEST(TextFormat, IsOtherwiseInTheOrderOfTheKeysThatItShows) {
    SMCReading card = temperature();
    card.key = "enx001122334455-pci-0100/temp1"; // 47
    SMCReading other = temperature();
    other.key = "enx0011223344ff-pci-0200/temp1"; // 35
    const std::string text = written("text", reportWith({card, other}));
    EXPECT_LT(text.find("\nenxxxxxxxxxxx35-pci-0200"), text.find("\nenxxxxxxxxxxx47-pci-0100")) << text;
    EXPECT_NE(text.find("\nenxxxxxxxxxxx47-pci-0100"), std::string::npos);
}

TEST(TextFormat, EndsTheLastLineOnATerminal) {
    EXPECT_TRUE(written("text", reportWith({fan()}), {.isTerminal = true}).ends_with("RAW=1\n"));
}

TEST(JsonFormat, HasTheFieldsOfEveryReading) {
    EXPECT_EQ(
        written("jsonl", reportWith({temperature(), text()})),
        R"({"schema":1,"machine":"this machine","time":"2026-03-01T14:00:00Z","status":"Loaded 3 sensors",)"
        R"("readings":[{"key":"k10temp-pci-00c3/temp1","name":"CPU Tctl","category":"CPU","type":"chip",)"
        R"("value":"61.25","numericValue":61.25,"unit":"°C","raw":"1","status":"OK"},)"
        R"({"key":"BAT0/status","name":"Battery","category":"Battery","type":"chip","value":"Charging",)"
        R"("unit":"","raw":"1","status":"OK"}]})"
        "\n");
}

TEST(JsonFormat, IsTheSameOnManyLines) {
    const Report report = reportWith({temperature()});
    std::string document = written("json", report);
    EXPECT_THAT(document, HasSubstr("\n  \"schema\": 1,\n"));
    EXPECT_EQ(replacedAll(replacedAll(replacedAll(document, "\n", ""), "  ", ""), "\": ", "\":") + "\n",
              written("jsonl", report));
}

TEST(JsonFormat, HasAnEmptyListWithoutReadings) {
    EXPECT_THAT(written("jsonl", reportWith({})), HasSubstr("\"readings\":[]}"));
}

TEST(CsvFormat, HasARowForEveryReading) {
    EXPECT_EQ(written("csv", reportWith({temperature(), text()})),
              "key,name,category,type,value,number,unit,raw,status\n"
              "k10temp-pci-00c3/temp1,CPU Tctl,CPU,chip,61.25,61.25,°C,1,OK\n"
              "BAT0/status,Battery,Battery,chip,Charging,,,1,OK\n");
}

TEST(CsvFormat, QuotesFieldsWithCommasAndQuotes) {
    SMCReading reading = fan();
    reading.name = "Fan, \"left\"";
    EXPECT_THAT(written("csv", reportWith({reading})), HasSubstr("\nF0Ac,\"Fan, \"\"left\"\"\",Fans,"));
}

TEST(CsvFormat, HasAColumnForEveryReadingInASeries) {
    const ReportWriter write = findOutputFormat("csv")->makeWriter({.isSeries = true});
    EXPECT_EQ(write(reportWith({temperature(), text()})),
              "time,CPU Tctl (°C),Battery\n2026-03-01T14:00:00Z,61.25,Charging\n");
    SMCReading warmer = temperature();
    warmer.numericValue = 62.5;
    EXPECT_EQ(write(reportWith({text(), warmer})), "2026-03-01T14:00:00Z,62.5,Charging\n");
}

TEST(CsvFormat, LeavesTheFieldOfAMissingReadingEmpty) {
    const ReportWriter write = findOutputFormat("csv")->makeWriter({.isSeries = true});
    static_cast<void>(write(reportWith({temperature(), fan()})));
    EXPECT_EQ(write(reportWith({fan()})), "2026-03-01T14:00:00Z,,1200\n");
    EXPECT_EQ(write(reportWith({})), "2026-03-01T14:00:00Z,,\n");
}

TEST(OutputFormats, TellTimesWithinASecondApartWhereTheyAreASeriesOfLines) {
    Report report = reportWith({fan()});
    report.time += std::chrono::milliseconds(250);
    const FormatSettings settings{.isSeries = true, .precision = TimePrecision::milliseconds};
    for (const std::string_view format : {"csv", "jsonl"}) {
        EXPECT_THAT(written(format, report, settings), HasSubstr("2026-03-01T14:00:00.250Z"));
        EXPECT_THAT(written(format, report, {.isSeries = true}), HasSubstr("2026-03-01T14:00:00Z"));
    }
}

TEST(CsvFormat, TellsColumnsOfOneNameApart) {
    SMCReading other = fan();
    other.key = "F1Ac";
    const std::string output = written("csv", reportWith({fan(), other}), {.isSeries = true});
    EXPECT_TRUE(output.starts_with("time,Fan 0 F0Ac (RPM),Fan 0 F1Ac (RPM)\n")) << output;
}

TEST(OpenMetricsFormat, HasAFamilyForEveryUnitInBaseUnits) {
    const SMCReading charge =
        numberReading("BAT0/charge_now", "Battery Charge", SMCCategory::battery, 1000, "1000", "mAh");
    EXPECT_EQ(
        written("openmetrics", reportWith({temperature(), charge, fan()})),
        "# TYPE kelvinbar_charge_coulombs gauge\n"
        "# UNIT kelvinbar_charge_coulombs coulombs\n"
        "# HELP kelvinbar_charge_coulombs Readings in coulombs\n"
        "kelvinbar_charge_coulombs{key=\"BAT0/charge_now\",name=\"Battery Charge\",category=\"Battery\","
        "chip=\"BAT0\"} 3600\n"
        "# TYPE kelvinbar_fan_speed_rpm gauge\n"
        "# UNIT kelvinbar_fan_speed_rpm rpm\n"
        "# HELP kelvinbar_fan_speed_rpm Readings in rpm\n"
        "kelvinbar_fan_speed_rpm{key=\"F0Ac\",name=\"Fan 0\",category=\"Fans\"} 1200\n"
        "# TYPE kelvinbar_temperature_celsius gauge\n"
        "# UNIT kelvinbar_temperature_celsius celsius\n"
        "# HELP kelvinbar_temperature_celsius Readings in celsius\n"
        "kelvinbar_temperature_celsius{key=\"k10temp-pci-00c3/temp1\",name=\"CPU Tctl\",category=\"CPU\","
        "chip=\"k10temp-pci-00c3\"} 61.25\n"
        "# EOF\n");
}

TEST(OpenMetricsFormat, HasNumbersWithoutAUnitAndTextsInFamiliesOfTheirOwn) {
    const SMCReading count = numberReading("BNum", "Battery Count", SMCCategory::battery, 2, "2", "");
    const std::string output = written("openmetrics", reportWith({count, text()}));
    EXPECT_THAT(output,
                HasSubstr("\nkelvinbar_value{key=\"BNum\",name=\"Battery Count\",category=\"Battery\"} 2\n"));
    EXPECT_THAT(output, HasSubstr("\nkelvinbar_text_info{key=\"BAT0/status\",name=\"Battery\","
                                  "category=\"Battery\",chip=\"BAT0\",value=\"Charging\"} 1\n"));
    EXPECT_THAT(output, Not(HasSubstr("# UNIT")));
}

TEST(OpenMetricsFormat, EscapesLabels) {
    SMCReading reading = fan();
    reading.name = R"(a\b"c)";
    EXPECT_THAT(written("openmetrics", reportWith({reading})), HasSubstr(R"(name="a\\b\"c")"));
}

TEST(TableFormat, AlignsNamesAndValuesInTheSectionsOfThePanel) {
    EXPECT_EQ(written("table", reportWith({text(), fan(), temperature()})),
              "CPU\n"
              "  CPU Tctl    61.25°  k10temp-pci-00c3/temp1\n"
              "\nFANS\n"
              "  Fan 0     1200 rpm  F0Ac\n"
              "\nPOWER / BATTERY\n"
              "  Battery   Charging  BAT0/status\n");
}

TEST(TableFormat, KeepsTheUsersOrderWithinEachSection) {
    const auto core = numberReading("b", "Core 1", SMCCategory::cpu, 50, "50", "°C");
    const auto package = numberReading("a", "Package", SMCCategory::cpu, 40, "40", "°C");
    const Report report = reportWith({fan(), core, package});
    EXPECT_EQ(written("table", report, {.isOrdered = true}), "CPU\n"
                                                             "  Core 1        50°  b\n"
                                                             "  Package       40°  a\n"
                                                             "\nFANS\n"
                                                             "  Fan 0    1200 rpm  F0Ac\n");
    EXPECT_THAT(written("table", report), HasSubstr("a\n  Core 1 "));
}

TEST(TableFormat, ShowsLastWhatThePanelHasNoSectionFor) {
    SMCReading other = fan();
    other.category = SMCCategory::unknown;
    EXPECT_TRUE(written("table", reportWith({other, temperature()}))
                    .ends_with("\nOTHER\n  Fan 0     1200 rpm  F0Ac\n"));
}

TEST(TableFormat, IsColouredOnlyWhenAsked) {
    const Report report = reportWith({fan()});
    EXPECT_EQ(written("table", report, {.isTerminal = true, .isColoured = true}),
              "\x1b[1mFANS\x1b[0m\n  Fan 0  1200 rpm  \x1b[2mF0Ac\x1b[0m\n");
    EXPECT_THAT(written("table", report, {.isTerminal = true}), Not(HasSubstr("\x1b")));
}

TEST(TableFormat, HasTheTimeAboveItInASeries) {
    EXPECT_TRUE(written("table", reportWith({fan()}), {.isSeries = true})
                    .starts_with("2026-03-01T14:00:00Z\n\nFANS\n"));
}

TEST(WaybarFormat, HasTheTitleTheToolTipAndAClass) {
    EXPECT_EQ(written("waybar", reportWith({temperature(), fan()})),
              "{\"text\":\"61.25°  1200rpm\",\"tooltip\":\"Kelvinbar • k10temp-pci-00c3/temp1 • CPU Tctl: "
              "61.25 °C  |  F0Ac • Fan 0: 1200 RPM\",\"class\":\"readings\"}\n");
}

TEST(WaybarFormat, EscapesMarkup) {
    SMCReading reading = fan();
    reading.name = "<b>&";
    EXPECT_THAT(written("waybar", reportWith({reading})), HasSubstr("&lt;b&gt;&amp;:"));
}

TEST(WaybarFormat, HasAnotherClassWithoutReadings) {
    EXPECT_THAT(written("waybar", reportWith({})), HasSubstr("{\"text\":\"\","));
    EXPECT_THAT(written("waybar", reportWith({})), HasSubstr("\"class\":\"empty\"}"));
}

} // namespace
} // namespace kelvinbar::output_formats_test
