// Discoveries of generated machines, some of them far larger than any real one, and a plain walk over the
// same files as the lower bound, in one run. Fails if a channel costs more where there are many chips or
// channels, or too much beside the walk.
//
// usage: kelvinbar_discovery_bench [REPEATS]

#include "base/Log.h"
#include "base/NumberText.h"
#include "bench/ProcessorTime.h"
#include "machines/linux/BootTimeClock.h"
#include "machines/linux/sources/KernelSensorSource.h"
#include "process/StandardErrorSink.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace kelvinbar::bench {

namespace {

namespace fs = std::filesystem;
using Microseconds = std::chrono::duration<double, std::micro>;

struct Shape {
    std::size_t chips;
    std::size_t channelsOfAChip;

    [[nodiscard]] std::size_t channels() const { return chips * channelsOfAChip; }
};

/// A machine and a larger one of the same kind.
constexpr std::array shapes{std::pair(Shape{50, 20}, Shape{250, 20}),
                            std::pair(Shape{1, 1'000}, Shape{1, 5'000}),
                            std::pair(Shape{1'000, 1}, Shape{20'000, 1})};

/// By how much a channel of the larger machine may cost more. Growth with the square would be 5 and 20.
constexpr double largestGrowth = 1.5;

/// How many times the cost of the walk a channel may cost.
constexpr double largestRatio = 3;

/// A machine of that shape in a temporary folder, deleted by the destructor.
class GeneratedMachine {
  public:
    explicit GeneratedMachine(const Shape& shape) {
        std::string pattern = (fs::temp_directory_path() / "kelvinbar-bench-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) std::abort();
        root_ = pattern;
        fs::create_directories(chips());
        fs::create_directories(root_ / "sys/devices/platform");
        for (std::size_t chip = 0; chip < shape.chips; ++chip) addChip(chip, shape.channelsOfAChip);
    }

    GeneratedMachine(const GeneratedMachine&) = delete;
    GeneratedMachine& operator=(const GeneratedMachine&) = delete;

    ~GeneratedMachine() {
        std::error_code ignored;
        fs::remove_all(root_, ignored);
    }

    [[nodiscard]] const fs::path& root() const { return root_; }

    [[nodiscard]] fs::path chips() const { return root_ / "sys/class/hwmon"; }

  private:
    void addChip(std::size_t chip, std::size_t channels) const {
        const std::string number = std::to_string(chip);
        const fs::path device = root_ / "sys/devices/platform" / ("board." + number);
        const fs::path folder = device / "hwmon" / ("hwmon" + number);
        fs::create_directories(folder);
        fs::create_directory_symlink(device, folder / "device");
        fs::create_directory_symlink(folder, chips() / ("hwmon" + number));
        std::ofstream(folder / "name") << "board\n";
        for (std::size_t channel = 1; channel <= channels; ++channel) {
            const std::string stem = (channel % 2 == 0 ? "temp" : "in") + std::to_string(channel);
            std::ofstream(folder / (stem + "_input")) << 20'000 + channel << '\n';
        }
    }

    fs::path root_;
};

/// The least CPU time of several runs, divided by the number of channels.
template <typename Work>
double microsecondsAChannel(const Shape& shape, int repeats, Work work) {
    double shortest = std::numeric_limits<double>::infinity();
    for (int repeat = 0; repeat < repeats; ++repeat) {
        const auto before = processorTime();
        work();
        shortest = std::min(shortest, Microseconds(processorTime() - before).count());
    }
    return shortest / static_cast<double>(shape.channels());
}

/// Opens and reads every file of every chip, once.
std::size_t readEverything(const GeneratedMachine& machine) {
    std::size_t characters = 0;
    for (const auto& chip : fs::directory_iterator(machine.chips())) {
        for (const auto& file : fs::directory_iterator(chip)) {
            if (!file.is_regular_file()) continue;
            std::string line;
            std::getline(std::ifstream(file.path()), line);
            characters += line.size();
        }
    }
    return characters;
}

/// A first discovery.
std::size_t discover(const GeneratedMachine& machine, Log& log) {
    KernelSensorSource source(machine.root(), std::make_shared<BootTimeClock>(), log);
    return source.discoverKeys({}).size();
}

/// Returns the cost of a channel in microseconds; no value if not all channels were found, or at too high a
/// cost.
std::optional<double> measure(const Shape& shape, int repeats) {
    StandardErrorSink sink;
    Log log(sink);
    const GeneratedMachine machine(shape);
    if (discover(machine, log) != shape.channels()) {
        std::cerr << "not all channels were found\n";
        return std::nullopt;
    }
    const double ours = microsecondsAChannel(shape, repeats, [&] { discover(machine, log); });
    const double floor = microsecondsAChannel(shape, repeats, [&] { readEverything(machine); });
    std::cout << std::setw(8) << shape.chips << std::setw(16) << shape.channelsOfAChip << std::fixed
              << std::setprecision(1) << std::setw(16) << ours << std::setw(12) << floor << std::setw(10)
              << ours / floor << std::endl; // seen at once: the largest take a while
    if (ours <= largestRatio * floor) return ours;
    std::cerr << "a channel costs more than " << largestRatio << " times the walk\n";
    return std::nullopt;
}

bool isLinear(const Shape& small, const Shape& large, int repeats) {
    const auto cost = measure(small, repeats);
    const auto costOfLarge = cost ? measure(large, repeats) : std::nullopt;
    if (!costOfLarge) return false;
    if (*costOfLarge <= largestGrowth * *cost) return true;
    std::cerr << "a channel costs " << *costOfLarge / *cost << " times as much in the larger machine\n";
    return false;
}

int run(int repeats) {
    std::cout << std::setw(8) << "chips" << std::setw(16) << "channels a chip" << std::setw(16)
              << "us a channel" << std::setw(12) << "floor" << std::setw(10) << "ratio" << '\n';
    const bool areLinear = std::ranges::all_of(
        shapes, [&](const auto& pair) { return isLinear(pair.first, pair.second, repeats); });
    return areLinear ? 0 : 1;
}

} // namespace

} // namespace kelvinbar::bench

int main(int argc, char** argv) {
    const int repeats = argc > 1 ? kelvinbar::wholeNumberIn<int>(argv[1]).value_or(0) : 3;
    if (repeats > 0) return kelvinbar::bench::run(repeats);
    std::cerr << "usage: kelvinbar_discovery_bench [REPEATS]\n";
    return 2;
}
