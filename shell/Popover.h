#pragma once

#include "shell/Geometry.h"

#include <chrono>
#include <functional>
#include <memory>

namespace kelvinbar {

class KelvinbarStore;
class StatusItemButton;

/// Port: what a popover shows, with the window that it is in while it is shown. Main thread.
class PopoverContent {
  public:
    virtual ~PopoverContent() = default;
    virtual void setViewSize(Size size) = 0;
    virtual void setViewNeedsLayout() = 0;
    /// Whether there is a window around the content.
    [[nodiscard]] virtual bool hasWindow() const = 0;
    virtual void setWindowContentSize(Size size) = 0;
    /// Grows or shrinks the window, fast at first and slower towards the end, then calls `completion`.
    virtual void animateWindowContentSize(Size size, std::chrono::milliseconds duration,
                                          std::function<void()> completion) = 0;
    /// Gives the window the keyboard.
    virtual void makeWindowKey() = 0;
};

/// Port: makes the content of the panel. Main thread.
class PopoverContentFactory {
  public:
    virtual ~PopoverContentFactory() = default;
    /// The view of `store`; what in it closes the panel calls `closeAction`.
    virtual std::unique_ptr<PopoverContent> make(KelvinbarStore& store,
                                                 std::function<void()> closeAction) = 0;
};

/// The edge of the button at which a popover appears.
enum class PopoverEdge { minY = 1 };

/// Port: a panel that drops down from the status item. Main thread.
class Popover {
  public:
    virtual ~Popover() = default;
    /// Whether a click outside closes it.
    virtual void setTransient(bool isTransient) = 0;
    /// Whether it animates its opening and closing by itself.
    virtual void setAnimates(bool animates) = 0;
    virtual void setDidCloseHandler(std::function<void()> handler) = 0;
    virtual void setContentSize(Size size) = 0;
    virtual void setContent(std::unique_ptr<PopoverContent> content) = 0;
    /// Null without content.
    virtual PopoverContent* content() = 0;
    [[nodiscard]] virtual bool isShown() const = 0;
    /// Shows the content at `edge` of the whole button, inside the visible frame of its screen.
    virtual void show(StatusItemButton& button, PopoverEdge edge) = 0;
    /// Closes it as the user would; nothing happens when it is closed.
    virtual void performClose() = 0;
};

} // namespace kelvinbar
