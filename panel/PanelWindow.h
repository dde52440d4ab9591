#pragma once

#include "panel/ProgramFacts.h"
#include "shell/SystemSymbols.h"

#include <functional>
#include <memory>
#include <string>

class QMargins;
class QWindow;

/// The header of the panel that the program includes. The panel may be a module that is loaded when it
/// is first opened: until then, Qt Quick costs neither memory nor start-up time.
namespace kelvinbar {

class KelvinbarStore;
class LoginItemManager;

/// What the panel needs from the program. All functions are called on the main thread.
struct PanelHandlers {
    LoginItemManager& loginItem; ///< outlives the panel
    std::function<void()> close; ///< closes the panel
    std::function<bool()> prefersReducedMotion;
    std::function<bool()> prefersMoreContrast;
    SystemSymbols systemSymbols; ///< empty on a system without symbols
    /// Of the system font's rounded design; returns an empty name where there is none.
    std::function<std::string()> roundedFontFile;
    ProgramFacts program = {}; ///< for About
};

/// The panel's window with the views in it. The caller positions, shows and hides it; showing updates the
/// content. Main thread.
class PanelWindow {
  public:
    virtual ~PanelWindow() = default;
    /// The window; owned by this object.
    virtual QWindow& window() = 0;
    /// Sets whether the panel has transparent corners, and how much room around it in the window is for its
    /// shadow. The room may differ from side to side.
    virtual void setFrame(bool isRounded, const QMargins& shadowRoom) = 0;
    /// Runs `change`, which moves or resizes the window: at once, or as soon as it no longer falls between
    /// the two clicks of a double-click.
    virtual void whenContentMayMove(std::function<void()> change) = 0;
    /// Opens what the panel says about the program. Call when the window is shown or
    /// about to be.
    virtual void showAbout() = 0;
};

/// Creates the window, hidden. The first call selects the software renderer for the whole process, unless
/// the environment names one (QT_QUICK_BACKEND). The window
/// keeps the store alive.
std::unique_ptr<PanelWindow> makePanelWindow(KelvinbarStore& store, PanelHandlers handlers);

} // namespace kelvinbar
