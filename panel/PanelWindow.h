#pragma once

#include "shell/SystemSymbols.h"

#include <functional>
#include <memory>

class QWindow;

namespace kelvinbar {

class KelvinbarStore;
class LoginItemManager;

/// What the panel asks of the program. Main thread.
struct PanelHandlers {
    LoginItemManager& loginItem; ///< outlives the panel
    std::function<void()> close;
    std::function<bool()> prefersReducedMotion;
    SystemSymbols systemSymbols; ///< empty for a system without any
};

/// The panel's window with the view of the store in it. Main thread.
class PanelWindow {
  public:
    virtual ~PanelWindow() = default;
    virtual QWindow& window() = 0;
    /// Runs `change`, which moves the window's content on the screen, now or as soon as that does not come
    /// between the two clicks of a double-click.
    virtual void whenContentMayMove(std::function<void()> change) = 0;
};

/// The store outlives the window.
std::unique_ptr<PanelWindow> makePanelWindow(KelvinbarStore& store, PanelHandlers handlers);

} // namespace kelvinbar
