#include "platform/qt/LazyPanel.h"

#include "panel/PanelWindow.h"
#include "platform/qt/QtGeometry.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibrary>
#include <iostream>
#include <utility>

namespace kelvinbar {

namespace {

using MakePanel = PanelWindow* (*)(KelvinbarStore&, std::function<void()>);

/// Where the panel's module is: installed, or as it is built.
constexpr auto moduleFolders = {KELVINBAR_MODULE_FOLDER, "../panel", "."};

MakePanel panelModule() {
    static const MakePanel module = [] {
        QString error;
        for (const char* const folder : moduleFolders) {
            const QDir beside(QCoreApplication::applicationDirPath());
            QLibrary library(QDir::cleanPath(beside.filePath(folder)) + "/libkelvinbar-panel");
            const auto function = reinterpret_cast<MakePanel>(library.resolve("kelvinbarMakePanel"));
            if (function != nullptr) return function;
            if (error.isEmpty() || library.isLoaded()) error = library.errorString();
        }
        std::cerr << "kelvinbar: the panel cannot be loaded: " + error.toStdString() + "\n";
        return MakePanel(nullptr);
    }();
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
