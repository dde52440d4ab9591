#pragma once

#include "base/Text.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

/// The machines that are attacked: the recorded ones, and two that are made for it.
namespace kelvinbar::fakes {

inline std::vector<std::filesystem::path> attackedMachines() {
    namespace fs = std::filesystem;
    std::vector<fs::path> trees;
    for (const char* const folder : {KELVINBAR_FIXTURES "/linux", KELVINBAR_ATTACKS}) {
        for (const auto& entry : fs::directory_iterator(folder)) {
            if (entry.path().extension() == ".tree") trees.push_back(entry.path());
        }
    }
    std::ranges::sort(trees);
    return trees;
}

inline std::string nameOfMachine(const testing::TestParamInfo<std::filesystem::path>& machine) {
    return replacedAll(machine.param.stem().string(), "-", "_");
}

/// Whether the machine has nothing to show. It is attacked all the same.
inline bool isWithoutReadings(const std::filesystem::path& machine) {
    return machine.stem() == "server-power-meter-odd"; // the meter's only value is out of range
}

} // namespace kelvinbar::fakes
