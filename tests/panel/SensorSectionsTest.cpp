#include "panel/SensorSections.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kelvinbar::sensor_sections_test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Readings = std::vector<SMCReading>;
using Names = std::vector<std::string>;

SMCReading readingOf(const std::string& key, const std::string& name,
                     SMCCategory category = SMCCategory::cpu) {
    return {.key = key,
            .name = name,
            .category = category,
            .type = "sp78",
            .value = "40",
            .numericValue = 40,
            .unit = "°C",
            .raw = "2800",
            .status = "OK"};
}

std::string numbered(std::string prefix, std::size_t number) { return prefix.append(std::to_string(number)); }

Names keysOf(const ReadingList& list) {
    Names keys;
    for (const SMCReading* const reading : list) keys.push_back(reading->key);
    return keys;
}

Names namesOf(const ReadingList& list) {
    Names names;
    for (const SMCReading* const reading : list) names.push_back(reading->name);
    return names;
}

Names visibleKeys(const Readings& readings, const KeySet& hiddenKeys = {}) {
    return keysOf(visibleReadings(readings, hiddenKeys));
}

std::vector<SensorSectionModel> sectionsOf(const Readings& readings, const KeySet& hiddenKeys = {}) {
    return sectionModels(visibleReadings(readings, hiddenKeys));
}

Names sectionIds(const Readings& readings, const KeySet& hiddenKeys = {}) {
    Names ids;
    for (const SensorSectionModel& section : sectionsOf(readings, hiddenKeys)) ids.emplace_back(section.id);
    return ids;
}

/// The names of CPU readings named `names`, in the order of their section.
Names sortedNames(const Names& names) {
    Readings readings;
    for (const std::string& name : names) {
        readings.push_back(readingOf(numbered("K", readings.size()), name));
    }
    return namesOf(cpuReadings(visibleReadings(readings, {})));
}

int priorityOf(const std::string& key, const std::string& name) { return sortPriority(readingOf(key, name)); }

/// One reading per category, with its title as key.
Readings oneOfEveryCategory() {
    Readings readings;
    for (const SMCCategory category : allCategories) {
        const std::string title(rawValue(category));
        readings.push_back(readingOf(title, title, category));
    }
    return readings;
}

// Visible readings

TEST(VisibleReadings, TheyKeepTheOrderOfTheReadings) {
    EXPECT_THAT(visibleKeys({readingOf("TC1C", "Core 1"), readingOf("F0Ac", "Fan", SMCCategory::fans),
                             readingOf("TA0P", "Ambient", SMCCategory::thermal)}),
                ElementsAre("TC1C", "F0Ac", "TA0P"));
}

TEST(VisibleReadings, NoReadingsGiveNone) {
    const Readings none;
    EXPECT_THAT(visibleReadings(none, {"TC0P"}), IsEmpty());
}

TEST(VisibleReadings, TheyAreThoseOfTheList) {
    const Readings readings{readingOf("TC0P", "A"), readingOf("TC1P", "B")};
    EXPECT_THAT(visibleReadings(readings, {"TC0P"}), ElementsAre(&readings[1]));
}

TEST(VisibleReadings, AReadingWithoutAValueToShowIsLeftOut) {
    Readings readings{readingOf("EMPT", "A"), readingOf("PLAC", "B"), readingOf("INFI", "C"),
                      readingOf("NANA", "D"), readingOf("NONE", "E"), readingOf("KEPT", "F")};
    readings[0].value = "  ";
    readings[1].value = "N/A";
    readings[2].numericValue = std::numeric_limits<double>::infinity();
    readings[3].numericValue = std::nan("");
    readings[4].numericValue.reset();
    readings[4].raw = " ";
    EXPECT_THAT(visibleKeys(readings), ElementsAre("KEPT"));
}

