#include "app/LazyPanel.h"

#include "app/PanelMaker.h"

#include <utility>

namespace kelvinbar {

namespace {

class LazyPanel final : public QtPopoverContent {
  public:
    LazyPanel(KelvinbarStore& store, PanelHandlers handlers, Log& log)
        : store_(store), handlers_(std::move(handlers)), log_(log) {}

    /// The panel's window, once it has been loaded. Observers keep it weakly.
    [[nodiscard]] std::weak_ptr<std::unique_ptr<PanelWindow>> panel() const { return panel_; }

    void setViewSize(Size /*size*/) override {} // the view has the size of its window

    void setViewNeedsLayout() override {
        if (QWindow* const own = window()) own->requestUpdate();
    }

    [[nodiscard]] QWindow* window() const override {
        return *panel_ == nullptr ? nullptr : &(*panel_)->window();
    }

    QWindow* ensureWindow() override {
        if (*panel_ == nullptr) *panel_ = makeLoadedPanel(store_, handlers_, log_);
        return window();
    }

    void setFrame(bool isRounded, const QMargins& shadowRoom) override {
        (*panel_)->setFrame(isRounded, shadowRoom);
    }

    void setWindowContentSize(Size size) override {
        if (*panel_ == nullptr) return;
        (*panel_)->whenContentMayMove([this, size] { QtPopoverContent::setWindowContentSize(size); });
    }

    void animateWindowContentSize(Size size, std::chrono::milliseconds duration,
                                  std::function<void()> completion) override {
        if (handlers_.prefersReducedMotion()) duration = std::chrono::milliseconds(0);
        QtPopoverContent::animateWindowContentSize(size, duration, std::move(completion));
    }

  private:
    KelvinbarStore& store_;
    PanelHandlers handlers_;
    Log& log_;
    std::shared_ptr<std::unique_ptr<PanelWindow>> panel_ = std::make_shared<std::unique_ptr<PanelWindow>>();
};

} // namespace

std::unique_ptr<PopoverContent> LazyPanelFactory::make(KelvinbarStore& store,
                                                       std::function<void()> closeAction) {
    PanelHandlers handlers = handlers_;
    handlers.close = std::move(closeAction);
    auto panel = std::make_unique<LazyPanel>(store, std::move(handlers), log_);
    lastPanel_ = panel->panel();
    return panel;
}

void LazyPanelFactory::showAbout() const {
    const auto panel = lastPanel_.lock();
    if (panel != nullptr && *panel != nullptr) (*panel)->showAbout();
}

} // namespace kelvinbar
