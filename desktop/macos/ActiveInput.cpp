#include "desktop/macos/ActiveInput.h"

#include <QGuiApplication>
#include <utility>

namespace kelvinbar {

ActiveInput::ActiveInput(Requests requests)
    : requests_(std::move(requests))
    , isActive_(QGuiApplication::applicationState() == Qt::ApplicationActive) {
    QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, &context_,
                     [this](Qt::ApplicationState state) { stateChanged(state); });
}

void ActiveInput::prepare(QWindow& window) {
    window.setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    // Activation takes a while. Without this, a tool window would stay invisible until then.
    window.setProperty("_q_macAlwaysShowToolWindow", true);
    requests_.followActiveSpace(window);
    requests_.activate();
}

void ActiveInput::placeWindow(QWindow& window, const QRect& frame, const QRect& area) {
    PopoverInput::placeWindow(window, frame, area);
    requests_.updateShadow(window);
}

void ActiveInput::acquire(QWindow& window, std::function<void()> onDismissed) {
    window_ = &window;
    onDismissed_ = std::move(onDismissed);
    if (presses_ == nullptr) {
        presses_ = requests_.watchPresses([this](Point place) {
            if (!requests_.isOnItem(place)) dismiss();
        });
    }
    requests_.updateShadow(window);
    highlightItemSoon();
    if (!window.isActive()) window.requestActivate();
}

void ActiveInput::release(QWindow& window) {
    window_ = nullptr;
    presses_ = nullptr;
    requests_.setItemHighlighted(false);
    // If the user has activated another program, there is nothing to hide.
    if (!isActive_) return;
    // A window that is hidden only with its program would reappear with it.
    window.hide();
    isHiding_ = true;
    requests_.hide();
}

void ActiveInput::stateChanged(Qt::ApplicationState state) {
    const bool isOwnDoing = std::exchange(isHiding_, false);
    isActive_ = state == Qt::ApplicationActive;
    if (isActive_) {
        if (window_ != nullptr) window_->requestActivate();
    } else if (!isOwnDoing) {
        dismiss();
    }
}

/// The item's button takes its own highlight away once it has handled the click that opened the window.
void ActiveInput::highlightItemSoon() {
    QMetaObject::invokeMethod(
        &context_,
        [this] {
            if (window_ != nullptr) requests_.setItemHighlighted(true);
        },
        Qt::QueuedConnection);
}

void ActiveInput::dismiss() const {
    if (window_ == nullptr) return;
    const auto dismissed = onDismissed_; // a copy: the call may replace onDismissed_
    dismissed();
}

} // namespace kelvinbar
