// Reads the sensors of this machine's /sys: a pass and a discovery of Kelvinbar, the bare reads that no
// reader can avoid, and the same values through libsensors if it is installed. scripts/bench-sensors.sh runs
// it over a synthetic tree and counts its system calls.

#include "base/Log.h"
#include "base/NumberText.h"
#include "bench/ProcessorTime.h"
#include "machines/linux/BootTimeClock.h"
#include "machines/linux/LinuxMachine.h"
#include "machines/linux/files/SensorFile.h"
#include "machines/linux/sources/SensorChips.h"
#include "process/StandardErrorSink.h"
#include "store/LoadPass.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#ifdef KELVINBAR_HAS_LIBSENSORS
#include <sensors/sensors.h>
#endif

namespace kelvinbar::bench {

namespace {

namespace fs = std::filesystem;

/// The values of one pass, and what it costs.
struct Result {
    std::size_t values = 0;
    std::int64_t nanosecondsAPass = 0;
};

template <typename Pass>
Result measured(int passes, Pass pass) {
    Result result;
    result.values = pass();
    const auto before = processorTime();
    for (int count = 0; count < passes; ++count) pass();
    result.nanosecondsAPass =
        passes > 0 ? std::chrono::nanoseconds(processorTime() - before).count() / passes : 0;
    return result;
}

/// A machine over the real root.
struct RealMachine {
    StandardErrorSink sink;
    Log log{sink};
    Machine machine = makeLinuxMachine("/", std::make_shared<BootTimeClock>(), log);
};

const auto noKeys = std::make_shared<const KeySet>();

Result readThroughKelvinbar(int passes) {
    const RealMachine real;
    const LoadPass first{.fixedCandidates = noKeys, .shouldDiscover = true, .cachedDynamicKeys = noKeys};
    auto known = loadReadings(real.machine, first).discoveredKeys.value_or(KeySet());
    const LoadPass pass{.fixedCandidates = noKeys,
                        .cachedDynamicKeys = std::make_shared<const KeySet>(std::move(known)),
                        .readSuperIOFans = true};
    return measured(passes, [&] { return loadReadings(real.machine, pass).readings.size(); });
}

/// A discovery, as every five minutes.
Result discoverThroughKelvinbar(int passes) {
    const RealMachine real;
    return measured(passes, [&] { return real.machine.source->discoverKeys({}).size(); });
}

/// The lower bound for a pass: reads each file in place and parses its number.
Result readInPlace(int passes) {
    StandardErrorSink sink;
    Log log(sink);
    std::vector<std::shared_ptr<const SensorFile>> open;
    for (const SensorChip& chip : sensorChips("/", nullptr, log)) {
        for (const SensorChannel& channel : chip.channels) {
            open.push_back(std::make_shared<const SensorFile>(channel.file));
        }
    }
    return measured(passes, [&] {
        return static_cast<std::size_t>(
            std::ranges::count_if(open, [](const auto& file) { return file->number().has_value(); }));
    });
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

/// Chips of a synthetic machine with `channels` channels, twenty per chip.
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

using Reader = Result (*)(int passes);

constexpr std::array readers{
    std::pair<std::string_view, Reader>{"floor", readInPlace},
    std::pair<std::string_view, Reader>{"kelvinbar", readThroughKelvinbar},
    std::pair<std::string_view, Reader>{"discovery", discoverThroughKelvinbar},
#ifdef KELVINBAR_HAS_LIBSENSORS
    std::pair<std::string_view, Reader>{"libsensors", readThroughLibsensors},
#endif
};

int run(const std::vector<std::string_view>& words) {
    const int number = words.size() == 3 ? wholeNumberIn<int>(words[2]).value_or(-1) : -1;
    if (number >= 0 && words[1] == "tree") {
        makeTree(words[0], number);
        return 0;
    }
    const auto* const reader =
        number < 0 ? readers.end()
                   : std::ranges::find(readers, words[1], &std::pair<std::string_view, Reader>::first);
    if (reader == readers.end()) {
        std::cerr << "usage: kelvinbar_sensor_bench read floor|kelvinbar|discovery|libsensors PASSES\n"
                     "       kelvinbar_sensor_bench FOLDER tree CHANNELS\n";
        return 2;
    }
    print(words[1], reader->second(number));
    return 0;
}

} // namespace

} // namespace kelvinbar::bench

int main(int argc, char** argv) { return kelvinbar::bench::run({argv + 1, argv + argc}); }
