#include "desktop/linux/window/WindowSystem.h"

#include "desktop/linux/window/x11/X11Presses.h"
#include "desktop/linux/window/x11/X11Session.h"
#include "desktop/linux/window/x11/X11Time.h"

#include <QCursor>
#include <utility>

namespace kelvinbar {

namespace {

/// Compositors over wlroots put X11 windows into the middle of the screen, again after each resize.
constexpr auto centeringManager = "wlroots wm";

constexpr auto tokenVariable = "XDG_ACTIVATION_TOKEN";

/// The time at the end of a startup notification id, as in "host_TIME12345". 0 if there is none.
uint timeOfStartupId(const QString& id) {
    const QString mark = "_TIME";
    const qsizetype start = id.lastIndexOf(mark);
    return start < 0 ? 0 : id.mid(start + mark.size()).toUInt();
}

xcb_window_t idOf(const QWindow& window) { return static_cast<xcb_window_t>(window.winId()); }

QRect scaled(const QRect& rect, qreal ratio) {
    return QRectF(rect.x() * ratio, rect.y() * ratio, rect.width() * ratio, rect.height() * ratio).toRect();
}

void activateOnX11(const X11Session& x11, QWindow& window, const FocusRight& right) {
    x11.endStartupFeedback(right.activationToken.toUtf8());
    if (!x11.windowManager().isEmpty()) {
        x11.activate(idOf(window), focusTime(right, x11Time()));
    } else {
        window.requestActivate();
    }
}

std::shared_ptr<void> presses(FocusInput::PressHandlers handlers) {
    return std::make_shared<X11Presses>(
        X11Presses::Handlers{.pressed = [report = std::move(handlers.pressed)] { report(QCursor::pos()); },
                             .released = std::move(handlers.released)});
}

FocusInput::WindowSystem x11WindowSystem(const X11Session& x11) {
    return {
        .look = [&x11] { return x11.isComposited() ? PopoverLook::shadowed : PopoverLook::plain; },
        .placesWindow = [&x11] { return x11.windowManager() != centeringManager; },
        .prepare =
            [&x11](QWindow& window) {
                window.create();
                x11.hideFromTaskbar(idOf(window));
            },
        .activate = [&x11](QWindow& window, const FocusRight& right) { activateOnX11(x11, window, right); },
        .placeWindow =
            [&x11](QWindow& window, const QRect& frame, const QRect& area) {
                window.setGeometry(frame);
                x11.setInputArea(idOf(window), scaled(area, window.devicePixelRatio()));
            },
        .watchPresses = presses};
}

/// Window managers that tile leave a window of a fixed size floating.
void placeWithFixedSize(QWindow& window, const QRect& frame, const QRect& /*area*/) {
    window.setGeometry(frame);
    window.setMinimumSize(window.size());
    window.setMaximumSize(window.size());
}

FocusInput::WindowSystem otherWindowSystem() {
    return {.look = [] { return PopoverLook::rounded; },
            .placesWindow = [] { return false; },
            .prepare = [](QWindow&) {},
            .activate = activateWithToken,
            .placeWindow = placeWithFixedSize,
            .watchPresses = [](const FocusInput::PressHandlers&) { return std::shared_ptr<void>(); }};
}

} // namespace

void activateWithToken(QWindow& window, const FocusRight& right) {
    // Programs that the panel starts must not inherit it.
    if (!right.activationToken.isEmpty()) qputenv(tokenVariable, right.activationToken.toUtf8());
    window.requestActivate();
    qunsetenv(tokenVariable);
}

uint focusTime(const FocusRight& right, uint now) {
    constexpr uint longest = 60'000; // milliseconds
    const uint claimed = right.timestamp != 0 ? right.timestamp : timeOfStartupId(right.activationToken);
    if (now == 0) return claimed;
    return claimed != 0 && now - claimed <= longest ? claimed : now;
}

FocusInput::WindowSystem popoverWindowSystem(const X11Session* x11) {
    return x11 == nullptr ? otherWindowSystem() : x11WindowSystem(*x11);
}

} // namespace kelvinbar
