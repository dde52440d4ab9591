// Reading the sensors of this machine's /sys: Kelvinbar's pass, the bare readings it cannot do without, and
// the same values through libsensors where that is installed. scripts/bench-sensors.sh runs it over a made-up
// tree and counts its system calls.

#include "machines/linux/BootTimeClock.h"
#include "machines/linux/LinuxMachine.h"
#include "machines/linux/sources/HwmonChips.h"
#include "store/LoadPass.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <vector>

#ifdef KELVINBAR_HAS_LIBSENSORS
#include <sensors/sensors.h>
#endif

namespace kelvinbar::bench {

namespace {

namespace fs = std::filesystem;

/// Processor time of this process, in nanoseconds.
std::int64_t processorTime() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto nanoseconds = [](const timeval& time) {
        return std::int64_t{time.tv_sec} * 1'000'000'000 + std::int64_t{time.tv_usec} * 1'000;
    };
    return nanoseconds(usage.ru_utime) + nanoseconds(usage.ru_stime);
}

/// A reader's values in one pass, and what it costs.
struct Result {
    std::size_t values = 0;
    std::int64_t nanosecondsAPass = 0;
};

template <typename Pass>
Result measured(int passes, Pass pass) {
    Result result;
    result.values = pass();
    const std::int64_t before = processorTime();
    for (int count = 0; count < passes; ++count) pass();
    result.nanosecondsAPass = passes > 0 ? (processorTime() - before) / passes : 0;
    return result;
}

Result readThroughKelvinbar(int passes) {
    useMachine(makeLinuxMachine("/", std::make_shared<BootTimeClock>(), [](const std::string&) {}));
    const auto known = loadReadings({}, true, {}, true).discoveredKeys.value_or(KeySet());
    const Result result =
        measured(passes, [&] { return loadReadings({}, false, known, true).readings.size(); });
    useMachine({});
    return result;
}

#ifdef KELVINBAR_HAS_LIBSENSORS
Result readThroughLibsensors(int passes) {
    sensors_init(nullptr);

    struct Value {
        const sensors_chip_name* chip;
        int number;
    };

    std::vector<Value> values;
    int chipNumber = 0;
    while (const sensors_chip_name* const chip = sensors_get_detected_chips(nullptr, &chipNumber)) {
        int featureNumber = 0;
        while (const sensors_feature* const feature = sensors_get_features(chip, &featureNumber)) {
            int subfeatureNumber = 0;
            while (const auto* const subfeature =
                       sensors_get_all_subfeatures(chip, feature, &subfeatureNumber)) {
                // The first of each type is its input.
                const bool isInput =
                    (subfeature->type & 0xFF) == 0 && (subfeature->flags & SENSORS_MODE_R) != 0;
                if (isInput) values.push_back({chip, subfeature->number});
            }
        }
    }
    const Result result = measured(passes, [&] {
        std::size_t read = 0;
        for (const Value& value : values) {
            double number = 0;
            if (sensors_get_value(value.chip, value.number, &number) == 0) ++read;
        }
        return read;
    });
    sensors_cleanup();
    return result;
}
#endif

/// Chips of a made-up machine: `channels` channels, twenty a chip.
void makeTree(const fs::path& classFolder, int channels) {
    constexpr int channelsOfAChip = 20;
    for (int channel = 0; channel < channels; ++channel) {
        const int place = channel % channelsOfAChip;
        const fs::path chip = classFolder / ("hwmon" + std::to_string(channel / channelsOfAChip));
        fs::create_directories(chip);
        std::ofstream(chip / "name") << "benchchip" << channel / channelsOfAChip << '\n';
        const std::string stem =
            place < 10 ? "temp" + std::to_string(place + 1) : "in" + std::to_string(place - 10);
        std::ofstream(chip / (stem + "_input")) << 20'000 + 137 * channel << '\n';
    }
}

void print(std::string_view reader, const Result& result) {
    std::cout << reader << ' ' << result.values << " values " << result.nanosecondsAPass << " ns/pass\n";
}

int run(const std::vector<std::string_view>& words) {
    int number = 0;
    if (words.size() == 3) std::from_chars(words[2].data(), words[2].data() + words[2].size(), number);
    if (words.size() == 3 && words[0].starts_with('/')) {
        makeTree(words[0], number);
    } else if (words.size() == 3 && words[1] == "kelvinbar") {
        print(words[1], readThroughKelvinbar(number));
#ifdef KELVINBAR_HAS_LIBSENSORS
    } else if (words.size() == 3 && words[1] == "libsensors") {
        print(words[1], readThroughLibsensors(number));
#endif
    } else {
        std::cerr << "usage: kelvinbar_sensor_bench read kelvinbar|libsensors PASSES\n"
                     "       kelvinbar_sensor_bench /FOLDER tree CHANNELS\n";
        return 2;
    }
    return 0;
}

} // namespace

} // namespace kelvinbar::bench

int main(int argc, char** argv) { return kelvinbar::bench::run({argv + 1, argv + argc}); }