TEST(VisibleReadings, AReadingWithoutANumberButWithBytesStays) {
    Readings readings{readingOf("MSAc", "A")};
    readings[0].numericValue.reset();
    EXPECT_THAT(visibleKeys(readings), ElementsAre("MSAc"));
}

TEST(VisibleReadings, ZeroIsAValueToShow) {
    Readings readings{readingOf("F0Ac", "Fan", SMCCategory::fans)};
    readings[0].value = "0";
    readings[0].numericValue = 0;
    EXPECT_THAT(visibleKeys(readings), ElementsAre("F0Ac"));
}

TEST(VisibleReadings, AHiddenKeyIsLeftOut) {
    const Readings readings{readingOf("TC0P", "A"), readingOf("TC1P", "B"), readingOf("TC2P", "C")};
    EXPECT_THAT(visibleKeys(readings, {"TC1P"}), ElementsAre("TC0P", "TC2P"));
    EXPECT_THAT(visibleKeys(readings, {"TC0P", "TC1P", "TC2P"}), IsEmpty());
}

TEST(VisibleReadings, AHiddenKeyHidesNoKeyOfAnotherCase) {
    const Readings readings{readingOf("TC0P", "A"), readingOf("TC0p", "B"), readingOf("tc0p", "C")};
    EXPECT_THAT(visibleKeys(readings, {"TC0p"}), ElementsAre("TC0P", "tc0p"));
}

TEST(VisibleReadings, AHiddenKeyHidesNoLongerOrPaddedKey) {
    const Readings readings{readingOf("VTT ", "A"), readingOf("VTT", "B"), readingOf("VTT0", "C")};
    EXPECT_THAT(visibleKeys(readings, {"VTT"}), ElementsAre("VTT ", "VTT0"));
}

TEST(VisibleReadings, AHiddenKeyIsNoName) {
    EXPECT_THAT(visibleKeys({readingOf("TC0P", "CPU")}, {"CPU"}), ElementsAre("TC0P"));
}

TEST(VisibleReadings, EveryCategoryCounts) {
    EXPECT_EQ(visibleKeys(oneOfEveryCategory()).size(), allCategories.size());
}

// The readings of a section

TEST(SensorSections, EveryListTakesItsOwnCategories) {
    const Readings readings = oneOfEveryCategory();
    const ReadingList visible = visibleReadings(readings, {});
    EXPECT_THAT(keysOf(cpuReadings(visible)), ElementsAre("CPU"));
    EXPECT_THAT(keysOf(graphicsReadings(visible)), ElementsAre("GPU / iGPU"));
    EXPECT_THAT(keysOf(memoryReadings(visible)), ElementsAre("Memory"));
    EXPECT_THAT(keysOf(storageReadings(visible)), ElementsAre("Storage"));
    EXPECT_THAT(keysOf(fanReadings(visible)), ElementsAre("Fans"));
    EXPECT_THAT(keysOf(voltageReadings(visible)), ElementsAre("Voltages"));
    EXPECT_THAT(keysOf(powerReadings(visible)), ElementsAre("Battery", "Currents", "Power"));
    EXPECT_THAT(keysOf(thermalReadings(visible)), ElementsAre("Misc Sensors", "Thermal Zones"));
}

TEST(SensorSections, EveryListIsEmptyWithoutVisibleReadings) {
    for (const auto list : {cpuReadings, graphicsReadings, memoryReadings, storageReadings, fanReadings,
                            voltageReadings, powerReadings, thermalReadings}) {
        EXPECT_THAT(list({}), IsEmpty());
    }
}

