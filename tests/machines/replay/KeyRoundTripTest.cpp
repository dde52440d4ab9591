// SMCs with unusual content: exporting, replaying and exporting again yields the same snapshot.

#include "tests/fakes/FakeMachine.h"
#include "tests/machines/replay/Exporting.h"

#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::key_round_trip_test {

namespace {

using fakes::FakeMachine;

/// The export of `machine` with "#KEY" added, after checking that its replay exports the same.
std::string stableExport(FakeMachine& machine) {
    machine.driver->addKeyCount();
    return exportThatReplays(machine.machine());
}

std::string withHead(std::string_view countAndLines) {
    return std::string(exportedHead).append(countAndLines);
}

TEST(KeyRoundTrip, KeepsKeysWithBlanks) {
    FakeMachine machine;
    machine.driver->add("REV ", "ch8*", {'2', '.', '4'})
        .add("VTT ", "sp4b", {0x07, 0x33})
        .add("V   ", "sp4b", {0x08, 0x00})
        .add("V  1", "sp4b", {0x10, 0x00})
        .add("I   ", "sp78", {0x01, 0x80});
    EXPECT_EQ(stableExport(machine), withHead("5\n"
                                              "\nI   \tsp78\tI   \t1.5 A\tRAW=0180"
                                              "\nREV \tch8*\tSMC Revision\t2.4\tRAW=322E34"
                                              "\nV   \tsp4b\tV   \t1 V\tRAW=0800"
                                              "\nV  1\tsp4b\tV  1\t2 V\tRAW=1000"
                                              "\nVTT \tsp4b\tVTT\t0.9 V\tRAW=0733"));
}

TEST(KeyRoundTrip, KeepsKeysThatDifferOnlyInCase) {
    FakeMachine machine;
    machine.driver->add("TC0p", "sp78", {0x32, 0x00})
        .add("IC0R", "sp78", {0x02, 0x00})
        .add("TC0P", "sp78", {0x28, 0x80})
        .add("Ic0R", "sp78", {0x01, 0x00});
    EXPECT_EQ(stableExport(machine), withHead("4\n"
                                              "\nIC0R\tsp78\tCPU High-Side Current\t2 A\tRAW=0200"
                                              "\nIc0R\tsp78\tCPU CSReg Current\t1 A\tRAW=0100"
                                              "\nTC0P\tsp78\tCPU Proximity\t40.50 °C\tRAW=2880"
                                              "\nTC0p\tsp78\tCPU Package\t50 °C\tRAW=3200"));
}

TEST(KeyRoundTrip, KeepsKeysOfPunctuation) {
    FakeMachine machine;
    for (const std::string_view key : {"V#$+", "V-!?", "V_~\"", R"(B\'`)", "I<&>", "V=~;"}) {
        machine.driver->add(std::string(key), "ui8 ", {5});
    }
    EXPECT_TRUE(stableExport(machine).starts_with(withHead("6\n\n")));
}

TEST(KeyRoundTrip, KeepsTypesShorterThanFour) {
    FakeMachine machine;
    machine.driver->add("TC0P", "ui8", {40}).add("TC1C", "si8", {0xFE}).add("TC2C", "x", {1, 2});
    EXPECT_EQ(stableExport(machine), withHead("3\n"
                                              "\nTC0P\tui8\tCPU Proximity\t40 °C\tRAW=28"
                                              "\nTC1C\tsi8\tCore 1\t-2 °C\tRAW=FE"
                                              "\nTC2C\tx\tCore 2\t0102 °C\tRAW=0102"));
}

TEST(KeyRoundTrip, KeepsAnEmptyType) {
    FakeMachine machine;
    machine.driver->add("TC0P", "", {40});
    EXPECT_EQ(stableExport(machine), withHead("1\n\nTC0P\t\tCPU Proximity\t28 °C\tRAW=28"));
}

TEST(KeyRoundTrip, ShowsATypeThatIsNoTextAsEmptyAndKeepsThat) {
    FakeMachine machine;
    machine.driver->add("TC0P", "\xFF\xFE\xFD\xFC", {40}).add("TC1C", "ui\xC3", {40});
    EXPECT_EQ(stableExport(machine), withHead("2\n"
                                              "\nTC0P\t\tCPU Proximity\t28 °C\tRAW=28"
                                              "\nTC1C\t\tCore 1\t28 °C\tRAW=28"));
}

TEST(KeyRoundTrip, KeepsWhatStandsBeforeAZeroByteInAType) {
    FakeMachine machine;
    machine.driver->add("TC0P", std::string("ui8\0", 4), {40}).add("TC1C", std::string("u\0i8", 4), {40});
    EXPECT_EQ(stableExport(machine), withHead("2\n"
                                              "\nTC0P\tui8\tCPU Proximity\t40 °C\tRAW=28"
                                              "\nTC1C\tu\tCore 1\t28 °C\tRAW=28"));
}

TEST(KeyRoundTrip, KeepsTypesWithNonAsciiCharacters) {
    for (const std::string_view type : {"é", "éa", "éü", "aé ", "€", "€x", "\U0001F321", "\u00A0x", "°C"}) {
        SCOPED_TRACE(type);
        FakeMachine machine;
        machine.driver->add("TC0P", std::string(type), {0x12, 0x34});
        EXPECT_EQ(stableExport(machine),
                  withHead("1\n\nTC0P\t" + std::string(type).append("\tCPU Proximity\t1234 °C\tRAW=1234")));
    }
}

TEST(KeyRoundTrip, KeepsTypesOfBlanks) {
    for (const std::string_view type : {" ", "    ", " ui8", "ui 8"}) {
        SCOPED_TRACE(type);
        FakeMachine machine;
        machine.driver->add("TC0P", std::string(type), {0x12, 0x34});
        EXPECT_EQ(stableExport(machine),
                  withHead("1\n\nTC0P\t" + std::string(type).append("\tCPU Proximity\t1234 °C\tRAW=1234")));
    }
}

TEST(KeyRoundTrip, KeepsEverySizeFrom1To32) {
    FakeMachine machine;
    for (std::uint8_t size = 1; size <= 32; ++size) {
        std::vector<std::uint8_t> bytes(size);
        for (std::uint8_t at = 0; at < size; ++at) bytes[at] = static_cast<std::uint8_t>(0xF0 + at);
        machine.driver->add(std::string("V").append(std::to_string(100 + size)), "hex_", bytes);
    }
    EXPECT_TRUE(stableExport(machine).starts_with(withHead("32\n")));
}

TEST(KeyRoundTrip, KeepsTextsAsTheyAreShown) {
    FakeMachine machine;
    machine.driver->add("REV ", "ch8*", {' ', 'R', 'A', 'W', '=', '0', '1', ' ', '\0'})
        .add("RVBF", "char", {'R', 'P', 'M'})
        .add("F0ID", "{fds", {0, 0, 'i', 'o', 'r', 'e', 'g'});
    EXPECT_EQ(stableExport(machine), withHead("3\n"
                                              "\nF0ID\t{fds\tFan 0 Name\tioreg\tRAW=0000696F726567"
                                              "\nREV \tch8*\tSMC Revision\tRAW=01\tRAW=205241573D30312000"
                                              "\nRVBF\tchar\tSMC Build\tRPM\tRAW=52504D"));
}

TEST(KeyRoundTrip, LosesNoKeyToTheCandidateLimit) {
    FakeMachine machine;
    for (int number = 0; number < 1500; ++number) {
        const std::string digits = std::to_string(10000 + number);
        // Two letters leave two characters, which is enough for 1500 numbers.
        machine.driver->add(std::string("V") + static_cast<char>('a' + number / 100) + digits.substr(3),
                            "ui8 ", {1});
    }
    EXPECT_TRUE(stableExport(machine).starts_with(withHead("1024\n")));
}

/// Keys, types and bytes of every kind at once.
TEST(KeyRoundTrip, KeepsRandomControllers) {
    for (unsigned seed = 0; seed < 200; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const std::vector<std::string> types{"flt ", "sp78", "fpe2", "ui8 ", "ui16", "ui32", "si16", "flag",
                                             "ch8*", "{fds", "hex_", "fpef", "sp4s", "ui8",  "",     "é€"};
        FakeMachine machine;
        for (int count = 0; count < 40; ++count) {
            std::string key(1, std::string("TVIBPF")[random() % 6]);
            while (key.size() < 4) key.push_back(static_cast<char>(' ' + random() % 95));
            std::vector<std::uint8_t> bytes(1 + random() % 32);
            for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random());
            machine.driver->add(key, types[random() % types.size()], bytes);
        }
        EXPECT_NE(stableExport(machine), withHead("0\n"));
    }
}

} // namespace
} // namespace kelvinbar::key_round_trip_test
