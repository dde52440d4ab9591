#pragma once

#include <atomic>
#include <sensors/sensors.h>
#include <string>
#include <vector>

namespace kelvinbar::fakes {

struct FakeFeature {
    std::string name;
    sensors_feature_type type = SENSORS_FEATURE_TEMP;
    std::string label;
    double value = 0;
    int error = 0; ///< what a read of the value returns
    sensors_subfeature_type valueType = SENSORS_SUBFEATURE_TEMP_INPUT;
};

struct FakeLibraryChip {
    std::string path;
    std::vector<FakeFeature> features;
};

/// The behaviour of a fake shared library with the functions of libsensors, and a record of its use.
struct FakeLibsensors {
    std::vector<FakeLibraryChip> chips; ///< seen at the next start
    int initResult = 0;
    std::string parseError; ///< reported by each start; none when empty

    int inits = 0; ///< those that succeeded
    int cleanups = 0;
    int reads = 0;
    int misuses = 0;              ///< calls before a start, after a cleanup or with stale names
    std::atomic<int> callers = 0; ///< inside the library at the moment
    std::atomic<bool> hadTwoCallers = false;
};

} // namespace kelvinbar::fakes

/// Exported by the shared library: its state, which tests read and set while the library is loaded.
extern "C" kelvinbar::fakes::FakeLibsensors* fakeLibsensors();
