#include "platform/macos/desktop/ActiveInput.h"

#include <QGuiApplication>
#include <utility>

namespace kelvinbar {

ActiveInput::ActiveInput(Requests requests) : requests_(std::move(requests)) {}

ActiveInput::~ActiveInput() { QObject::disconnect(state_); }

void ActiveInput::prepare(QWindow& window) {
    window.setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    // The system takes some time to bring the program to the front; such a window would not be seen until
    // then.
    window.setProperty("_q_macAlwaysShowToolWindow", true);
    requests_.activate();
}

void ActiveInput::take(QWindow& window, std::function<void()> onElsewhere) {
    QObject::disconnect(state_);
    const auto follow = [&window, elsewhere = std::move(onElsewhere)](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive) {
            window.requestActivate();
        } else {
            elsewhere();
        }
    };
    state_ = QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, &window, follow);
    if (!window.isActive()) window.requestActivate();
}

void ActiveInput::giveBack(QWindow& /*window*/) {
    QObject::disconnect(state_);
    // The user who turned elsewhere is there already.
    if (QGuiApplication::applicationState() == Qt::ApplicationActive) requests_.hide();
}

} // namespace kelvinbar
