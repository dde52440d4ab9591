#include "platform/qt/LazyPanel.h"

#include "panel/PanelWindow.h"
#include "platform/qt/Modules.h"

#include <utility>

namespace kelvinbar {

namespace {

using MakePanel = PanelWindow* (*)(KelvinbarStore&, std::function<void()>);

MakePanel panelModule() {
    static const auto module =
        reinterpret_cast<MakePanel>(moduleFunction("kelvinbar-panel", "kelvinbarMakePanel"));
    return module;
}

class LazyPanel final : public QtPopoverContent {
  public:
    LazyPanel(KelvinbarStore& store, std::function<void()> closeAction)
        : store_(store), closeAction_(std::move(closeAction)) {}

    void setViewSize(Size /*size*/) override {} // the view follows its window

    void setViewNeedsLayout() override {
        if (QWindow* const own = window()) own->requestUpdate();
    }

    [[nodiscard]] QWindow* window() const override { return panel_ == nullptr ? nullptr : &panel_->window(); }

    QWindow* ensureWindow() override {
        if (panel_ == nullptr) {
            if (const MakePanel make = panelModule()) panel_.reset(make(store_, closeAction_));
        }
        return window();
    }

  private:
    KelvinbarStore& store_;
    std::function<void()> closeAction_;
    std::unique_ptr<PanelWindow> panel_;
};

} // namespace

std::unique_ptr<PopoverContent> LazyPanelFactory::make(KelvinbarStore& store,
                                                       std::function<void()> closeAction) {
    return std::make_unique<LazyPanel>(store, std::move(closeAction));
}

} // namespace kelvinbar