TEST(SensorSections, EveryListIsSorted) {
    struct Case {
        ReadingList (*list)(const ReadingList& visible);
        SMCCategory category;
    };

    for (const auto& [list, category] :
         {Case{cpuReadings, SMCCategory::cpu}, Case{graphicsReadings, SMCCategory::gpu},
          Case{memoryReadings, SMCCategory::memory}, Case{storageReadings, SMCCategory::storage},
          Case{fanReadings, SMCCategory::fans}, Case{voltageReadings, SMCCategory::voltages},
          Case{powerReadings, SMCCategory::battery}, Case{thermalReadings, SMCCategory::sensors}}) {
        const Readings readings{readingOf("K0", "Zone", category), readingOf("K1", "Area 10", category),
                                readingOf("K2", "Fan", category), readingOf("K3", "Area 9", category),
                                readingOf("K4", "Proximity", category)};
        EXPECT_THAT(keysOf(list(visibleReadings(readings, {}))), ElementsAre("K4", "K2", "K3", "K1", "K0"))
            << rawValue(category);
    }
}

TEST(SensorSections, TheCategoriesOfASectionAreSortedTogether) {
    const Readings readings{
        readingOf("PSTR", "System", SMCCategory::power), readingOf("IB0R", "Adapter", SMCCategory::currents),
        readingOf("B0AV", "Voltage", SMCCategory::battery), readingOf("PC0C", "Core", SMCCategory::power)};
    EXPECT_THAT(keysOf(powerReadings(visibleReadings(readings, {}))),
                ElementsAre("PC0C", "B0AV", "IB0R", "PSTR"));
}

// Priorities

TEST(SensorSections, EveryWordHasItsPriority) {
    EXPECT_EQ(priorityOf("TC0P", "CPU Proximity"), 0);
    EXPECT_EQ(priorityOf("TCXC", "CPU Package"), 1);
    EXPECT_EQ(priorityOf("TC0C", "CPU Core 0"), 2);
    EXPECT_EQ(priorityOf("TC0D", "CPU Diode"), 3);
    EXPECT_EQ(priorityOf("F0Ac", "Left Fan"), 4);
    EXPECT_EQ(priorityOf("VP0R", "12 V Voltage"), 5);
    EXPECT_EQ(priorityOf("TA0P", "Ambient"), 20);
    EXPECT_EQ(priorityOf("", ""), 20);
}

TEST(SensorSections, TheCaseOfAWordDoesNotCount) {
    EXPECT_EQ(priorityOf("K", "pRoXiMiTy"), 0);
    EXPECT_EQ(priorityOf("K", "PACKAGE"), 1);
    EXPECT_EQ(priorityOf("K", "core"), 2);
    EXPECT_EQ(priorityOf("DIODE", ""), 3);
    EXPECT_EQ(priorityOf("fAN0", ""), 4);
}

TEST(SensorSections, AWordCountsInsideALongerOne) {
    EXPECT_EQ(priorityOf("K", "Scores"), 2);
    EXPECT_EQ(priorityOf("K", "Fantasy"), 4);
    EXPECT_EQ(priorityOf("K", "Photodiodes"), 3);
    EXPECT_EQ(priorityOf("K", "Cor"), 20);
}

TEST(SensorSections, TheFirstWordOfTheListCountsNotTheFirstInTheName) {
    EXPECT_EQ(priorityOf("K", "Core Package"), 1);
    EXPECT_EQ(priorityOf("K", "Package Core"), 1);
    EXPECT_EQ(priorityOf("K", "Voltage Fan Diode Core Package Proximity"), 0);
    EXPECT_EQ(priorityOf("K", "Voltage Fan Diode Core Package"), 1);
    EXPECT_EQ(priorityOf("K", "Voltage Fan Diode Core"), 2);
    EXPECT_EQ(priorityOf("K", "Voltage Fan Diode"), 3);
    EXPECT_EQ(priorityOf("K", "Voltage Fan"), 4);
}

TEST(SensorSections, TheKeyTakesPartInTheMatch) {
    EXPECT_EQ(priorityOf("FAN0", "Left"), 4);
    EXPECT_EQ(priorityOf("CORE", "Voltage"), 2);
    EXPECT_EQ(priorityOf("CORE", "Proximity"), 0);
    const Readings readings{readingOf("K", "Area"), readingOf("Core", "Zone")};
    EXPECT_THAT(namesOf(cpuReadings(visibleReadings(readings, {}))), ElementsAre("Zone", "Area"));
}

