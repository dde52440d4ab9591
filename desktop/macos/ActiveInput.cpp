#include "desktop/macos/ActiveInput.h"

#include <QGuiApplication>
#include <utility>

namespace kelvinbar {

ActiveInput::ActiveInput(Requests requests)
    : requests_(std::move(requests))
    , state_(QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged,
                              [this](Qt::ApplicationState state) { stateChanged(state); }))
    , isActive_(QGuiApplication::applicationState() == Qt::ApplicationActive) {}

ActiveInput::~ActiveInput() { QObject::disconnect(state_); }

void ActiveInput::prepare(QWindow& window) {
    window.setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    // Activation takes a while. Without this, a tool window would stay invisible until then.
    window.setProperty("_q_macAlwaysShowToolWindow", true);
    requests_.activate();
}

void ActiveInput::acquire(QWindow& window, std::function<void()> onDismissed) {
    window_ = &window;
    onDismissed_ = std::move(onDismissed);
    if (presses_ == nullptr) presses_ = requests_.watchPresses([this] { dismiss(); });
    if (!window.isActive()) window.requestActivate();
}

void ActiveInput::release(QWindow& window) {
    window_ = nullptr;
    presses_ = nullptr;
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

void ActiveInput::dismiss() const {
    if (window_ == nullptr) return;
    const auto dismissed = onDismissed_; // a copy: the call may replace onDismissed_
    dismissed();
}

} // namespace kelvinbar
