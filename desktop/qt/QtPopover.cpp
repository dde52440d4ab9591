#include "desktop/qt/QtPopover.h"

#include "qt/QtGeometry.h"
#include "shell/StatusItem.h"

#include <QEasingCurve>
#include <algorithm>
#include <string>
#include <utility>

namespace kelvinbar {

namespace {

/// How far the shadow reaches, in points.
constexpr int shadowReach = 24;

std::string described(const QRect& frame) {
    return std::to_string(frame.x()) + ", " + std::to_string(frame.y()) + ", size " +
           std::to_string(frame.width()) + " x " + std::to_string(frame.height());
}

} // namespace

// QtPopoverContent

bool QtPopoverContent::hasWindow() const { return window() != nullptr; }

void QtPopoverContent::setWindowContentSize(Size size) {
    size_ = size;
    if (placer_) placer_(size);
}

void QtPopoverContent::animateWindowContentSize(Size size, std::chrono::milliseconds duration,
                                                std::function<void()> completion) {
    animation_.stop();
    animation_.disconnect();
    if (!isAnimated_) {
        setWindowContentSize(size);
        return completion();
    }
    animation_.setStartValue(QSizeF(size_.width, size_.height));
    animation_.setEndValue(QSizeF(size.width, size.height));
    animation_.setDuration(static_cast<int>(duration.count()));
    animation_.setEasingCurve(QEasingCurve::OutQuad);
    QObject::connect(&animation_, &QVariantAnimation::valueChanged, [this](const QVariant& value) {
        const QSizeF step = value.toSizeF();
        setWindowContentSize({step.width(), step.height()});
    });
    QObject::connect(&animation_, &QVariantAnimation::finished, std::move(completion));
    animation_.start();
}

// QtPopover

QtPopover::~QtPopover() {
    didClose_ = nullptr;
    performClose();
}

void QtPopover::setContent(std::unique_ptr<PopoverContent> content) {
    content_.reset(static_cast<QtPopoverContent*>(content.release()));
}

void QtPopover::show(StatusItemButton& button, PopoverEdge /*edge*/) {
    if (content_ == nullptr) return;
    window_ = content_->ensureWindow();
    if (window_ == nullptr) return;
    buttonFrame_ = [&button] { return button.frameOnScreen(); };
    look_ = input_.look();
    findPlace();
    content_->setPlacer([this](Size size) { place(size); });
    input_.prepare(*window_);
    window_->installEventFilter(this);
    content_->setWindowContentSize(contentSize_);
    isShown_ = true;
    showWindow();
    log_.write(LogCategory::panel, LogLevel::info, [this] {
        return "opened at " + described(qtRect(placedPopover(anchor_, contentSize_, screen_)));
    });
}

/// A window that cannot keep its place while it grows is shown after this turn of the event loop, in which
/// the animation begins, and here also ends.
void QtPopover::showWindow() {
    const bool grows = input_.placesWindow();
    content_->setAnimated(grows);
    if (grows) return window_->show();
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (isShown_ && window_ != nullptr) window_->show();
        },
        Qt::QueuedConnection);
}

void QtPopover::findPlace() {
    const auto button = buttonFrame_();
    screen_ = screens_.around(button);
    anchor_ = button.value_or(screens_.anchorWithoutItem(screen_));
}

void QtPopover::updatePlace() {
    if (!isShown_) return;
    findPlace();
    content_->setWindowContentSize(contentSize_);
}

void QtPopover::place(Size size) {
    if (window_ == nullptr) return;
    const QRect frame = qtRect(placedPopover(anchor_, size, screen_));
    const QMargins room = shadowRoom(frame);
    content_->setFrame(look_ != PopoverLook::plain, room);
    window_->setGeometry(frame + room);
    input_.windowPlaced(*window_, {{room.left(), room.top()}, frame.size()});
}

/// The shadow stays inside the visible frame: window managers push a window that leaves it back.
QMargins QtPopover::shadowRoom(const QRect& frame) const {
    if (look_ != PopoverLook::shadowed) return {};
    const QRect visible = qtRect(screen_.visibleFrame);
    const auto room = [](int distance) { return std::clamp(distance, 0, shadowReach); };
    return {room(frame.left() - visible.left()), room(frame.top() - visible.top()),
            room(visible.right() - frame.right()), room(visible.bottom() - frame.bottom())};
}

void QtPopover::performClose() {
    if (!std::exchange(isShown_, false)) return;
    log_.write(LogCategory::panel, LogLevel::info, "closed");
    if (window_ != nullptr) {
        hasInput_ = false;
        input_.release(*window_);
        window_->hide();
        window_->removeEventFilter(this);
    }
    const auto didClose = didClose_; // a copy: the handler may destroy the popover
    if (didClose) didClose();
}

bool QtPopover::eventFilter(QObject* watched, QEvent* event) {
    const bool isOnScreen = watched == window_ && event->type() == QEvent::Expose && window_->isExposed();
    if (isOnScreen && isShown_ && !std::exchange(hasInput_, true)) acquireInput();
    return false;
}

void QtPopover::acquireInput() {
    input_.acquire(*window_, [this] {
        if (isTransient_) performClose();
    });
}

} // namespace kelvinbar
