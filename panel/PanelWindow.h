#pragma once

#include <functional>
#include <memory>

class QWindow;

namespace kelvinbar {

class KelvinbarStore;

/// The panel's window with the view of the store in it. Main thread.
class PanelWindow {
  public:
    virtual ~PanelWindow() = default;
    virtual QWindow& window() = 0;
};

/// What in the view closes the panel calls `closeAction`. The store outlives the window.
std::unique_ptr<PanelWindow> makePanelWindow(KelvinbarStore& store, std::function<void()> closeAction);

} // namespace kelvinbar
