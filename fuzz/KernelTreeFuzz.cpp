// Any files as those of the kernel. Input: lines "PATH CONTENT" for files and ">PATH TARGET" for links, below
// a root.

#include "base/Text.h"
#include "fuzz/Check.h"
#include "fuzz/InputText.h"
#include "fuzz/QuietLog.h"
#include "fuzz/StandingClock.h"
#include "machines/linux/LinuxMachine.h"
#include "store/LoadPass.h"
#include "store/SnapshotExport.h"
#include "tests/machines/linux/TemporaryTree.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace kelvinbar::fuzz {

namespace {

namespace fs = std::filesystem;

/// The kernel's tree has no deeper and no longer paths, and no more files of one device.
constexpr std::size_t mostParts = 12;
constexpr std::size_t longestPart = 64;
constexpr std::size_t mostLines = 128;

/// `path` below `root`, whatever it says.
fs::path confined(const fs::path& root, std::string_view path) {
    fs::path result = root;
    for (const std::string_view part : parts(path, '/', mostParts)) {
        const bool isName = !part.empty() && part != "." && part != ".." && part.size() <= longestPart &&
                            part.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
        if (isName) result /= part;
    }
    return result;
}

void addLine(const fs::path& root, std::string_view line) {
    const bool isLink = line.starts_with('>');
    if (isLink) line.remove_prefix(1);
    const auto fields = parts(line, ' ', 2);
    const fs::path path = confined(root, fields.front());
    if (path == root) return;
    std::error_code error; // what cannot be made is left out
    fs::create_directories(path.parent_path(), error);
    if (isLink) {
        fs::create_symlink(confined(root, field(fields, 1)), path, error);
    } else {
        std::ofstream(path, std::ios::binary) << field(fields, 1) << '\n';
    }
}

bool areUnique(const std::vector<std::string>& texts) {
    return std::set<std::string>(texts.begin(), texts.end()).size() == texts.size();
}

void checkReadings(const std::vector<RawReading>& readings) {
    for (const RawReading& reading : readings) {
        check(isValidUtf8(reading.key) && isValidUtf8(reading.value), "keys and values are text");
        check(std::isfinite(reading.numericValue.value_or(0)), "a number of the kernel is finite");
        if (!reading.name) continue; // a controller's key
        check(isValidUtf8(*reading.name) && trimmed(*reading.name) == *reading.name, "a name is clean text");
        check(!reading.name->empty() && characterCount(*reading.name) <= 40, "a name has 1 to 40 characters");
    }
}

void readTree(std::string_view input) {
    const fakes::TemporaryTree tree;
    for (const std::string_view line : parts(input, '\n', mostLines)) addLine(tree.root(), line);
    QuietLog quiet;
    Machine machine = makeLinuxMachine(tree.root(), std::make_shared<StandingClock>(), quiet.log());
    machine.watch = nullptr; // files of a disk answer, and threads would cost most of the time

    const std::vector<std::string> keys = machine.source->discoverKeys({});
    check(areUnique(keys), "each key is listed once");
    checkReadings(machine.source->readCandidateKeys(keys));

    const auto noKeys = std::make_shared<const KeySet>();
    const SMCLoadResult result = loadReadings(machine, {.fixedCandidates = noKeys,
                                                        .shouldDiscover = true,
                                                        .cachedDynamicKeys = noKeys,
                                                        .readSuperIOFans = true,
                                                        .carryKeysOver = true});
    check(isValidUtf8(snapshotText(result.readings, {})), "a snapshot is text");
    machine.source->close();
}

} // namespace

} // namespace kelvinbar::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kelvinbar::fuzz::readTree(kelvinbar::fuzz::inputText({data, size}));
    return 0;
}
