#include "machines/linux/libsensors/ConfigurationFiles.h"

#include "machines/linux/files/FileStamp.h"
#include "machines/linux/files/SystemFile.h"

#include <algorithm>

namespace kelvinbar {

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> filesIn(const fs::path& folder) {
    std::vector<fs::path> files;
    for (const std::string& name : folderEntries(folder)) {
        if (!name.starts_with('.')) files.push_back(folder / name);
    }
    std::ranges::sort(files);
    return files;
}

} // namespace

std::vector<fs::path> configurationFiles(const fs::path& directory) {
    std::vector<fs::path> files = filesIn(directory / "sensors.d");
    for (const char* const name : {"sensors3.conf", "sensors.conf"}) {
        if (!isThere(directory / name)) continue;
        files.insert(files.begin(), directory / name);
        break;
    }
    return files;
}

std::string stampOf(const std::vector<fs::path>& files) {
    std::string stamp;
    for (const fs::path& file : files) stamp.append(fileStamp(file));
    return stamp;
}

} // namespace kelvinbar
