// Registries in every form that the fan walk accepts: exporting, replaying and exporting again yields the
// same snapshot.

#include "tests/fakes/FakeMachine.h"
#include "tests/machines/replay/Exporting.h"

#include <array>
#include <cstdint>
#include <limits>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::fan_round_trip_test {

namespace {

using fakes::FakeMachine;

/// Checks that the replay of `first` exports `first`.
void expectStable(const std::string& first) {
    const ReplayResult replay = replayed(first);
    EXPECT_EQ(lineNumbers(replay.problems), std::vector<std::size_t>()) << first;
    ASSERT_TRUE(replay.machine) << first;
    EXPECT_EQ(exportedText(*replay.machine), first);
}

/// The fan lines in the export of `machine`, after checking that its replay exports the same.
std::string stableFanLines(const FakeMachine& machine) {
    const std::string first = exportedText(machine.machine());
    expectStable(first);
    const std::size_t lines = first.find("\n\n");
    return lines == std::string::npos ? std::string() : first.substr(lines + 2);
}

Dictionary property(std::string_view name, const Value& value) {
    Dictionary properties;
    properties.set(name, value);
    return properties;
}

/// The line of one fan of a sensor driver whose property has this value.
std::string lineOf(const Value& value) {
    const FakeMachine machine;
    machine.registry->add("SMCSuperIO", "chip", property("CPU Fan", value));
    return stableFanLines(machine);
}

TEST(FanRoundTrip, KeepsNumbers) {
    EXPECT_EQ(lineOf(std::int64_t{0}), "FAN0\tioreg\tCPU Fan\t0 RPM\tRAW=0");
    EXPECT_EQ(lineOf(std::int64_t{1450}), "FAN0\tioreg\tCPU Fan\t1450 RPM\tRAW=5AA");
    EXPECT_EQ(lineOf(1450.0), "FAN0\tioreg\tCPU Fan\t1450 RPM\tRAW=5AA");
    EXPECT_EQ(lineOf(30000.0), "FAN0\tioreg\tCPU Fan\t30000 RPM\tRAW=7530");
}

TEST(FanRoundTrip, KeepsNumbersWithAFraction) {
    EXPECT_EQ(lineOf(1234.5), "FAN0\tioreg\tCPU Fan\t1235 RPM\tRAW=4D2");
    EXPECT_EQ(lineOf(1234.4999), "FAN0\tioreg\tCPU Fan\t1234 RPM\tRAW=4D2");
    EXPECT_EQ(lineOf(1234.996), "FAN0\tioreg\tCPU Fan\t1235 RPM\tRAW=4D2");
    EXPECT_EQ(lineOf(0.5), "FAN0\tioreg\tCPU Fan\t1 RPM\tRAW=0");
    EXPECT_EQ(lineOf(0.25), "FAN0\tioreg\tCPU Fan\t0 RPM\tRAW=0");
    EXPECT_EQ(lineOf(29999.5), "FAN0\tioreg\tCPU Fan\t30000 RPM\tRAW=752F");
}

TEST(FanRoundTrip, KeepsMinusZero) { EXPECT_EQ(lineOf(-0.0), "FAN0\tioreg\tCPU Fan\t-0 RPM\tRAW=0"); }

TEST(FanRoundTrip, KeepsData) {
    EXPECT_EQ(lineOf(Data{0xC8}), "FAN0\tioreg\tCPU Fan\t200 RPM\tRAW=C8");
    EXPECT_EQ(lineOf(Data{0x05}), "FAN0\tioreg\tCPU Fan\t5 RPM\tRAW=05");
    EXPECT_EQ(lineOf(Data{0x05, 0xDC}), "FAN0\tioreg\tCPU Fan\t1500 RPM\tRAW=05DC");
    EXPECT_EQ(lineOf(Data{0xDC, 0x05}), "FAN0\tioreg\tCPU Fan\t1500 RPM\tRAW=DC05");
    EXPECT_EQ(lineOf(Data{0x00, 0x00}), "FAN0\tioreg\tCPU Fan\t0 RPM\tRAW=0000");
    EXPECT_EQ(lineOf(Data{0x05, 0xDC, 0x01}), "FAN0\tioreg\tCPU Fan\t1500 RPM\tRAW=05DC01");
    EXPECT_EQ(lineOf(Data(40, 0x05)),
              "FAN0\tioreg\tCPU Fan\t1285 RPM\tRAW=" // 32 of the 40 bytes
              "0505050505050505050505050505050505050505050505050505050505050505");
}

TEST(FanRoundTrip, KeepsTexts) {
    EXPECT_EQ(lineOf("1450"), "FAN0\tioreg\tCPU Fan\t1450 RPM\tRAW=1450");
    EXPECT_EQ(lineOf("1450 RPM"), "FAN0\tioreg\tCPU Fan\t1450 RPM\tRAW=1450 RPM");
    EXPECT_EQ(lineOf("  1450.5 rpm "), "FAN0\tioreg\tCPU Fan\t1451 RPM\tRAW=  1450.5 rpm ");
    EXPECT_EQ(lineOf("0.3"), "FAN0\tioreg\tCPU Fan\t0 RPM\tRAW=0.3");
    EXPECT_EQ(lineOf("1.2e3"), "FAN0\tioreg\tCPU Fan\t1200 RPM\tRAW=1.2e3");
    EXPECT_EQ(lineOf("900\tthen 950"), "FAN0\tioreg\tCPU Fan\t900 RPM\tRAW=900\tthen 950");
    EXPECT_EQ(lineOf("900 об/мин"), "FAN0\tioreg\tCPU Fan\t900 RPM\tRAW=900 об/мин");
}

TEST(FanRoundTrip, TellsTextsFromNumbersAndDataThatLookLikeThem) {
    EXPECT_EQ(lineOf("10"), "FAN0\tioreg\tCPU Fan\t10 RPM\tRAW=10");
    EXPECT_EQ(lineOf(std::int64_t{16}), "FAN0\tioreg\tCPU Fan\t16 RPM\tRAW=10");
    EXPECT_EQ(lineOf(Data{0x10}), "FAN0\tioreg\tCPU Fan\t16 RPM\tRAW=10");
    EXPECT_EQ(lineOf("1500"), "FAN0\tioreg\tCPU Fan\t1500 RPM\tRAW=1500");
    EXPECT_EQ(lineOf(Data{0x15, 0x00}), "FAN0\tioreg\tCPU Fan\t5376 RPM\tRAW=1500");
    EXPECT_EQ(lineOf("05DC"), "FAN0\tioreg\tCPU Fan\t5 RPM\tRAW=05DC");
}

TEST(FanRoundTrip, KeepsTheNameOfAnyProperty) {
    for (const std::string_view name :
         {"fan", "RPM", "Tach", " fan ", "a fan with RAW=12", "fan\twith\ttabs", "fan\t", "Ventola più fané",
          "\u00A0fan\u3000", "1450 RPM", "FAN12", "FAN10 speed", "\"fan\"", "rpm, rpm; rpm"}) {
        SCOPED_TRACE(name);
        const FakeMachine machine;
        machine.registry->add("SMCSuperIO", "chip", property(name, std::int64_t{1450}));
        EXPECT_EQ(stableFanLines(machine), "FAN0\tioreg\t" + std::string(name).append("\t1450 RPM\tRAW=5AA"));
    }
}

TEST(FanRoundTrip, KeepsPropertiesThatAreNamedLikeAKey) {
    for (const std::string_view name :
         {"F0Ac", "F1Ac", "F2Ac", "F3Ac", "FAN0", "FAN3", "FAN7", "Fan1", "Fan9", "FanX", "Fan ", "Fan~"}) {
        SCOPED_TRACE(name);
        const FakeMachine machine;
        machine.registry->add("SMCSuperIO", "chip", property(name, std::int64_t{1450}));
        EXPECT_EQ(stableFanLines(machine), std::string(name).append("\tioreg\tFan 0\t1450 RPM\tRAW=5AA"));
    }
}

TEST(FanRoundTrip, KeepsTheNumberOfAFanAmongOthers) {
    const FakeMachine machine;
    machine.registry->add("SMCSuperIO", "chip",
                          Dictionary{{"CPU Fan", std::int64_t{900}},
                                     {"F2Ac", std::int64_t{1000}},
                                     {"Rear Fan", std::int64_t{1100}},
                                     {"FAN7", std::int64_t{1200}}});
    EXPECT_EQ(stableFanLines(machine), "F2Ac\tioreg\tFan 1\t1000 RPM\tRAW=3E8"
                                       "\nFAN0\tioreg\tCPU Fan\t900 RPM\tRAW=384"
                                       "\nFAN2\tioreg\tRear Fan\t1100 RPM\tRAW=44C"
                                       "\nFAN7\tioreg\tFan 3\t1200 RPM\tRAW=4B0");
}

TEST(FanRoundTrip, KeepsFansOfTheSameNameOnTwoEntries) {
    const FakeMachine machine;
    machine.registry->add("SMCSuperIO", "first", property("CPU Fan", std::int64_t{900}));
    machine.registry->add("SMCSuperIO", "second", property("CPU Fan", std::int64_t{900}));
    machine.registry->add("LPCSensors", "second", property("CPU Fan", 901.5));
    EXPECT_EQ(stableFanLines(machine), "FAN0\tioreg\tCPU Fan\t900 RPM\tRAW=384"
                                       "\nFAN1\tioreg\tCPU Fan\t900 RPM\tRAW=384"
                                       "\nFAN2\tioreg\tCPU Fan\t902 RPM\tRAW=385");
}

TEST(FanRoundTrip, KeepsFansOfEntriesThatAreNoSensorDriver) {
    const FakeMachine machine;
    machine.registry->add("IOPlatformDevice", "board",
                          Dictionary{{"CPU Fan", std::int64_t{800}}, {"FAN1", std::int64_t{1450}}});
    EXPECT_EQ(stableFanLines(machine), "FAN1\tioreg\tFan 0\t1450 RPM\tRAW=5AA");
}

TEST(FanRoundTrip, KeepsFansBeyondTheTenth) {
    const FakeMachine machine;
    Dictionary properties;
    for (int number = 0; number < 12; ++number) {
        properties.set("fan with number " + std::to_string(number), std::int64_t{1000 + number});
    }
    properties.set("F0Ac", std::int64_t{2000});
    machine.registry->add("SMCSuperIO", "chip", properties);
    const std::string lines = stableFanLines(machine);
    EXPECT_TRUE(lines.starts_with("F0Ac\tioreg\tFan 12\t2000 RPM\tRAW=7D0\nFAN0\t")) << lines;
    EXPECT_TRUE(lines.ends_with("\nFAN7\tioreg\tfan with number 7\t1007 RPM\tRAW=3EF")) << lines;
}

/// The walk completes the entry in which it reaches the limit.
TEST(FanRoundTrip, KeepsFansThatTheLastEntryAddsBeyondTheSixteenth) {
    const FakeMachine machine;
    for (int number = 0; number < 15; ++number) {
        machine.registry->add("SMCSuperIO", "chip " + std::to_string(number),
                              property("CPU Fan", std::int64_t{1000}));
    }
    Dictionary properties;
    for (const std::string_view name : {"rpm 1", "rpm 2", "F0Ac", "rpm 3", "Fan5", "FAN3"}) {
        properties.set(name, std::int64_t{2000});
    }
    machine.registry->add("SMCSuperIO", "chip 15", properties);
    machine.registry->add("SMCSuperIO", "chip 16", property("F1Ac", std::int64_t{2000}));
    const std::string lines = stableFanLines(machine);
    EXPECT_NE(lines.find("F0Ac\tioreg\tFan 17\t"), std::string::npos) << lines;
    EXPECT_NE(lines.find("Fan5\tioreg\tFan 19\t"), std::string::npos) << lines;
    EXPECT_EQ(lines.find("F1Ac"), std::string::npos) << lines;
}

TEST(FanRoundTrip, KeepsAFanWithAHighNumber) {
    for (const int others : {16, 62, 63, 64, 99, 150, 1000}) {
        SCOPED_TRACE(others);
        const FakeMachine machine;
        Dictionary properties;
        for (int number = 0; number < others; ++number) {
            properties.set("rpm " + std::to_string(number), std::int64_t{1000});
        }
        properties.set("F0Ac", std::int64_t{2000});
        machine.registry->add("SMCSuperIO", "chip", properties);
        const std::string expected = "F0Ac\tioreg\tFan " + std::to_string(others) + "\t2000 RPM\tRAW=7D0\n";
        EXPECT_TRUE(stableFanLines(machine).starts_with(expected));
    }
}

TEST(FanRoundTrip, KeepsPropertiesThatAreNamedLikeANumberedFan) {
    const FakeMachine machine;
    machine.registry->add(
        "SMCSuperIO", "chip",
        Dictionary{{"Fan 1", std::int64_t{901}}, {"Fan 2", std::int64_t{902}}, {"Fan 3", std::int64_t{903}}});
    EXPECT_EQ(stableFanLines(machine), "FAN0\tioreg\tFan 1\t901 RPM\tRAW=385"
                                       "\nFAN1\tioreg\tFan 2\t902 RPM\tRAW=386"
                                       "\nFAN2\tioreg\tFan 3\t903 RPM\tRAW=387");
}

/// Each of the numbered fans could also be a property "FAN…" in the position of the next one, but not all at
/// once.
TEST(FanRoundTrip, KeepsPropertiesThatAreNamedLikeANumberedFanBeforeOneThatIsNot) {
    const FakeMachine machine;
    machine.registry->add("SMCSuperIO", "chip",
                          Dictionary{{"Fan 1", std::int64_t{901}},
                                     {"Fan 2", std::int64_t{902}},
                                     {"Fan 3", std::int64_t{903}},
                                     {"Pump Fan", std::int64_t{904}}});
    EXPECT_EQ(stableFanLines(machine), "FAN0\tioreg\tFan 1\t901 RPM\tRAW=385"
                                       "\nFAN1\tioreg\tFan 2\t902 RPM\tRAW=386"
                                       "\nFAN2\tioreg\tFan 3\t903 RPM\tRAW=387"
                                       "\nFAN3\tioreg\tPump Fan\t904 RPM\tRAW=388");
}

TEST(FanRoundTrip, KeepsFansInCrossedOrder) {
    const FakeMachine machine;
    machine.registry->add("SMCSuperIO", "chip",
                          Dictionary{{"Fan 3", std::int64_t{900}},
                                     {"Fan 2", std::int64_t{901}},
                                     {"Fan 1", std::int64_t{902}},
                                     {"Fan 0", std::int64_t{903}}});
    EXPECT_EQ(stableFanLines(machine), "FAN0\tioreg\tFan 3\t900 RPM\tRAW=384"
                                       "\nFAN1\tioreg\tFan 2\t901 RPM\tRAW=385"
                                       "\nFAN2\tioreg\tFan 1\t902 RPM\tRAW=386"
                                       "\nFAN3\tioreg\tFan 0\t903 RPM\tRAW=387");
}

TEST(FanRoundTrip, KeepsTheControllersFanAndTheRegistrysOthers) {
    const FakeMachine machine;
    machine.driver->addKeyCount(4)
        .add("F0Ac", "fpe2", {0x21, 0xB0})
        .add("F1Ac", "hex_", {0x01})
        .add("FAN2", "ui16", {0x03, 0xE8});
    machine.registry->add("SMCSuperIO", "chip",
                          Dictionary{{"F0Ac", std::int64_t{900}},
                                     {"F1Ac", std::int64_t{901}},
                                     {"CPU Fan", std::int64_t{902}},
                                     {"Pump Fan", std::int64_t{903}}});
    EXPECT_EQ(stableFanLines(machine), "F0Ac\tfpe2\tFan 0\t2156 RPM\tRAW=21B0"
                                       "\nF1Ac\tioreg\tFan 1\t901 RPM\tRAW=385"
                                       "\nFAN2\tui16\tFAN2\t1000 RPM\tRAW=03E8"
                                       "\nFAN3\tioreg\tPump Fan\t903 RPM\tRAW=387");
}

TEST(FanRoundTrip, KeepsTheFirstOfTwoFansWithOneKey) {
    const FakeMachine machine;
    machine.registry->add("SMCSuperIO", "chip",
                          Dictionary{{"FAN1", std::int64_t{900}},
                                     {"CPU Fan", std::int64_t{901}},
                                     {"FAN0", std::int64_t{902}},
                                     {"F0Ac", std::int64_t{903}}});
    machine.registry->add("SMCSuperIO", "other", property("F0Ac", std::int64_t{904}));
    EXPECT_EQ(stableFanLines(machine), "F0Ac\tioreg\tFan 3\t903 RPM\tRAW=387"
                                       "\nFAN0\tioreg\tFan 2\t902 RPM\tRAW=386"
                                       "\nFAN1\tioreg\tFan 0\t900 RPM\tRAW=384");
}

/// Random registries and controllers, the same in every run.
class RandomMachine {
  public:
    explicit RandomMachine(unsigned seed) : random_(seed) {}

