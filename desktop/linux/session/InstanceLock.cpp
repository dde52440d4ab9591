#include "desktop/linux/session/InstanceLock.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sstream>
#include <string_view>
#include <sys/stat.h>
#include <utility>

#include <unistd.h>

namespace kelvinbar {

namespace {

/// The sticky bit exempts the file from the periodic clean-up of runtime folders.
constexpr mode_t lockFileMode = S_IRUSR | S_IWUSR | S_ISVTX;

/// Unlike those of lockf, these locks belong to the open file, so that closing another descriptor of it keeps
/// them.
struct flock wholeFile() {
    struct flock lock{};

    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return lock;
}

std::string environmentText(const char* name) {
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nobody writes it
    return value == nullptr ? std::string() : std::string(value);
}

/// ":1.0" is a screen of the display ":1".
std::string withoutScreen(const std::string& display) {
    const std::size_t colon = display.rfind(':');
    return colon == std::string::npos ? display : display.substr(0, display.find('.', colon));
}

void writePlace(int descriptor, const InstancePlace& place) {
    const std::string text =
        place.process + "\n" + place.display + "\n" + place.waylandDisplay + "\n" + place.session + "\n";
    // An incomplete place is one with unknown texts.
    if (::ftruncate(descriptor, 0) == 0) {
        static_cast<void>(::pwrite(descriptor, text.data(), text.size(), 0) == 0);
    }
}

InstancePlace readPlace(int descriptor) {
    std::array<char, 1024> bytes{};
    const ssize_t size = ::pread(descriptor, bytes.data(), bytes.size(), 0);
    std::istringstream text(std::string(bytes.data(), size < 0 ? 0 : static_cast<std::size_t>(size)));
    InstancePlace place;
    for (std::string* const line : {&place.process, &place.display, &place.waylandDisplay, &place.session}) {
        std::getline(text, *line);
    }
    return place;
}

bool isSame(const std::string& one, const std::string& other) { return !one.empty() && one == other; }

bool hasDisplay(const InstancePlace& place) {
    return !place.display.empty() || !place.waylandDisplay.empty();
}

} // namespace

InstancePlace ownPlace() {
    return {.process = std::to_string(::getpid()),
            .display = withoutScreen(environmentText("DISPLAY")),
            .waylandDisplay = environmentText("WAYLAND_DISPLAY"),
            .session = environmentText("XDG_SESSION_ID")};
}

bool areOnDifferentDisplays(const InstancePlace& one, const InstancePlace& other) {
    return hasDisplay(one) && hasDisplay(other) && !isSame(one.display, other.display) &&
           !isSame(one.waylandDisplay, other.waylandDisplay);
}

bool InstanceLock::take(const InstancePlace& place) {
    if (file_.empty() || descriptor_ >= 0) return true;
    const int descriptor = ::open(file_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (descriptor < 0) return true;
    struct flock lock = wholeFile();
    if (::fcntl(descriptor, F_OFD_SETLK, &lock) != 0) {
        const bool isHeld = errno == EAGAIN || errno == EACCES;
        ::close(descriptor);
        return !isHeld;
    }
    ::fchmod(descriptor, lockFileMode);
    writePlace(descriptor, place);
    descriptor_ = descriptor;
    return true;
}

void InstanceLock::release() {
    if (descriptor_ >= 0) ::close(std::exchange(descriptor_, -1));
}

std::optional<InstancePlace> InstanceLock::holder() const {
    if (file_.empty() || descriptor_ >= 0) return std::nullopt;
    const int descriptor = ::open(file_.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    if (descriptor < 0) return std::nullopt;
    struct flock lock = wholeFile(); // only asked for: taking it would be in the way of another start
    std::optional<InstancePlace> place;
    if (::fcntl(descriptor, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK) place = readPlace(descriptor);
    ::close(descriptor);
    return place;
}

std::filesystem::path instanceLockFile(const std::string& name) {
    const std::string folder = environmentText("XDG_RUNTIME_DIR");
    if (!folder.starts_with('/')) return {};
    return std::filesystem::path(folder) / (name + ".lock");
}

} // namespace kelvinbar
