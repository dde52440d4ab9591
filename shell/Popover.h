#pragma once

#include "shell/Geometry.h"

#include <chrono>
#include <functional>
#include <memory>

namespace kelvinbar {

class KelvinbarStore;
class StatusItemButton;

/// Port: the content of a popover, and the window around it while it is shown. Main thread.
class PopoverContent {
  public:
    virtual ~PopoverContent() = default;
    virtual void setViewSize(Size size) = 0;
    virtual void setViewNeedsLayout() = 0;
    /// Whether there is a window around the content.
    [[nodiscard]] virtual bool hasWindow() const = 0;
    virtual void setWindowContentSize(Size size) = 0;
    /// Resizes the window with an ease-out animation, then calls `completion`.
    virtual void animateWindowContentSize(Size size, std::chrono::milliseconds duration,
                                          std::function<void()> completion) = 0;
    /// Gives the window keyboard focus.
    virtual void makeWindowKey() = 0;
};

/// Port: creates the content of the panel. Main thread.
class PopoverContentFactory {
  public:
    virtual ~PopoverContentFactory() = default;
    /// A view of `store`, which it keeps alive. Calls `closeAction` for controls that close the panel.
    virtual std::unique_ptr<PopoverContent> make(KelvinbarStore& store,
                                                 std::function<void()> closeAction) = 0;
};

/// The edge of the button at which a popover opens. The number is the system's on macOS.
enum class PopoverEdge { minY = 1 };

/// Port: a panel that drops down from the status item. Main thread.
class Popover {
  public:
    virtual ~Popover() = default;
    /// Whether a click outside closes the popover.
    virtual void setTransient(bool isTransient) = 0;
    /// Whether the popover itself animates opening and closing.
    virtual void setAnimates(bool animates) = 0;
    virtual void setDidCloseHandler(std::function<void()> handler) = 0;
    virtual void setContentSize(Size size) = 0;
    virtual void setContent(std::unique_ptr<PopoverContent> content) = 0;
    /// Null if there is no content.
    virtual PopoverContent* content() = 0;
    [[nodiscard]] virtual bool isShown() const = 0;
    /// Shows the content at `edge` of the button, inside the visible frame of its screen.
    virtual void show(StatusItemButton& button, PopoverEdge edge) = 0;
    /// Places a shown popover anew, after the screens have changed.
    virtual void updatePlace() = 0;
    /// Closes the popover as the user would. Does nothing if it is closed.
    virtual void performClose() = 0;
};

} // namespace kelvinbar