    void fill(const FakeMachine& machine, std::span<const std::string_view> names) {
        addKeys(machine);
        const std::size_t entryCount = 1 + below(8);
        for (std::size_t entry = 0; entry < entryCount; ++entry) {
            machine.registry->add(std::string(pick(entryClasses)), std::string(pick(entryNames)),
                                  properties(names));
        }
    }

  private:
    static constexpr std::array<std::string_view, 5> entryClasses{"SMCSuperIO", "FakeSMCDevice", "LPCSensors",
                                                                  "ACPISensors", "IOPlatformDevice"};
    static constexpr std::array<std::string_view, 4> entryNames{"nct6798", "it8688", "board", "VirtualSMC"};
    static constexpr std::array<std::string_view, 8> fanKeys{"F0Ac", "F1Ac", "F2Ac", "F3Ac",
                                                             "FAN0", "FAN3", "Fan4", "TC0P"};
    static constexpr std::array<std::string_view, 18> texts{
        "1450", "1450 RPM", "  1450.5", "abc",  "-5",    "0",   "1e3", "1234.5rpm", "0x10",
        "+900", "30000.4",  ".5",       "05DC", "1450 ", "255", "10",  "7F",        "900\tturns"};
    static constexpr std::array<double, 14> numbers{0.0,
                                                    -0.0,
                                                    0.5,
                                                    1.5,
                                                    2.5,
                                                    -0.25,
                                                    0.3,
                                                    29999.5,
                                                    30000,
                                                    30000.5,
                                                    -1,
                                                    1e30,
                                                    std::numeric_limits<double>::infinity(),
                                                    std::numeric_limits<double>::quiet_NaN()};
    static constexpr std::array<double, 7> fractions{0, 0.004, 0.25, 0.4999, 0.5, 0.75, 0.996};

