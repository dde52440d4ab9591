#include "desktop/linux/session/AlertSound.h"

#include <QGuiApplication>
#include <QLibrary>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
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

/// Plays the event "bell" of the sound theme.
bool playThemeBell() {
    QLibrary library("canberra", canberraVersion);
    const auto create = reinterpret_cast<CreateContext>(library.resolve("ca_context_create"));
    const auto play = reinterpret_cast<Play>(library.resolve("ca_context_play"));
    const auto destroy = reinterpret_cast<DestroyContext>(library.resolve("ca_context_destroy"));
    CanberraContext* context = nullptr;
    if (create == nullptr || play == nullptr || destroy == nullptr) return false;
    if (create(&context) != canberraSuccess) return false;
    constexpr std::uint32_t anyId = 0;
    const bool isPlaying =
        play(context, anyId, "event.id", "bell", static_cast<const char*>(nullptr)) == canberraSuccess;
    const std::function<void()> end = [context, destroy] { destroy(context); };
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

std::vector<AlertWay> alertWays() { return {playThemeBell, ringXBell, ringTerminalBell}; }

} // namespace kelvinbar