TEST(SensorSections, NoWordIsMadeOfTheKeyAndTheName) {
    EXPECT_EQ(priorityOf("CO", "RE"), 20);
    EXPECT_EQ(priorityOf("FA", "N"), 20);
}

TEST(SensorSections, OtherFieldsTakeNoPartInTheMatch) {
    SMCReading reading = readingOf("K", "Area", SMCCategory::voltages);
    reading.type = "fan";
    reading.value = "core";
    reading.raw = "package";
    reading.status = "proximity";
    reading.unit = "diode";
    EXPECT_EQ(sortPriority(reading), 20);
}

// Order

TEST(SensorSections, AReadingNamedProximityComesBeforeOneNamedPackage) {
    for (const std::string key : {"A", "Z"}) {
        const Readings readings{readingOf("M", "CPU Package"), readingOf(key, "CPU Proximity")};
        EXPECT_THAT(namesOf(cpuReadings(visibleReadings(readings, {}))),
                    ElementsAre("CPU Proximity", "CPU Package"));
    }
}

TEST(SensorSections, ThePriorityComesBeforeTheName) {
    EXPECT_EQ(sortedNames({"A", "B Voltage", "C Fan", "D Diode", "E Core", "F Package", "G Proximity"}),
              (Names{"G Proximity", "F Package", "E Core", "D Diode", "C Fan", "B Voltage", "A"}));
}

TEST(SensorSections, NumbersInNamesOrderByTheirValue) {
    EXPECT_EQ(sortedNames({"Core 10", "Core 2"}), (Names{"Core 2", "Core 10"}));
    EXPECT_EQ(sortedNames({"Bank 100", "Bank 20", "Bank 3"}), (Names{"Bank 3", "Bank 20", "Bank 100"}));
    EXPECT_EQ(sortedNames({"Bank 10 B", "Bank 10 A", "Bank 9 Z"}),
              (Names{"Bank 9 Z", "Bank 10 A", "Bank 10 B"}));
}

TEST(SensorSections, TheCaseOfANameDoesNotOrder) {
    EXPECT_EQ(sortedNames({"zone", "Yard", "x-ray"}), (Names{"x-ray", "Yard", "zone"}));
}

TEST(SensorSections, FansOrderByNameAmongEachOther) {
    const Readings readings{readingOf("F0Ac", "Left fan", SMCCategory::fans),
                            readingOf("F0Tg", "Fan Target", SMCCategory::fans),
                            readingOf("F1Ac", "Exhaust", SMCCategory::fans)};
    EXPECT_EQ(sortPriority(readings[0]), sortPriority(readings[1]));
    EXPECT_THAT(namesOf(fanReadings(visibleReadings(readings, {}))),
                ElementsAre("Fan Target", "Left fan", "Exhaust"));
}

TEST(SensorSections, TheKeyDoesNotOrder) {
    const Readings readings{readingOf("A", "Zone"), readingOf("Z", "Area")};
    EXPECT_THAT(keysOf(cpuReadings(visibleReadings(readings, {}))), ElementsAre("Z", "A"));
}

TEST(SensorSections, EqualReadingsKeepTheirOrder) {
    Readings readings;
    Names keys;
    for (std::size_t number = 100; number > 0; --number) {
        keys.push_back(numbered("K", number));
        readings.push_back(readingOf(keys.back(), number % 2 == 0 ? "Core 07" : "CORE 7"));
    }
    EXPECT_EQ(keysOf(cpuReadings(visibleReadings(readings, {}))), keys);
    std::ranges::reverse(readings);
    std::ranges::reverse(keys);
    EXPECT_EQ(keysOf(cpuReadings(visibleReadings(readings, {}))), keys);
}

