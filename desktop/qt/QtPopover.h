#pragma once

#include "base/Log.h"
#include "desktop/qt/PopoverInput.h"
#include "shell/Popover.h"
#include "shell/PopoverPlacement.h"

#include <QObject>
#include <QPointer>
#include <QRect>
#include <QVariantAnimation>
#include <QWindow>

namespace kelvinbar {

/// Content whose window is one of Qt's. Makers of content give the window; this class sizes, places and
/// animates it.
class QtPopoverContent : public PopoverContent {
  public:
    /// Null until the content is first shown.
    [[nodiscard]] virtual QWindow* window() const = 0;
    /// Makes the window, which may load what only an open panel needs; null when that fails.
    virtual QWindow* ensureWindow() = 0;

    [[nodiscard]] bool hasWindow() const override;
    void setWindowContentSize(Size size) override;
    void animateWindowContentSize(Size size, std::chrono::milliseconds duration,
                                  std::function<void()> completion) override;
    void makeWindowKey() override;

    /// Where a window of some size goes.
    void setPlacement(std::function<QRect(Size)> placement) { placement_ = std::move(placement); }

  private:
    std::function<QRect(Size)> placement_;
    QVariantAnimation animation_;
};

/// The panel as a window without a frame. It has the user's input while it is open, and closes when the user
/// turns to something else. What keys do is for its content to say.
class QtPopover final : public QObject, public Popover {
  public:
    /// `input` and the log outlive it.
    QtPopover(PopoverInput& input, Log& log) : input_(input), log_(log) {}

    void setTransient(bool isTransient) override { isTransient_ = isTransient; }

    void setAnimates(bool /*animates*/) override {} // it has no animation of its own

    void setDidCloseHandler(std::function<void()> handler) override { didClose_ = std::move(handler); }

    void setContentSize(Size size) override { contentSize_ = size; }

    void setContent(std::unique_ptr<PopoverContent> content) override;

    PopoverContent* content() override { return content_.get(); }

    [[nodiscard]] bool isShown() const override { return isShown_; }

    void show(StatusItemButton& button, PopoverEdge edge) override;
    void performClose() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    PopoverInput& input_;
    Log& log_;
    std::unique_ptr<QtPopoverContent> content_;
    QPointer<QWindow> window_;
    Size contentSize_;
    bool isShown_ = false;
    bool isTransient_ = false;
    std::function<void()> didClose_;
};

} // namespace kelvinbar
