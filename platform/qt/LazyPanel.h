#pragma once

#include "platform/qt/QtPopover.h"

#include <functional>
#include <utility>

namespace kelvinbar {

/// Makes panels that are loaded when they are first shown: a program that only shows its title carries no
/// view engine.
class LazyPanelFactory final : public PopoverContentFactory {
  public:
    /// `prefersReducedMotion`: whether the desktop asks for less motion, at the time it is called.
    explicit LazyPanelFactory(std::function<bool()> prefersReducedMotion)
        : prefersReducedMotion_(std::move(prefersReducedMotion)) {}

    std::unique_ptr<PopoverContent> make(KelvinbarStore& store, std::function<void()> closeAction) override;

  private:
    std::function<bool()> prefersReducedMotion_;
};

} // namespace kelvinbar
