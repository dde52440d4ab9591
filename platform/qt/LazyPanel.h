#pragma once

#include "platform/qt/QtPopover.h"

namespace kelvinbar {

/// Makes panels that are loaded when they are first shown: a program that only shows its title carries no
/// view engine.
class LazyPanelFactory final : public PopoverContentFactory {
  public:
    std::unique_ptr<PopoverContent> make(KelvinbarStore& store, std::function<void()> closeAction) override;
};

} // namespace kelvinbar
