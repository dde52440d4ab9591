#include "desktop/linux/session/RuntimeFolder.h"

#include <cstdlib>
#include <string>
#include <sys/stat.h>

#include <unistd.h>

namespace kelvinbar {

namespace {

constexpr auto runtimeVariable = "XDG_RUNTIME_DIR";

bool isOursAlone(const std::filesystem::path& folder) {
    struct stat status{};

    return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid() &&
           (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

} // namespace

// NOLINTBEGIN(concurrency-mt-unsafe): before there are other threads
void provideRuntimeFolder(const std::filesystem::path& folders) {
    const char* const known = std::getenv(runtimeVariable);
    if (known != nullptr && *known != '\0') return;
    const std::filesystem::path folder = folders / std::to_string(::geteuid());
    if (isOursAlone(folder)) ::setenv(runtimeVariable, folder.c_str(), 1);
}

// NOLINTEND(concurrency-mt-unsafe)

} // namespace kelvinbar
