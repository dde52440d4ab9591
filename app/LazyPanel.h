#pragma once

#include "base/Log.h"
#include "desktop/qt/QtPopover.h"
#include "panel/PanelWindow.h"

#include <functional>
#include <utility>

namespace kelvinbar {

/// Makes panels that are loaded when they are first shown: a program that only shows its title carries no
/// view engine.
class LazyPanelFactory final : public PopoverContentFactory {
  public:
    /// `handlers`: what the panels ask of the program, but for what closes each. The log outlives the panels.
    LazyPanelFactory(PanelHandlers handlers, Log& log) : handlers_(std::move(handlers)), log_(log) {}

    std::unique_ptr<PopoverContent> make(KelvinbarStore& store, std::function<void()> closeAction) override;

  private:
    PanelHandlers handlers_;
    Log& log_;
};

} // namespace kelvinbar
