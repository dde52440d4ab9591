#pragma once

#include "base/Log.h"
#include "desktop/qt/PopoverInput.h"
#include "desktop/qt/QtScreens.h"
#include "shell/Popover.h"
#include "shell/PopoverPlacement.h"

#include <QMargins>
#include <QObject>
#include <QPointer>
#include <QVariantAnimation>
#include <QWindow>

namespace kelvinbar {

/// Popover content in a Qt window. Subclasses create the window; this class sizes, places and animates it.
/// Main thread.
class QtPopoverContent : public PopoverContent {
  public:
    /// Null until the content is first shown.
    [[nodiscard]] virtual QWindow* window() const = 0;
    /// Creates the window unless it exists. May take long: it loads what only an open panel needs. Null on
    /// failure. The content owns the window.
    virtual QWindow* ensureWindow() = 0;

    /// Prepares the window for its look: whether its corners are transparent, and how much room around the
    /// content is for its shadow.
    virtual void setFrame(bool isRounded, const QMargins& shadowRoom) = 0;

    [[nodiscard]] bool hasWindow() const override;
    void setWindowContentSize(Size size) override;
    void animateWindowContentSize(Size size, std::chrono::milliseconds duration,
                                  std::function<void()> completion) override;

    /// The window asks for the focus when it is on the screen, which it is not yet at this call.
    void makeWindowKey() override {}

    /// `placer` gives the window the place and the size for content of a size.
    void setPlacer(std::function<void(Size)> placer) { placer_ = std::move(placer); }

    /// Whether animations run; otherwise they end at once.
    void setAnimated(bool isAnimated) { isAnimated_ = isAnimated; }

  private:
    std::function<void(Size)> placer_;
    Size size_; ///< of the content, as last placed
    bool isAnimated_ = true;
    QVariantAnimation animation_;
};

/// A popover as a frameless window. It has the user's input while it is open and closes when the user
/// dismisses it. Keys are handled by the content.
///
/// Pitfall: `show` returns before the window is on the screen; input is requested when it is exposed. Main
/// thread.
class QtPopover final : public QObject, public Popover {
  public:
    /// All references must outlive the popover.
    QtPopover(PopoverInput& input, const QtScreens& screens, Log& log)
        : input_(input), screens_(screens), log_(log) {}

    QtPopover(const QtPopover&) = delete;
    QtPopover& operator=(const QtPopover&) = delete;

    /// Closes without calling the handler. It may be that handler, or the end of an animation, that destroys
    /// the popover.
    ~QtPopover() override;

    void setTransient(bool isTransient) override { isTransient_ = isTransient; }

    void setAnimates(bool /*animates*/) override {} // windows have no animation of their own

    void setDidCloseHandler(std::function<void()> handler) override { didClose_ = std::move(handler); }

    void setContentSize(Size size) override { contentSize_ = size; }

    /// `content` must be a QtPopoverContent.
    void setContent(std::unique_ptr<PopoverContent> content) override;

    PopoverContent* content() override { return content_.get(); }

    [[nodiscard]] bool isShown() const override { return isShown_; }

    void show(StatusItemButton& button, PopoverEdge edge) override;
    void updatePlace() override;
    void performClose() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void showWindow();
    void findPlace();
    void place(Size size);
    [[nodiscard]] QMargins shadowRoom(const QRect& frame) const;
    void acquireInput();

    PopoverInput& input_;
    const QtScreens& screens_;
    Log& log_;
    std::unique_ptr<QtPopoverContent> content_;
    QPointer<QWindow> window_;
    Size contentSize_;
    std::function<std::optional<Rect>()> buttonFrame_;
    ScreenFrames screen_;
    Rect anchor_;
    PopoverLook look_ = PopoverLook::plain;
    bool isShown_ = false;
    bool hasInput_ = false;
    bool isTransient_ = false;
    std::function<void()> didClose_;
};

} // namespace kelvinbar
