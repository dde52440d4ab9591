#pragma once

#include <QObject>
#include <QTimer>
#include <chrono>
#include <qqmlregistration.h>

namespace kelvinbar {

/// That an action is done, which its button shows for a second. Main thread.
class Acknowledgement : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the panel")
    Q_PROPERTY(bool isShown READ isShown NOTIFY changed)

  public:
    static constexpr std::chrono::seconds duration{1};

    Acknowledgement() {
        remaining_.setSingleShot(true);
        remaining_.setInterval(duration);
        connect(&remaining_, &QTimer::timeout, this, &Acknowledgement::changed);
    }

    [[nodiscard]] bool isShown() const { return remaining_.isActive(); }

    /// Begins anew if it is shown already.
    void show() {
        remaining_.start();
        emit changed();
    }

  signals:
    void changed();

  private:
    QTimer remaining_;
};

} // namespace kelvinbar