    std::size_t below(std::size_t limit) { return random_() % limit; }

    template <typename List>
    typename List::value_type pick(const List& list) {
        return list[below(list.size())];
    }

    std::uint8_t byte() { return static_cast<std::uint8_t>(random_()); }

    Data likelyData(std::size_t size) {
        Data data(size);
        for (std::uint8_t& each : data) each = byte();
        if (size >= 2) data[below(2)] = static_cast<std::uint8_t>(below(24));
        return data;
    }

    Value value() {
        switch (below(9)) {
        case 0:
            return static_cast<std::int64_t>(below(30002));
        case 1:
            return static_cast<std::int64_t>(below(300)) - 20;
        case 2:
            return static_cast<double>(below(30000)) + pick(fractions);
        case 3:
            return pick(numbers);
        case 4:
            return likelyData(1);
        case 5:
            return likelyData(2);
        case 6:
            return likelyData(below(40));
        case 7:
            return std::string(pick(texts));
        default:
            return below(2) == 0 ? Value(true) : Value(TextList{"1450"});
        }
    }

    std::optional<Dictionary> properties(std::span<const std::string_view> names) {
        if (below(20) == 0) return std::nullopt;
        Dictionary dictionary;
        const std::size_t count = below(10);
        for (std::size_t property = 0; property < count; ++property) dictionary.set(pick(names), value());
        return dictionary;
    }

