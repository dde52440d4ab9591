#include "machines/replay/SnapshotParser.h"

#include "smc/SMCKeyText.h"
#include "tests/fakes/RawReadingText.h"
#include "tests/machines/replay/Exporting.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::snapshot_parser_test {

namespace {

constexpr std::string_view head =
    "Kelvinbar snapshot\nGenerated: 2026-03-01T14:05:09Z\nActive keys: 2\n\n"; // four lines
constexpr std::string_view goodLine = "TC0P\tsp78\tCPU Proximity\t40.50 °C\tRAW=2880";
constexpr std::string_view otherGoodLine = "TC1C\tsp78\tCore 1\t50 °C\tRAW=3200";

std::string joined(std::initializer_list<std::string_view> lines, std::string_view lineEnd = "\n") {
    std::string text;
    for (const std::string_view line : lines) text.append(line).append(lineEnd);
    return text;
}

std::vector<std::string> keysOf(const ParsedSnapshot& parsed) {
    std::vector<std::string> keys;
    for (const RecordedKey& key : parsed.machine.keys) keys.push_back(fourCharString(key.code));
    return keys;
}

using Keys = std::vector<std::string>;
using Numbers = std::vector<std::size_t>;

const Keys bothKeys{"TC0P", "TC1C"};

TEST(SnapshotParser, ReadsKeysTypesAndBytesInTheOrderOfTheText) {
    const ParsedSnapshot parsed = parseSnapshot(std::string(head).append(
        joined({otherGoodLine, goodLine, "REV \tch8*\tSMC Revision\t2.4\tRAW=322E34"})));
    EXPECT_TRUE(parsed.problems.empty());
    EXPECT_EQ(keysOf(parsed), (Keys{"TC1C", "TC0P", "REV "}));
    EXPECT_EQ(parsed.machine.usedLines, 3U);
    EXPECT_EQ(parsed.machine.keys[1].dataType, packedSMCKey("sp78"));
    EXPECT_EQ(parsed.machine.keys[1].bytes, (std::vector<std::uint8_t>{0x28, 0x80}));
    EXPECT_EQ(parsed.machine.keys[2].bytes, (std::vector<std::uint8_t>{0x32, 0x2E, 0x34}));
}

TEST(SnapshotParser, ReadsWhenTheSnapshotWasTaken) {
    const auto time = std::chrono::sys_days(std::chrono::year(2026) / 3 / 1) + std::chrono::hours(14) +
                      std::chrono::minutes(5) + std::chrono::seconds(9);
    const std::string later = "Generated: 2027-03-01T14:05:09Z";
    EXPECT_EQ(parseSnapshot(head).machine.time, time);
    EXPECT_EQ(parseSnapshot(std::string(head) + later).machine.time, time);
    EXPECT_EQ(parseSnapshot("Generated:  2026-03-01T14:05:09Z \r\n").machine.time, time);
    for (const std::string_view text : {"", "Generated: TIME", "Generated:", "TC0P\tsp78\t\t\tRAW=2880"}) {
        EXPECT_EQ(parseSnapshot(text).machine.time, std::nullopt) << text;
    }
}

TEST(SnapshotParser, GivesNothingForAnEmptyText) {
    for (const std::string_view text : {"", "\n", "\r\n\r\n", " \t \n", "\xEF\xBB\xBF"}) {
        const ParsedSnapshot parsed = parseSnapshot(text);
        EXPECT_EQ(parsed.machine.usedLines, 0U);
        EXPECT_TRUE(parsed.problems.empty());
    }
}

TEST(SnapshotParser, GivesNothingForAHeaderAlone) {
    const ParsedSnapshot parsed = parseSnapshot(head);
    EXPECT_EQ(parsed.machine.usedLines, 0U);
    EXPECT_TRUE(parsed.problems.empty());
}

TEST(SnapshotParser, ReportsEveryKindOfUnusableLineWithItsNumberAndUsesTheRest) {
    const std::vector<std::string> unusable{
        "hello",
        "TC2C",
        "RAW=2880",
        "\tRAW=2880",
        "TC2C\tRAW=2880",
        "TC2C\tsp78",
        "TC2C\tsp78\tCore 2\t40.50 °C",
        "TC2C\tsp78\tCore 2\t40.50 °C\t2880",
        "TC2C\tsp78\tCore 2\t40.50 °C\tRAW",
        "TC2C\tsp78\tCore 2\t40.50 °C\traw=2880",
        "TC2C sp78 Core 2 40.50 °C RAW=2880",
        "\tsp78\tCore 2\t40.50 °C\tRAW=2880",
        "TC2\tsp78\tCore 2\t40.50 °C\tRAW=2880",
        "TC2CX\tsp78\tCore 2\t40.50 °C\tRAW=2880",
        "TC2\x1F\tsp78\tCore 2\t40.50 °C\tRAW=2880",
        "TC2\x7F\tsp78\tCore 2\t40.50 °C\tRAW=2880",
        "TCé\tsp78\tCore 2\t40.50 °C\tRAW=2880",
        "TC2é\tsp78\tCore 2\t40.50 °C\tRAW=2880",
        "TC2C\tsp78x\tCore 2\t40.50 °C\tRAW=2880",
        "TC2C\tspécé\tCore 2\t40.50 °C\tRAW=2880",
        "TC2C\tsp78\tCore 2\t40.50 °C\tRAW=",
        "TC2C\tsp78\tCore 2\t40.50 °C\tRAW=2",
        "TC2C\tsp78\tCore 2\t40.50 °C\tRAW=288",
        "TC2C\tsp78\tCore 2\t40.50 °C\tRAW=28G0",
        "TC2C\tsp78\tCore 2\t40.50 °C\tRAW=28 80",
        "TC2C\tsp78\tCore 2\t40.50 °C\tRAW=0x2880",
        "TC2C\tsp78\tCore 2\t40.50 °C\tRAW=-288",
        "TC2C\tsp78\tCore 2\t40.50 °C\tRAW=é",
        "TC2C\thex_\tCore 2\t0\tRAW=" + std::string(66, '0'),
        "TC0P\tsp78\tCPU Proximity\t40.50 °C\tRAW=0000",
        "FAN0\tioreg\tCPU Fan\t\tRAW=5AA",
        "FAN0\tioreg\tCPU Fan\tRPM\tRAW=5AA",
        "FAN0\tioreg\tCPU Fan\t30001 RPM\tRAW=7531",
        "FAN0\tioreg\tCPU Fan\t-1 RPM\tRAW=1",
        "FAN0\tioreg\tCPU Fan\t1e9 RPM\tRAW=3B9ACA00",
        "FAN0\tioreg\tCPU Fan\t30000.5 RPM\tRAW=7530",
        "FAN0\tioreg\t\t1450 RPM\tRAW=5AA",     // no name
        "zzzz\tioreg\tPump\t1450 RPM\tRAW=5AA", // not in the catalogue
        "N???\tnative\tSomething\t1\tRAW=1",
        "NCOR\tnative\tActive CPU Cores\tmany\tRAW=many",
        "NRAM\tnative\tPhysical Memory\t16.0 GB\tRAW=much",
        "NRAM\tnative\tPhysical Memory\t16.0 GB\tRAW=",
        "NRAM\tnative\tPhysical Memory\t16.0 GB\tRAW=-1",
        "NRAM\tnative\tPhysical Memory\t16.0 GB\tRAW=18446744073709551616",
    };
    for (const std::string& line : unusable) {
        SCOPED_TRACE(line);
        const ReplayResult replay =
            replayed(std::string(head).append(joined({goodLine, line, otherGoodLine})));
        EXPECT_EQ(lineNumbers(replay.problems), Numbers{6});
        for (const LineProblem& problem : replay.problems) EXPECT_FALSE(problem.reason.empty());
        ASSERT_TRUE(replay.machine);
        EXPECT_EQ(exportedText(*replay.machine),
                  std::string(head) + std::string(goodLine) + "\n" + std::string(otherGoodLine));
    }
}

TEST(SnapshotParser, ReportsAFanWhoseSpeedIsNoNumber) {
    for (const std::string_view speed : {"n/a RPM", "fast RPM", "n/a", "inf RPM", "nan RPM", "— RPM", "."}) {
        SCOPED_TRACE(speed);
        const std::string fan = "FAN0\tioreg\tCPU Fan\t" + std::string(speed).append("\tRAW=5AA");
        const ReplayResult replay = replayed(std::string(head).append(joined({goodLine, fan})));
        EXPECT_EQ(lineNumbers(replay.problems), Numbers{6});
    }
}

TEST(SnapshotParser, ReportsAFanWhoseSpeedIsANumberOnlyAtItsFront) {
    for (const std::string_view speed : {"14x50 RPM", "14 50 RPM", "1450,5 RPM", "1450 RPM RPM"}) {
        SCOPED_TRACE(speed);
        const std::string fan = "FAN0\tioreg\tCPU Fan\t" + std::string(speed).append("\tRAW=5AA");
        const ReplayResult replay = replayed(std::string(head).append(joined({goodLine, fan})));
        EXPECT_EQ(lineNumbers(replay.problems), Numbers{6});
    }
}

TEST(SnapshotParser, ReportsAProcessorModelWithoutText) {
    const ReplayResult replay =
        replayed(joined({"NCPU\tnative\tCPU Model\t\tRAW=", "NARC\tnative\tA\tB\tRAW=B"}));
    EXPECT_EQ(lineNumbers(replay.problems), Numbers{1});
}

TEST(SnapshotParser, ReportsProblemsInTheOrderOfTheLines) {
    const ReplayResult replay = replayed(
        joined({"FAN0\tioreg\t\t1450 RPM\tRAW=5AA", "junk", goodLine, "zzzz\tioreg\tno\t1 RPM\tRAW=1",
                "TC2C\tsp78\t\t\tRAW=2", "FAN1\tioreg\tCPU Fan\t40000 RPM\tRAW=9C40"}));
    EXPECT_EQ(lineNumbers(replay.problems), (Numbers{1, 2, 4, 5, 6}));
}

TEST(SnapshotParser, UsesTheFirstOfRepeatedLines) {
    const ReplayResult replay = replayed(joined({
        "TC0P\tsp78\t\t\tRAW=2880",
        "TC0P\tsp78\t\t\tRAW=3200",
        "TC0p\tsp78\t\t\tRAW=3C00",
        "FAN0\tioreg\tCPU Fan\t900 RPM\tRAW=384",
        "FAN0\tioreg\tRear Fan\t901 RPM\tRAW=385",
        "TC0P\tsp78\t\t\tRAW=2880",
    }));
    EXPECT_EQ(lineNumbers(replay.problems), (Numbers{2, 5, 6}));
    ASSERT_TRUE(replay.machine);
    EXPECT_EQ(exportedText(*replay.machine), std::string(exportedHead)
                                                 .append("3\n")
                                                 .append("\nFAN0\tioreg\tCPU Fan\t900 RPM\tRAW=384")
                                                 .append("\nTC0P\tsp78\tCPU Proximity\t40.50 °C\tRAW=2880")
                                                 .append("\nTC0p\tsp78\tCPU Package\t60 °C\tRAW=3C00"));
}

TEST(SnapshotParser, UsesTheFirstOfRepeatedFacts) {
    const ParsedSnapshot parsed = parseSnapshot(joined({
        "NCOR\tnative\tActive CPU Cores\t8\tRAW=8.0",
        "NCOR\tnative\tActive CPU Cores\t4\tRAW=4.0",
    }));
    EXPECT_EQ(lineNumbers(parsed.problems), Numbers{2});
    EXPECT_EQ(parsed.machine.facts.activeProcessors, 8);
}

TEST(SnapshotParser, TakesAKeyFromTheControllerAndFromTheRegistry) {
    const ReplayResult replay =
        replayed(joined({"F0Ac\tfpe2\tFan 0\t2156 RPM\tRAW=21B0", "F0Ac\tioreg\tFan 0\t900 RPM\tRAW=384"}));
    EXPECT_TRUE(replay.problems.empty());
    ASSERT_TRUE(replay.machine);
    EXPECT_TRUE(exportedText(*replay.machine).ends_with("1\n\nF0Ac\tfpe2\tFan 0\t2156 RPM\tRAW=21B0"));
}

TEST(SnapshotParser, DoesNotLetAnUnusableKeyLineKeepALaterOneOut) {
    const ReplayResult replay = replayed(joined({"TC0P\tsp78\t\t\tRAW=288", "TC0P\tsp78\t\t\tRAW=2880"}));
    EXPECT_EQ(lineNumbers(replay.problems), Numbers{1});
    ASSERT_TRUE(replay.machine);
    EXPECT_TRUE(exportedText(*replay.machine).ends_with("RAW=2880"));
}

TEST(SnapshotParser, DoesNotLetAnUnusableFanLineKeepALaterOneOut) {
    for (const std::string_view unusable :
         {"FAN0\tioreg\tCPU Fan\t\tRAW=5AA", "FAN0\tioreg\tCPU Fan\t30001 RPM\tRAW=7531",
          "FAN0\tioreg\t\t1450 RPM\tRAW=5AA"}) {
        SCOPED_TRACE(unusable);
        const ReplayResult replay = replayed(joined({unusable, "FAN0\tioreg\tCPU Fan\t900 RPM\tRAW=384"}));
        EXPECT_EQ(lineNumbers(replay.problems), Numbers{1});
        ASSERT_TRUE(replay.machine);
        EXPECT_TRUE(exportedText(*replay.machine).ends_with("\nFAN0\tioreg\tCPU Fan\t900 RPM\tRAW=384"));
    }
}

TEST(SnapshotParser, DoesNotLetAnUnusableFactLineKeepALaterOneOut) {
    const ParsedSnapshot parsed = parseSnapshot(joined({
        "NCOR\tnative\tActive CPU Cores\tmany\tRAW=many",
        "NCOR\tnative\tActive CPU Cores\t4\tRAW=4.0",
        "NRAM\tnative\tPhysical Memory\t16.0 GB\tRAW=",
        "NRAM\tnative\tPhysical Memory\t16.0 GB\tRAW=17179869184",
    }));
    EXPECT_EQ(lineNumbers(parsed.problems), (Numbers{1, 3}));
    EXPECT_EQ(parsed.machine.facts.activeProcessors, 4);
    EXPECT_EQ(parsed.machine.facts.physicalMemory, 17179869184U);
}

TEST(SnapshotParser, PassesOverTextBeforeTheHeader) {
    const std::string report =
        joined({"My fans are loud. Here it is:", "", "TC9C\tsp78\tCore 9\t1 °C\tRAW=0100"});
    const ParsedSnapshot parsed = parseSnapshot(report + std::string(head) + joined({goodLine, "junk"}));
    EXPECT_EQ(keysOf(parsed), Keys{"TC0P"});
    EXPECT_EQ(lineNumbers(parsed.problems), Numbers{9}); // counted from the front of the whole text
}

TEST(SnapshotParser, KnowsTheHeaderWithBlanksAroundIt) {
    for (const std::string_view title :
         {"Kelvinbar snapshot ", "Kelvinbar snapshot\t", "  Kelvinbar snapshot"}) {
        SCOPED_TRACE(title);
        const ParsedSnapshot parsed = parseSnapshot(joined({"junk before it", title, goodLine}));
        EXPECT_TRUE(parsed.problems.empty());
        EXPECT_EQ(keysOf(parsed), Keys{"TC0P"});
    }
}

TEST(SnapshotParser, NeedsNoHeader) {
    const ParsedSnapshot parsed = parseSnapshot(joined({goodLine, "junk", otherGoodLine}));
    EXPECT_EQ(keysOf(parsed), bothKeys);
    EXPECT_EQ(lineNumbers(parsed.problems), Numbers{2});
}

TEST(SnapshotParser, NeedsNoTitleAboveTheOtherHeaderLines) {
    const ParsedSnapshot parsed =
        parseSnapshot(joined({"Generated: 2026-03-01T14:05:09Z", "Active keys: 7", "", goodLine}));
    EXPECT_EQ(keysOf(parsed), Keys{"TC0P"});
    EXPECT_TRUE(parsed.problems.empty());
}

TEST(SnapshotParser, NeedsNoRightNumberOfKeysInTheHeader) {
    const ParsedSnapshot parsed =
        parseSnapshot(joined({"Kelvinbar snapshot", "Active keys: none", goodLine}));
    EXPECT_EQ(keysOf(parsed), Keys{"TC0P"});
    EXPECT_TRUE(parsed.problems.empty());
}

TEST(SnapshotParser, UsesTheKeysOfTwoSnapshotsInOneText) {
    const ParsedSnapshot parsed = parseSnapshot(std::string(head) + joined({goodLine}) + std::string(head) +
                                                joined({"TC0P\tsp78\t\t\tRAW=0000", otherGoodLine}));
    EXPECT_EQ(keysOf(parsed), bothKeys);
    EXPECT_EQ(parsed.machine.keys[0].bytes, (std::vector<std::uint8_t>{0x28, 0x80}));
    EXPECT_EQ(lineNumbers(parsed.problems), (Numbers{6, 10})); // the second title and the repeated key
}

TEST(SnapshotParser, PassesOverAByteOrderMark) {
    const std::string mark = "\xEF\xBB\xBF";
    const ParsedSnapshot withHeader = parseSnapshot(mark + std::string(head) + joined({goodLine}));
    EXPECT_EQ(keysOf(withHeader), Keys{"TC0P"});
    EXPECT_TRUE(withHeader.problems.empty());
    const ParsedSnapshot withoutHeader = parseSnapshot(mark + joined({goodLine}));
    EXPECT_EQ(keysOf(withoutHeader), Keys{"TC0P"});
    EXPECT_TRUE(withoutHeader.problems.empty());
}

TEST(SnapshotParser, TakesLineEndsOfCarriageReturnAndLineFeed) {
    const std::string text = joined({"Kelvinbar snapshot", "Generated: 2026-03-01T14:05:09Z",
                                     "Active keys: 4", "", "FAN0\tioreg\tCPU Fan\t900 RPM\tRAW=900 turns",
                                     "FAN1\tioreg\tRear Fan\t901 RPM\tRAW=385", goodLine, otherGoodLine},
                                    "\r\n");
    const ReplayResult replay = replayed(text);
    EXPECT_TRUE(replay.problems.empty());
    ASSERT_TRUE(replay.machine);
    EXPECT_EQ(
        exportedText(*replay.machine),
        std::string(exportedHead) +
            "4\n\nFAN0\tioreg\tCPU Fan\t900 RPM\tRAW=900 turns\nFAN1\tioreg\tRear Fan\t901 RPM\tRAW=385\n" +
            std::string(goodLine) + "\n" + std::string(otherGoodLine));
}

TEST(SnapshotParser, TakesFactsWithLineEndsOfCarriageReturnAndLineFeed) {
    const ParsedSnapshot parsed =
        parseSnapshot(joined({"Kelvinbar snapshot", "NCPU\tnative\tCPU Model\tModel1,1\tRAW=Model1,1",
                              "NRAM\tnative\tPhysical Memory\t16.0 GB\tRAW=17179869184",
                              "NTHR\tnative\tmacOS Thermal State\tFair\tRAW=Fair",
                              "NLPM\tnative\tLow Power Mode\tEnabled\tRAW=Enabled"},
                             "\r\n"));
    EXPECT_TRUE(parsed.problems.empty());
    EXPECT_EQ(parsed.machine.facts.processorModel, "Model1,1");
    EXPECT_EQ(parsed.machine.facts.physicalMemory, 17179869184U);
    EXPECT_EQ(parsed.machine.facts.thermalState, 1);
    EXPECT_TRUE(parsed.machine.facts.lowPowerMode);
}

TEST(SnapshotParser, BearsBlankLinesAnywhere) {
    const ParsedSnapshot parsed =
        parseSnapshot(joined({"", "  ", "Kelvinbar snapshot", "", "", "Active keys: 2", "\t\t", goodLine, "",
                              "\u00A0\u3000", "\r", otherGoodLine, ""}));
    EXPECT_TRUE(parsed.problems.empty());
    EXPECT_EQ(keysOf(parsed), bothKeys);
}

TEST(SnapshotParser, BearsWhiteSpaceAfterALine) {
    for (const std::string_view blank : {" ", "\t", "   ", "\r\r", " \t\r", "\u00A0"}) {
        SCOPED_TRACE(blank);
        const std::string text = joined({"Kelvinbar snapshot", "Active keys: 4", goodLine,
                                         "FAN0\tioreg\tCPU Fan\t900 RPM\tRAW=384",
                                         "NRAM\tnative\tPhysical Memory\t16.0 GB\tRAW=17179869184"},
                                        std::string(blank).append("\n"));
        const ParsedSnapshot parsed = parseSnapshot(text);
        EXPECT_TRUE(parsed.problems.empty());
        EXPECT_EQ(keysOf(parsed), Keys{"TC0P"});
        EXPECT_EQ(parsed.machine.facts.physicalMemory, 17179869184U);
        std::string fan = "FAN0\tioreg\tCPU Fan\t900 RPM\tRAW=384";
        fan.append(blank.substr(0, blank.find('\r'))); // a raw text may end with spaces
        EXPECT_EQ(exportedReplay(text),
                  std::string(exportedHead).append("2\n\n").append(fan).append("\n").append(goodLine));
    }
}

TEST(SnapshotParser, BearsTheLossOfWhiteSpaceAtTheEndOfAFansRawText) {
    const std::string line = "FAN0\tioreg\tCPU Fan\t900 RPM\tRAW=900"; // was "900 "
    const ReplayResult replay = replayed(line);
    EXPECT_TRUE(replay.problems.empty());
    ASSERT_TRUE(replay.machine);
    EXPECT_TRUE(exportedText(*replay.machine).ends_with("\n" + line));
}

TEST(SnapshotParser, NeedsNoLineFeedAtTheEnd) {
    const ParsedSnapshot parsed = parseSnapshot(std::string(head) + std::string(goodLine));
    EXPECT_EQ(keysOf(parsed), Keys{"TC0P"});
    EXPECT_EQ(parsed.machine.keys[0].bytes, (std::vector<std::uint8_t>{0x28, 0x80}));
}

TEST(SnapshotParser, Takes32BytesAndNotMore) {
    const std::string hex(64, 'A');
    const ParsedSnapshot parsed =
        parseSnapshot(joined({"TC0P\thex_\t\t\tRAW=" + hex, "TC1C\thex_\t\t\tRAW=" + hex + "AA"}));
    EXPECT_EQ(keysOf(parsed), Keys{"TC0P"});
    EXPECT_EQ(parsed.machine.keys[0].bytes, std::vector<std::uint8_t>(32, 0xAA));
    EXPECT_EQ(lineNumbers(parsed.problems), Numbers{2});
}

TEST(SnapshotParser, TakesHexDigitsOfBothCases) {
    const ParsedSnapshot parsed = parseSnapshot("TC0P\thex_\t\t\tRAW=abcdefABCDEF0189");
    EXPECT_TRUE(parsed.problems.empty());
    ASSERT_EQ(parsed.machine.keys.size(), 1U);
    EXPECT_EQ(parsed.machine.keys[0].bytes,
              (std::vector<std::uint8_t>{0xAB, 0xCD, 0xEF, 0xAB, 0xCD, 0xEF, 0x01, 0x89}));
    EXPECT_TRUE(exportedReplay("TC0P\thex_\t\t\tRAW=abcdef").ends_with("\tABCDEF °C\tRAW=ABCDEF"));
}

TEST(SnapshotParser, IgnoresNameAndValueOfAKey) {
    for (const std::string_view columns :
         {"\t", "a name\t", "\ta value", "wrong\twrong", "a\tb\tc\td", "RAW=12\tRAW=34", "RAW=\t", "\t\t\t",
          "ioreg\tnative", "\"quoted\"\t'it'", "\xFF\xFE\t\x01"}) {
        SCOPED_TRACE(columns);
        EXPECT_EQ(exportedReplay("TC0P\tsp78\t" + std::string(columns).append("\tRAW=2880")),
                  std::string(exportedHead) + "1\n\n" + std::string(goodLine));
    }
}

TEST(SnapshotParser, PadsTypesWithZeroBytes) {
    const ParsedSnapshot parsed = parseSnapshot(joined({
        "TC0P\tui8\t\t\tRAW=28",
        "TC1C\t\t\t\tRAW=28",
        "TC2C\ta\t\t\tRAW=28",
        "TC3C\tui8 \t\t\tRAW=28",
        "TC4C\té\t\t\tRAW=28",
        "TC5C\t€x\t\t\tRAW=28",
    }));
    EXPECT_TRUE(parsed.problems.empty());
    std::vector<std::uint32_t> types;
    for (const RecordedKey& key : parsed.machine.keys) types.push_back(key.dataType);
    EXPECT_EQ(types,
              (std::vector<std::uint32_t>{0x75693800, 0, 0x61000000, 0x75693820, 0xC3A90000, 0xE282AC78}));
}

// Kernel sensors

TEST(SnapshotParser, HandsSensorsOnAsTheyWereRecorded) {
    const ParsedSnapshot parsed = parseSnapshot(joined({
        "k10temp-pci-00c3/temp1\tk10temp\tCPU Tctl\t45.88 °C\tRAW=45875",
        "amdgpu-pci-0300/fan1\tamdgpu\tGPU Fan\tasleep\tRAW=suspended",
        "BAT0/status\tbattery\tBattery Status\tNot charging\tRAW=Not charging",
        "BAT0/cycle_count\tbattery\tBattery Cycles\t112\tRAW=112",
    }));
    EXPECT_TRUE(parsed.problems.empty());
    EXPECT_EQ(parsed.machine.usedLines, 4U);
    const RawReading temperature{.key = "k10temp-pci-00c3/temp1",
                                 .type = "k10temp",
                                 .value = "45.88",
                                 .numericValue = 45.88,
                                 .raw = "45875",
                                 .name = "CPU Tctl",
                                 .category = "CPU",
                                 .unit = "°C"};
    const RawReading fan{.key = "amdgpu-pci-0300/fan1",
                         .type = "amdgpu",
                         .value = "asleep",
                         .numericValue = std::nullopt,
                         .raw = "suspended",
                         .name = "GPU Fan",
                         .category = "Fans",
                         .unit = ""};
    const RawReading status{.key = "BAT0/status",
                            .type = "battery",
                            .value = "Not charging",
                            .numericValue = std::nullopt,
                            .raw = "Not charging",
                            .name = "Battery Status",
                            .category = "Battery",
                            .unit = ""};
    const RawReading cycles{.key = "BAT0/cycle_count",
                            .type = "battery",
                            .value = "112",
                            .numericValue = 112,
                            .raw = "112",
                            .name = "Battery Cycles",
                            .category = "Battery",
                            .unit = ""};
    EXPECT_EQ(parsed.machine.sensors, (std::vector<RawReading>{temperature, fan, status, cycles}));
}

TEST(SnapshotParser, BlanksAroundAValueDoNotChangeItsUnit) {
    const ParsedSnapshot parsed = parseSnapshot("acpitz/temp1\tacpitz\tBoard\t 41.00 °C \tRAW=41000\n"
                                                "BAT0/energy_now\tbattery\tCharge\t 1x\tRAW=1");
    ASSERT_EQ(parsed.machine.sensors.size(), 2U);
    EXPECT_EQ(parsed.machine.sensors[0].value, "41.00");
    EXPECT_EQ(parsed.machine.sensors[0].unit, "°C");
    EXPECT_EQ(parsed.machine.sensors[1].value, "1x");
    EXPECT_EQ(parsed.machine.sensors[1].unit, "mAh");
}

TEST(SnapshotParser, TakesAUnitOffAValueAsOftenAsItIsThere) {
    const ParsedSnapshot parsed = parseSnapshot("acpitz/temp1\tacpitz\tBoard\t41 °C°C °C\tRAW=41000");
    ASSERT_EQ(parsed.machine.sensors.size(), 1U);
    EXPECT_EQ(parsed.machine.sensors[0].value, "41");
    EXPECT_EQ(parsed.machine.sensors[0].numericValue, 41);
}

TEST(SnapshotParser, ReportsSensorsThatItCannotUseWithTheirNumbers) {
    for (const std::string_view line :
         {"k10temp-pci-00c3/temp1\tk10temp\t\t45.88 °C\tRAW=45875",
          "k10temp-pci-00c3/temp1\tk10temp\tCPU\t\tRAW=1", "k10temp-pci-00c3/temp1\tk10temp\tRAW=1",
          "k10temp-pci-00c3/nothing\tk10temp\tCPU\t45 °C\tRAW=45000",
          "/temp1\tk10temp\tCPU\t45 °C\tRAW=45000", "k10temp-pci-00c3/\tk10temp\tCPU\t45 °C\tRAW=45000"}) {
        SCOPED_TRACE(line);
        const ParsedSnapshot parsed = parseSnapshot(joined({goodLine, line, otherGoodLine}));
        EXPECT_EQ(lineNumbers(parsed.problems), Numbers{2});
        EXPECT_TRUE(parsed.machine.sensors.empty());
    }
}

TEST(SnapshotParser, UsesTheFirstOfRepeatedSensors) {
    const ParsedSnapshot parsed = parseSnapshot(joined({
        "k10temp-pci-00c3/temp1\tk10temp\t\t45 °C\tRAW=45000",
        "k10temp-pci-00c3/temp1\tk10temp\tCPU Tctl\t46 °C\tRAW=46000",
        "k10temp-pci-00c3/temp1\tk10temp\tCPU Tctl\t47 °C\tRAW=47000",
    }));
    EXPECT_EQ(lineNumbers(parsed.problems), (Numbers{1, 3}));
    ASSERT_EQ(parsed.machine.sensors.size(), 1U);
    EXPECT_EQ(parsed.machine.sensors[0].raw, "46000");
}

TEST(SnapshotParser, ReadsFactsOfTheSystem) {
    const ParsedSnapshot parsed = parseSnapshot(joined({
        "NARC\tnative\tArchitecture\tApple Silicon\tRAW=Apple Silicon",
        "NCOR\tnative\tActive CPU Cores\t10\tRAW=10.0",
        "NCPU\tnative\tCPU Model\tExample 9\tRAW=Example 9",
        "NLPM\tnative\tLow Power Mode\tEnabled\tRAW=Enabled",
        "NRAM\tnative\tPhysical Memory\t16.0 GB\tRAW=17179869184",
        "NTHR\tnative\tmacOS Thermal State\tCritical\tRAW=Critical",
    }));
    EXPECT_TRUE(parsed.problems.empty());
    EXPECT_EQ(parsed.machine.usedLines, 6U);
    EXPECT_TRUE(parsed.machine.keys.empty());
    EXPECT_EQ(parsed.machine.facts.processorModel, "Example 9");
    EXPECT_EQ(parsed.machine.facts.activeProcessors, 10);
    EXPECT_EQ(parsed.machine.facts.physicalMemory, 17179869184U);
    EXPECT_EQ(parsed.machine.facts.thermalState, 3);
    EXPECT_TRUE(parsed.machine.facts.lowPowerMode);
}

TEST(SnapshotParser, EndsOnManyJunkLines) {
    constexpr std::size_t count = 200'000;
    for (const std::string_view line : {"x\n", "\tRAW=\n", "a\tb\tRAW=\n", "TC0P\tsp78\t\t\tRAW=2880\n"}) {
        SCOPED_TRACE(line);
        std::string text;
        for (std::size_t number = 0; number < count; ++number) text.append(line);
        const ParsedSnapshot parsed = parseSnapshot(text);
        EXPECT_EQ(parsed.problems.size() + parsed.machine.usedLines, count);
        EXPECT_EQ(parsed.problems.back().lineNumber, count);
    }
}

TEST(SnapshotParser, EndsOnManyFanLines) {
    constexpr std::size_t count = 50'000;
    std::string text;
    for (std::size_t number = 0; number < count; ++number) {
        const char digit = static_cast<char>('0' + number % 4);
        text.append("F").append(1, digit).append("Ac\tioreg\tFan\t900 RPM\tRAW=384\n");
    }
    const ReplayResult replay = replayed(text);
    EXPECT_EQ(replay.problems.size(), count - 4) << "the first line of each key counts";
}

TEST(SnapshotParser, EndsOnOneLineOfManyMebibytes) {
    constexpr std::size_t length = std::size_t{4} * 1024 * 1024;
    for (const char filling : {'a', '\t', ' ', '\r', '\x80', '\xE2', '\0', '='}) {
        SCOPED_TRACE(static_cast<int>(filling));
        const ParsedSnapshot parsed = parseSnapshot(std::string(length, filling));
        EXPECT_EQ(parsed.machine.usedLines, 0U);
        EXPECT_LE(parsed.problems.size(), 1U);
    }
}

TEST(SnapshotParser, EndsOnAFieldOfManyMebibytes) {
    constexpr std::size_t length = std::size_t{2} * 1024 * 1024;
    const std::string digits(length, '1');
    const std::string fan = "fan" + digits;
    EXPECT_EQ(replayed("TC0P\tsp78\t\t\tRAW=" + digits).problems.size(), 1U);
    EXPECT_EQ(replayed(digits + "\tsp78\t\t\tRAW=2880").problems.size(), 1U);
    EXPECT_EQ(replayed("TC0P\t" + digits + "\t\t\tRAW=2880").problems.size(), 1U);
    EXPECT_EQ(replayed("FAN0\tioreg\tfan\t" + digits + " RPM\tRAW=384").problems.size(), 1U);
    EXPECT_EQ(replayed("NCOR\tnative\t\t\tRAW=" + digits).problems.size(), 1U);
    EXPECT_EQ(replayed("NRAM\tnative\t\t\tRAW=" + digits).problems.size(), 1U);
    EXPECT_TRUE(replayed("TC0P\tsp78\t" + digits + "\t" + digits + "\tRAW=2880").problems.empty());
    EXPECT_TRUE(
        exportedReplay("FAN0\tioreg\t" + fan + "\t900 RPM\tRAW=384").ends_with(fan + "\t900 RPM\tRAW=384"));
    EXPECT_TRUE(exportedReplay("FAN0\tioreg\tfan\t900 RPM\tRAW=900 " + fan).ends_with("RAW=900 " + fan));
    EXPECT_TRUE(exportedReplay("NCPU\tnative\tCPU Model\t" + fan + "\tRAW=" + fan).find(fan) !=
                std::string::npos);
}

TEST(SnapshotParser, ReportsTextsThatAreNotWellFormedUtf8) {
    for (const std::string_view line : {"FAN0\tioreg\tL\xFC"
                                        "fter Fan\t900 RPM\tRAW=384",
                                        "nvme-pci-0100/temp1\tnvme\tNVMe Gr\xF6\xDF"
                                        "e\t40 °C\tRAW=40000",
                                        "NARC\tnative\tArchitecture\tx\xFF\tRAW=x\xFF"}) {
        EXPECT_EQ(lineNumbers(parseSnapshot(line).problems), std::vector<std::size_t>{1}) << line;
    }
}

} // namespace
} // namespace kelvinbar::snapshot_parser_test
