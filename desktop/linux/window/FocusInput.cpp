#include "desktop/linux/window/FocusInput.h"

#include <QGuiApplication>
#include <QStyleHints>
#include <chrono>
#include <utility>

namespace kelvinbar {

namespace {

using namespace std::chrono_literals;

/// Trays report a click within this time after the button is released.
constexpr auto longestReport = 400ms;

} // namespace

FocusInput::FocusInput(WindowSystem system) : system_(std::move(system)) {
    reportWait_.setSingleShot(true);
    reportWait_.setInterval(longestReport);
    connect(&reportWait_, &QTimer::timeout, this, [this] { setDismissingPress(DismissingPress::none); });
}

void FocusInput::prepare(QWindow& window) {
    window.setFlags(Qt::Dialog | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    system_.prepare(window);
}

void FocusInput::placeWindow(QWindow& window, const QRect& frame, const QRect& area) {
    area_ = area;
    system_.placeWindow(window, frame, area);
}

void FocusInput::acquire(QWindow& window, std::function<void()> onDismissed) {
    setDismissingPress(DismissingPress::none);
    window_ = &window;
    onDismissed_ = std::move(onDismissed);
    hadFocus_ = window.isActive();
    connect(&window, &QWindow::activeChanged, this, [this] { activeChanged(); });
    presses_ = system_.watchPresses({.pressed = [this](QPoint place) { pressed(place); },
                                     .released = [this] { released(); },
                                     .leaves = [this] { userLeaves(); }});
    system_.activate(window, std::exchange(right_, {}));
}

void FocusInput::release(QWindow& window) {
    disconnect(&window, nullptr, this, nullptr);
    window_ = nullptr;
    if (dismissingPress_ == DismissingPress::none) presses_ = nullptr;
}

void FocusInput::grantFocus(const FocusRight& right) {
    if (window_ == nullptr) {
        right_ = right;
    } else if (!window_->isActive()) {
        system_.activate(*window_, right);
    }
}

void FocusInput::userLeaves() {
    if (window_ != nullptr) dismiss(DismissingPress::none);
}

bool FocusInput::takesDismissingPress() {
    const bool takesIt = dismissingPress_ != DismissingPress::none;
    setDismissingPress(DismissingPress::none);
    return takesIt;
}

void FocusInput::activeChanged() {
    if (window_->isActive()) {
        hadFocus_ = true;
    } else if (hadFocus_) {
        dismiss(DismissingPress::unreported);
    }
}

void FocusInput::pressed(QPoint place) {
    if (window_ != nullptr) {
        if (area_.translated(window_->position()).contains(place)) return;
        lastPress_ = place;
        return dismiss(DismissingPress::held);
    }
    setDismissingPress(continuesDismissal(place) ? DismissingPress::held : DismissingPress::none);
    lastPress_ = place;
}

/// Whether a press after the dismissal is its cause, or the second one of a double-click.
bool FocusInput::continuesDismissal(QPoint place) const {
    if (dismissingPress_ == DismissingPress::unreported) return true;
    return dismissingPress_ == DismissingPress::released &&
           (place - lastPress_).manhattanLength() <= QGuiApplication::styleHints()->startDragDistance();
}

void FocusInput::released() {
    if (dismissingPress_ == DismissingPress::held) setDismissingPress(DismissingPress::released);
}

void FocusInput::dismiss(DismissingPress press) {
    setDismissingPress(press);
    const auto dismissed = std::exchange(onDismissed_, nullptr);
    if (dismissed) dismissed();
}

void FocusInput::setDismissingPress(DismissingPress press) {
    dismissingPress_ = press;
    const bool isOver = press == DismissingPress::unreported || press == DismissingPress::released;
    isOver ? reportWait_.start() : reportWait_.stop();
    if (press == DismissingPress::none && window_ == nullptr) presses_ = nullptr;
}

} // namespace kelvinbar
