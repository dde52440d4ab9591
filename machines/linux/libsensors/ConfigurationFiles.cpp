#include "machines/linux/libsensors/ConfigurationFiles.h"

#include "machines/linux/files/SystemFile.h"

#include <algorithm>
#include <sys/stat.h>

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

void append(std::string& stamp, const timespec& time) {
    stamp.append(std::to_string(time.tv_sec)).append(".").append(std::to_string(time.tv_nsec)).append(" ");
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
    for (const fs::path& file : files) {
        struct stat status {};

        if (::stat(file.c_str(), &status) != 0) continue;
        stamp.append(file.native()).append(" ");
        append(stamp, status.st_mtim);
        append(stamp, status.st_ctim);
        stamp.append(std::to_string(status.st_ino)).append(" ");
        stamp.append(std::to_string(status.st_size)).append("\n");
    }
    return stamp;
}

} // namespace kelvinbar
