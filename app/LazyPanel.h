#pragma once

#include "base/Log.h"
#include "desktop/qt/QtPopover.h"
#include "panel/PanelWindow.h"

#include <functional>
#include <memory>
#include <utility>

namespace kelvinbar {

/// Creates panels that load the view engine when they are first shown, so that a program whose panel stays
/// closed does not pay for it. Main thread.
class LazyPanelFactory final : public PopoverContentFactory {
  public:
    /// `handlers` are used for every panel, except for closing, which `make` sets. The log must outlive the
    /// panels.
    LazyPanelFactory(PanelHandlers handlers, Log& log) : handlers_(std::move(handlers)), log_(log) {}

    std::unique_ptr<PopoverContent> make(KelvinbarStore& store, std::function<void()> closeAction) override;

    /// Opens what the panel says about the program, in the panel that was made last. Does nothing if it has
    /// not been shown yet, or no longer exists.
    void showAbout() const;

  private:
    PanelHandlers handlers_;
    Log& log_;
    std::weak_ptr<std::unique_ptr<PanelWindow>> lastPanel_; ///< null inside until it is first shown
};

} // namespace kelvinbar