TEST(SensorSections, TheSameWordsOrderEverySection) {
    const Readings readings{readingOf("TA0P", "Air", SMCCategory::thermal),
                            readingOf("TW0P", "Wireless Proximity", SMCCategory::sensors),
                            readingOf("TV0P", "Voltage Regulator", SMCCategory::thermal)};
    EXPECT_THAT(keysOf(thermalReadings(visibleReadings(readings, {}))), ElementsAre("TW0P", "TV0P", "TA0P"));
}

// Sections

TEST(SensorSections, TheyAreTheEightOfThePanelInItsOrder) {
    struct Expected {
        std::string_view id;
        std::string_view title;
        std::string_view subtitle;
        std::string_view icon;
        Accent accent;
        std::size_t rowCount;
    };

    const std::vector<Expected> table{
        {"cpu", "CPU", "Package, cores, diode, PECI and CPU power", "cpu", Accent::cyan, 1},
        {"graphics", "GRAPHICS", "iGPU / dGPU temperatures and activity", "display", Accent::purple, 1},
        {"memory", "RAM", "Memory sensors exposed by SMC", "memorychip", Accent::pink, 1},
        {"storage", "STORAGE", "NVMe / SATA media health keys", "internaldrive", Accent::grey, 1},
        {"fans", "FANS", "Tachometers and fan targets", "fanblades", Accent::mint, 1},
        {"voltages", "VOLTAGES", "Voltage rails with real values only", "waveform.path.ecg", Accent::orange,
         1},
        {"power", "POWER / BATTERY", "Power, current and battery keys", "bolt.fill", Accent::yellow, 3},
        {"thermal", "THERMAL ZONES", "Board and misc thermal probes", "thermometer.medium", Accent::red, 2},
    };
    const Readings readings = oneOfEveryCategory();
    const std::vector<SensorSectionModel> sections = sectionsOf(readings);
    ASSERT_EQ(sections.size(), table.size());
    for (std::size_t index = 0; index < table.size(); ++index) {
        EXPECT_EQ(sections[index].id, table[index].id);
        EXPECT_EQ(sections[index].title, table[index].title);
        EXPECT_EQ(sections[index].subtitle, table[index].subtitle);
        EXPECT_EQ(sections[index].icon, table[index].icon);
        EXPECT_EQ(sections[index].accent, table[index].accent) << table[index].id;
        EXPECT_EQ(sections[index].readings.size(), table[index].rowCount) << table[index].id;
    }
}

TEST(SensorSections, EveryCategoryIsInOneSectionAtMost) {
    struct Expected {
        SMCCategory category;
        Names ids;
    };

    const std::vector<Expected> table{
        {SMCCategory::overview, {}},         {SMCCategory::cpu, {"cpu"}},
        {SMCCategory::gpu, {"graphics"}},    {SMCCategory::memory, {"memory"}},
        {SMCCategory::fans, {"fans"}},       {SMCCategory::battery, {"power"}},
        {SMCCategory::power, {"power"}},     {SMCCategory::voltages, {"voltages"}},
        {SMCCategory::currents, {"power"}},  {SMCCategory::storage, {"storage"}},
        {SMCCategory::thermal, {"thermal"}}, {SMCCategory::sensors, {"thermal"}},
        {SMCCategory::unknown, {}},
    };
    ASSERT_EQ(table.size(), allCategories.size());
    for (const auto& [category, ids] : table) {
        EXPECT_EQ(sectionIds({readingOf("K", "Name", category)}), ids) << rawValue(category);
    }
}

TEST(SensorSections, ABatteryReadingIsUnderPowerAndBattery) {
    const Readings readings{readingOf("B0AC", "Battery Current", SMCCategory::battery)};
    const std::vector<SensorSectionModel> sections = sectionsOf(readings);
    ASSERT_EQ(sections.size(), 1U);
    EXPECT_EQ(sections.front().title, "POWER / BATTERY");
    EXPECT_THAT(keysOf(sections.front().readings), ElementsAre("B0AC"));
}