    void addKeys(const FakeMachine& machine) {
        for (const std::string_view key : fanKeys) {
            if (below(4) != 0) continue;
            const bool isNumber = below(2) == 0;
            machine.driver->add(std::string(key), isNumber ? "ui16" : "hex_", {0x03, byte()});
        }
        machine.driver->addKeyCount();
    }

    std::mt19937 random_;
};

/// The number of random machines with a registry fan in their snapshot.
int fansKeptByRandomMachines(std::span<const std::string_view> names) {
    int withFans = 0;
    for (unsigned seed = 0; seed < 400; ++seed) {
        SCOPED_TRACE(seed);
        const FakeMachine machine;
        RandomMachine(seed).fill(machine, names);
        const std::string first = exportedText(machine.machine());
        if (first.find("\tRAW=") == std::string::npos) continue;
        expectStable(first);
        if (first.find("\tioreg\t") != std::string::npos) ++withFans;
    }
    return withFans;
}

TEST(FanRoundTrip, KeepsRandomRegistries) {
    constexpr std::array<std::string_view, 22> names{
        "CPU Fan", "Rear Fan", "fan speed", "FAN",  "tach", "Pump RPM", "Lüfter Fan", "fan\ttab",
        " fan ",   "FAN12",    "FRPM",      "F0Ac", "F1Ac", "F2Ac",     "F3Ac",       "FAN0",
        "FAN3",    "FAN7",     "FAN9",      "Fan4", "Fan ", "Voltage"};
    EXPECT_GT(fansKeptByRandomMachines(names), 300);
}

TEST(FanRoundTrip, KeepsRandomRegistriesWithNumberedNames) {
    constexpr std::array<std::string_view, 17> names{"Fan 0",   "Fan 1", "Fan 2", "Fan 3", "Fan 4",  "Fan 5",
                                                     "Fan 6",   "Fan 7", "Fan 8", "Fan 9", "Fan 10", "Fan 01",
                                                     "CPU Fan", "FAN1",  "FAN3",  "F0Ac",  "Fan4"};
    EXPECT_GT(fansKeptByRandomMachines(names), 300);
}

} // namespace
} // namespace kelvinbar::fan_round_trip_test
