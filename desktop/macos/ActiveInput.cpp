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
    // The system takes some time to bring the program to the front; such a window would not be seen until
    // then.
    window.setProperty("_q_macAlwaysShowToolWindow", true);
    requests_.activate();
}

void ActiveInput::take(QWindow& window, std::function<void()> onElsewhere) {
    window_ = &window;
    onElsewhere_ = std::move(onElsewhere);
    if (presses_ == nullptr) presses_ = requests_.watchPresses([this] { turnElsewhere(); });
    if (!window.isActive()) window.requestActivate();
}

void ActiveInput::giveBack(QWindow& window) {
    window_ = nullptr;
    presses_ = nullptr;
    // The user who turned to another program is there already.
    if (!isActive_) return;
    // A window that is hidden together with its program would come back with it.
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
        turnElsewhere();
    }
}

void ActiveInput::turnElsewhere() const {
    if (window_ == nullptr) return;
    const auto elsewhere = onElsewhere_; // which gives the input back
    elsewhere();
}

} // namespace kelvinbar
