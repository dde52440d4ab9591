#include "machines/linux/files/FileStamp.h"

#include <sys/stat.h>

namespace kelvinbar {

namespace {

void append(std::string& stamp, const timespec& time) {
    stamp.append(std::to_string(time.tv_sec)).append(".").append(std::to_string(time.tv_nsec)).append(" ");
}

} // namespace

std::string fileStamp(const std::filesystem::path& file) {
    struct stat status{};

    if (::stat(file.c_str(), &status) != 0) return {};
    std::string stamp = file.native() + " ";
    append(stamp, status.st_mtim);
    append(stamp, status.st_ctim);
    stamp.append(std::to_string(status.st_ino)).append(" ");
    return stamp.append(std::to_string(status.st_size)).append("\n");
}

} // namespace kelvinbar
