#include "desktop/linux/session/AlertSound.h"

#include <QGuiApplication>
#include <QLibrary>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <xcb/xcb.h>

#include <unistd.h>

namespace kelvinbar {

namespace {

// The interface of libcanberra 0, which is loaded when it is first needed: few installations lack it, but the
// program runs without.
struct CanberraContext;
using CreateContext = int (*)(CanberraContext**);
using Play = int (*)(CanberraContext*, std::uint32_t id, ...);
using DestroyContext = int (*)(CanberraContext*);

constexpr int canberraVersion = 0;
constexpr int canberraSuccess = 0;

/// Longer than the bell of any theme. The connection to the sound server ends with it.
constexpr std::chrono::seconds longestBell{5};

struct Canberra {
    CreateContext create;
    Play play;
    DestroyContext destroy;
};

/// No value if the library or one of the functions is missing. The library stays loaded.
std::optional<Canberra> loadCanberra() {
    QLibrary library("canberra", canberraVersion);
    const Canberra loaded{.create = reinterpret_cast<CreateContext>(library.resolve("ca_context_create")),
                          .play = reinterpret_cast<Play>(library.resolve("ca_context_play")),
                          .destroy = reinterpret_cast<DestroyContext>(library.resolve("ca_context_destroy"))};
    const bool isComplete = loaded.create != nullptr && loaded.play != nullptr && loaded.destroy != nullptr;
    return isComplete ? std::optional(loaded) : std::nullopt;
}

/// Plays the event "bell" of the sound theme.
bool playThemeBell() {
    const auto canberra = loadCanberra();
    CanberraContext* context = nullptr;
    if (!canberra || canberra->create(&context) != canberraSuccess) return false;
    constexpr std::uint32_t anyId = 0;
    const bool isPlaying = canberra->play(context, anyId, "event.id", "bell",
                                          static_cast<const char*>(nullptr)) == canberraSuccess;
    const std::function<void()> end = [context, destroy = canberra->destroy] { destroy(context); };
    isPlaying ? QTimer::singleShot(longestBell, qGuiApp, end) : end();
    return isPlaying;
}

bool ringXBell() {
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 == nullptr) return false;
    constexpr std::int8_t usualVolume = 0;
    xcb_bell(x11->connection(), usualVolume);
    return xcb_flush(x11->connection()) > 0;
}

bool ringTerminalBell() { return isatty(STDERR_FILENO) == 1 && std::fputc('\a', stderr) != EOF; }

} // namespace

void playAlert(const std::vector<AlertWay>& ways) {
    static_cast<void>(std::ranges::any_of(ways, [](const AlertWay& way) { return way(); }));
}

bool hasThemeBell() { return loadCanberra().has_value(); }

Finding alertFinding(bool hasThemeBell) {
    constexpr auto subject = "alert sound";
    if (hasThemeBell) return {.subject = subject, .found = "of the sound theme, through libcanberra"};
    return {.subject = subject,
            .state = FindingState::note,
            .found = "the bell of the X server or of the terminal, since libcanberra cannot be loaded",
            .advice = "Install the package libcanberra0 for that of the sound theme"};
}

std::vector<AlertWay> alertWays() { return {playThemeBell, ringXBell, ringTerminalBell}; }

} // namespace kelvinbar
