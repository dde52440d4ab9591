#pragma once

#include "desktop/qt/QtPopover.h"
#include "panel/PanelWindow.h"

#include <functional>
#include <utility>

namespace kelvinbar {

/// Makes panels that are loaded when they are first shown: a program that only shows its title carries no
/// view engine.
class LazyPanelFactory final : public PopoverContentFactory {
  public:
    /// `handlers`: what the panels ask of the program, but for what closes each.
    explicit LazyPanelFactory(PanelHandlers handlers) : handlers_(std::move(handlers)) {}

    std::unique_ptr<PopoverContent> make(KelvinbarStore& store, std::function<void()> closeAction) override;

  private:
    PanelHandlers handlers_;
};

} // namespace kelvinbar
