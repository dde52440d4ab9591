#include "machines/linux/sources/ThermalZones.h"

#include "tests/machines/linux/TemporaryTree.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace kelvinbar::thermal_zones_test {

namespace {

using fakes::TemporaryTree;

struct TripPoint {
    std::string type;
    int temperature; ///< thousandths of a degree Celsius
};

class ThermalZones : public testing::Test {
  protected:
    TemporaryTree tree;

    void addZone(std::string_view name, std::string_view temperature,
                 const std::vector<TripPoint>& tripPoints) {
        const std::filesystem::path zone = name;
        tree.write(zone / "temp", temperature);
        for (std::size_t index = 0; index < tripPoints.size(); ++index) {
            const std::string point = "trip_point_" + std::to_string(index);
            tree.write(zone / (point + "_type"), tripPoints[index].type + "\n");
            tree.write(zone / (point + "_temp"), std::to_string(tripPoints[index].temperature) + "\n");
        }
    }

    [[nodiscard]] std::optional<int> state() const { return thermalStateOfZones(tree.root()); }
};

TEST_F(ThermalZones, AZoneBelowItsTripPointsIsNominal) {
    addZone("thermal_zone0", "45000\n", {{"critical", 100000}, {"hot", 90000}, {"passive", 80000}});
    EXPECT_EQ(state(), 0);
}

TEST_F(ThermalZones, ATripPointIsReachedAtItsVeryTemperature) {
    for (const auto& [temperature, expected] : {std::pair{"79999\n", 0},
                                                {"80000\n", 1},
                                                {"89999\n", 1},
                                                {"90000\n", 2},
                                                {"99999\n", 2},
                                                {"100000\n", 3},
                                                {"150000\n", 3}}) {
        SCOPED_TRACE(temperature);
        addZone("thermal_zone0", temperature, {{"critical", 100000}, {"hot", 90000}, {"passive", 80000}});
        EXPECT_EQ(state(), expected);
    }
}

TEST_F(ThermalZones, TheOrderOfTripPointsDoesNotMatter) {
    addZone("thermal_zone0", "101000\n", {{"passive", 80000}, {"critical", 100000}, {"hot", 90000}});
    EXPECT_EQ(state(), 3);
}

TEST_F(ThermalZones, TripPointsThatOnlyStartAFanOrAreUnknownDoNotCount) {
    addZone("thermal_zone0", "75000\n", {{"active", 50000}, {"Critical", 50000}, {"warm", 50000}});
    EXPECT_EQ(state(), 0);
}

TEST_F(ThermalZones, ATripPointBehindOthersThatDoNotCountIsStillSeen) {
    addZone("thermal_zone0", "75000\n", {{"active", 50000}, {"critical", 0}, {"passive", 70000}});
    EXPECT_EQ(state(), 1);
}

TEST_F(ThermalZones, TripPointsBelow40DegreesAreNotBelieved) {
    for (const int temperature : {-274000, -1, 0, 1, 20000, 39999}) {
        SCOPED_TRACE(temperature);
        addZone("thermal_zone0", "45000\n", {{"critical", temperature}});
        EXPECT_EQ(state(), 0);
    }
    addZone("thermal_zone0", "45000\n", {{"critical", 40000}});
    EXPECT_EQ(state(), 3);
}

TEST_F(ThermalZones, ATripPointWithoutATemperatureIsPassedOver) {
    addZone("thermal_zone0", "95000\n", {{"critical", 50000}, {"passive", 80000}});
    tree.write("thermal_zone0/trip_point_0_temp", "unknown\n");
    EXPECT_EQ(state(), 1);
    tree.remove("thermal_zone0/trip_point_0_temp");
    EXPECT_EQ(state(), 1);
}

TEST_F(ThermalZones, AZoneWithoutTripPointsIsNominal) {
    addZone("thermal_zone0", "120000\n", {});
    EXPECT_EQ(state(), 0);
}

TEST_F(ThermalZones, TheHottestZoneDecides) {
    addZone("thermal_zone0", "45000\n", {{"critical", 100000}});
    addZone("thermal_zone1", "91000\n", {{"hot", 90000}});
    addZone("thermal_zone10", "81000\n", {{"passive", 80000}});
    EXPECT_EQ(state(), 2);
}

TEST_F(ThermalZones, AZoneThatCannotBeReadIsPassedOver) {
    addZone("thermal_zone0", "not a number\n", {{"critical", 50000}});
    tree.makeDirectory("thermal_zone1/temp");
    tree.makeDirectory("thermal_zone2");
    addZone("thermal_zone3", "81000\n", {{"passive", 80000}});
    EXPECT_EQ(state(), 1);
}

TEST_F(ThermalZones, TheStateIsUnknownWhereNoZoneCanBeRead) {
    EXPECT_EQ(state(), std::nullopt) << "no zones";
    addZone("thermal_zone0", "\n", {{"critical", 50000}});
    EXPECT_EQ(state(), std::nullopt) << "an unreadable zone";
}

TEST_F(ThermalZones, OtherDirectoriesAreNoZones) {
    addZone("cooling_device0", "200000\n", {{"critical", 50000}});
    addZone("hwmon0", "200000\n", {{"critical", 50000}});
    EXPECT_EQ(state(), std::nullopt);
}

TEST_F(ThermalZones, TheStateIsUnknownWithoutTheDirectory) {
    EXPECT_EQ(thermalStateOfZones(tree.root() / "missing"), std::nullopt);
    EXPECT_EQ(thermalStateOfZones(tree.write("file", "text")), std::nullopt);
}

} // namespace
} // namespace kelvinbar::thermal_zones_test
