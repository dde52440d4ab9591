#pragma once

#include "base/Log.h"
#include "desktop/qt/QtPopover.h"
#include "panel/PanelWindow.h"

#include <functional>
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

  private:
    PanelHandlers handlers_;
    Log& log_;
};

} // namespace kelvinbar