TEST(SensorSections, AMiscSensorIsUnderThermalZones) {
    const Readings readings{readingOf("TW0P", "Wireless", SMCCategory::sensors)};
    const std::vector<SensorSectionModel> sections = sectionsOf(readings);
    ASSERT_EQ(sections.size(), 1U);
    EXPECT_EQ(sections.front().title, "THERMAL ZONES");
}

TEST(SensorSections, ReadingsOfNoSectionAreVisibleAllTheSame) {
    const Readings readings{readingOf("OVER", "Summary", SMCCategory::overview),
                            readingOf("#KEY", "Number of keys", SMCCategory::unknown)};
    EXPECT_EQ(visibleReadings(readings, {}).size(), 2U);
    EXPECT_THAT(sectionIds(readings), IsEmpty());
}

TEST(SensorSections, ASectionWithoutRowsIsDroppedAndTheOthersKeepTheirOrder) {
    const Readings readings{readingOf("T", "A", SMCCategory::thermal), readingOf("F", "B", SMCCategory::fans),
                            readingOf("S", "C", SMCCategory::storage),
                            readingOf("M", "D", SMCCategory::memory), readingOf("C", "E", SMCCategory::cpu)};
    EXPECT_THAT(sectionIds(readings), ElementsAre("cpu", "memory", "storage", "fans", "thermal"));
}

TEST(SensorSections, NeitherTheNumberOfRowsNorTheirValuesOrderTheSections) {
    Readings readings{readingOf("C", "Cold", SMCCategory::cpu)};
    readings.front().value = "1";
    readings.front().numericValue = 1;
    for (std::size_t number = 0; number < 50; ++number) {
        readings.push_back(readingOf(numbered("F", number), "Fan", SMCCategory::fans));
        readings.back().numericValue = 5000;
    }
    EXPECT_THAT(sectionIds(readings), ElementsAre("cpu", "fans"));
}

TEST(SensorSections, HidingTheOnlyReadingOfASectionRemovesIt) {
    const Readings readings{readingOf("TC0P", "CPU", SMCCategory::cpu),
                            readingOf("F0Ac", "Fan", SMCCategory::fans)};
    EXPECT_THAT(sectionIds(readings), ElementsAre("cpu", "fans"));
    EXPECT_THAT(sectionIds(readings, {"F0Ac"}), ElementsAre("cpu"));
    EXPECT_THAT(sectionIds(readings, {"TC0P", "F0Ac"}), IsEmpty());
}

TEST(SensorSections, HidingOneOfTwoReadingsKeepsTheSection) {
    const Readings readings{readingOf("TC0P", "CPU A"), readingOf("TC1P", "CPU B")};
    const std::vector<SensorSectionModel> sections = sectionsOf(readings, {"TC0P"});
    ASSERT_EQ(sections.size(), 1U);
    EXPECT_THAT(keysOf(sections.front().readings), ElementsAre("TC1P"));
}

TEST(SensorSections, AReadingWithoutAValueToShowMakesNoSection) {
    Readings readings{readingOf("TC0P", "CPU")};
    readings.front().value = "—";
    EXPECT_THAT(sectionIds(readings), IsEmpty());
}

TEST(SensorSections, TheRowsOfASectionAreItsSortedReadings) {
    const Readings readings{readingOf("TC2C", "Core 2"), readingOf("TC10", "Core 10"),
                            readingOf("TC0P", "CPU Proximity"), readingOf("TC1C", "Core 1")};
    const std::vector<SensorSectionModel> sections = sectionsOf(readings);
    ASSERT_EQ(sections.size(), 1U);
    EXPECT_THAT(sections.front().readings,
                ElementsAre(&readings[2], &readings[3], &readings[0], &readings[1]));
}

} // namespace
} // namespace kelvinbar::sensor_sections_test
