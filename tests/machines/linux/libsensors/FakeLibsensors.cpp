#include "tests/machines/linux/libsensors/FakeLibsensors.h"

#include <cstring>
#include <list>
#include <sensors/error.h>
#include <thread>

using kelvinbar::fakes::FakeLibraryChip;
using kelvinbar::fakes::FakeLibsensors;

namespace {

/// A chip in its state at the start.
struct StartedChip {
    FakeLibraryChip chip;
    sensors_chip_name name{};
    std::vector<sensors_feature> features;
    std::vector<sensors_subfeature> values;
};

FakeLibsensors state;
std::list<StartedChip> started;
bool isStarted = false;

/// One call of the library.
class Call {
  public:
    explicit Call(bool isAllowed) {
        if (state.callers.fetch_add(1) > 0) state.hadTwoCallers = true;
        if (!isAllowed) ++state.misuses;
        std::this_thread::yield(); // lets another thread enter unless a lock prevents it
    }

    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    ~Call() { state.callers.fetch_sub(1); }
};

StartedChip* find(const sensors_chip_name* name) {
    for (StartedChip& chip : started) {
        if (&chip.name == name) return &chip;
    }
    ++state.misuses;
    return nullptr;
}

void start(const FakeLibraryChip& source) {
    StartedChip& chip = started.emplace_back();
    chip.chip = source;
    chip.name.path = chip.chip.path.data();
    int number = 0;
    for (auto& feature : chip.chip.features) {
        chip.features.push_back({feature.name.data(), number, feature.type, 0, 0});
        chip.values.push_back({feature.name.data(), number, feature.valueType, number, SENSORS_MODE_R});
        ++number;
    }
}

} // namespace

extern "C" {

FakeLibsensors* fakeLibsensors() { return &state; }

const char* libsensors_version = "9.8.7";
void (*sensors_parse_error)(const char*, int) = nullptr;
void (*sensors_parse_error_wfn)(const char*, const char*, int) = nullptr;

const char* sensors_strerror(int) { return "Kernel interface error"; }

int sensors_init(FILE*) {
    const Call call(!isStarted);
    if (!state.parseError.empty() && sensors_parse_error_wfn != nullptr) {
        sensors_parse_error_wfn(state.parseError.c_str(), "/etc/sensors.d/board", 3);
    }
    if (state.initResult != 0) return state.initResult;
    ++state.inits;
    isStarted = true;
    for (const FakeLibraryChip& chip : state.chips) start(chip);
    return 0;
}

void sensors_cleanup(void) {
    const Call call(isStarted);
    ++state.cleanups;
    isStarted = false;
    started.clear();
}

const sensors_chip_name* sensors_get_detected_chips(const sensors_chip_name*, int* nr) {
    const Call call(isStarted);
    int index = 0;
    for (const StartedChip& chip : started) {
        if (index++ != *nr) continue;
        ++*nr;
        return &chip.name;
    }
    return nullptr;
}

const sensors_feature* sensors_get_features(const sensors_chip_name* name, int* nr) {
    const Call call(isStarted);
    StartedChip* const chip = find(name);
    if (chip == nullptr || *nr >= static_cast<int>(chip->features.size())) return nullptr;
    return &chip->features[static_cast<std::size_t>((*nr)++)];
}

const sensors_subfeature* sensors_get_subfeature(const sensors_chip_name* name,
                                                 const sensors_feature* feature,
                                                 sensors_subfeature_type type) {
    const Call call(isStarted);
    StartedChip* const chip = find(name);
    if (chip == nullptr) return nullptr;
    sensors_subfeature& value = chip->values[static_cast<std::size_t>(feature->number)];
    return value.type == type ? &value : nullptr;
}

#ifndef WITHOUT_LABELS
char* sensors_get_label(const sensors_chip_name* name, const sensors_feature* feature) {
    const Call call(isStarted);
    StartedChip* const chip = find(name);
    if (chip == nullptr) return nullptr;
    return strdup(chip->chip.features[static_cast<std::size_t>(feature->number)].label.c_str());
}
#endif

int sensors_get_value(const sensors_chip_name* name, int number, double* value) {
    const Call call(isStarted);
    ++state.reads;
    StartedChip* const chip = find(name);
    if (chip == nullptr) return -SENSORS_ERR_NO_ENTRY;
    const auto& feature = chip->chip.features[static_cast<std::size_t>(number)];
    *value = feature.value;
    return feature.error;
}

} // extern "C"
