#include "desktop/qt/QtPopover.h"

#include "desktop/qt/QtScreens.h"
#include "qt/QtGeometry.h"
#include "shell/StatusItem.h"

#include <QEasingCurve>
#include <string>
#include <utility>

namespace kelvinbar {

namespace {

/// The frame of the button. If it is unknown, the top right corner of the screen.
Rect anchorOf(const StatusItemButton& button, const ScreenFrames& screen) {
    const Rect& visible = screen.visibleFrame;
    return button.frameOnScreen().value_or(Rect{visible.x + visible.width, visible.y, 0, 0});
}

std::string described(const QRect& frame) {
    return std::to_string(frame.x()) + ", " + std::to_string(frame.y()) + ", size " +
           std::to_string(frame.width()) + " x " + std::to_string(frame.height());
}

} // namespace

// QtPopoverContent

bool QtPopoverContent::hasWindow() const { return window() != nullptr; }

void QtPopoverContent::setWindowContentSize(Size size) {
    if (QWindow* const own = window())
        own->setGeometry(placement_ ? placement_(size) : QRect({}, qtSize(size)));
}

void QtPopoverContent::animateWindowContentSize(Size size, std::chrono::milliseconds duration,
                                                std::function<void()> completion) {
    animation_.stop();
    animation_.disconnect();
    animation_.setStartValue(QSizeF(window()->size()));
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

void QtPopoverContent::makeWindowKey() {
    if (QWindow* const own = window()) own->requestActivate();
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
    const ScreenFrames screen = screenAround(button.frameOnScreen());
    content_->setPlacement([screen, anchor = anchorOf(button, screen)](Size size) {
        return qtRect(placedPopover(anchor, size, screen));
    });
    window_ = content_->ensureWindow();
    if (window_ == nullptr) return;
    input_.prepare(*window_);
    window_->installEventFilter(this);
    content_->setWindowContentSize(contentSize_);
    isShown_ = true;
    window_->show();
    log_.write(LogCategory::panel, LogLevel::info,
               [this] { return "opened at " + described(window_->geometry()); });
}

void QtPopover::performClose() {
    if (!std::exchange(isShown_, false)) return;
    log_.write(LogCategory::panel, LogLevel::info, "closed");
    if (window_ != nullptr) {
        input_.release(*window_);
        window_->hide();
        window_->removeEventFilter(this);
    }
    const auto didClose = didClose_; // a copy: the handler may destroy the popover
    if (didClose) didClose();
}

bool QtPopover::eventFilter(QObject* watched, QEvent* event) {
    if (watched != window_ || !isShown_) return false;
    // Only an exposed window can grab the pointer.
    if (event->type() == QEvent::Expose && window_->isExposed()) {
        input_.acquire(*window_, [this] {
            if (isTransient_) performClose();
        });
    }
    return false;
}

} // namespace kelvinbar
