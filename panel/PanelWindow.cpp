#include "panel/PanelWindow.h"

#include "panel/PanelContent.h"
#include "panel/PanelStyle.h"
#include "panel/SystemMasks.h"
#include "store/KelvinbarStore.h"

#include <QQuickView>
#include <utility>

void qml_register_types_Kelvinbar_Panel();

namespace kelvinbar {

namespace {

class QuickPanelWindow final : public PanelWindow {
  public:
    QuickPanelWindow(KelvinbarStore& store, PanelHandlers handlers)
        : store_(store.shared_from_this())
        , prefersReducedMotion_(std::move(handlers.prefersReducedMotion))
        , content_(store, handlers.loginItem, SensorListMetrics(textScale()), std::move(handlers.close))
        , masks_(std::move(handlers.systemSymbols)) {
        setSystemMasks(view_, masks_);
        view_.setTitle("Kelvinbar");
        view_.setColor(QColor(22, 24, 29)); // until the first frame is drawn
        view_.setResizeMode(QQuickView::SizeRootObjectToView);
        view_.setInitialProperties({{"content", QVariant::fromValue(&content_)}});
        view_.setSource(QUrl("qrc:/qt-project.org/imports/Kelvinbar/Panel/MenuBarContentView.qml"));
        QObject::connect(&view_, &QWindow::visibleChanged, &content_, [this](bool isVisible) {
            if (isVisible) {
                content_.panelWillOpen(prefersReducedMotion_());
            } else {
                content_.panelDidClose();
            }
        });
    }

    QuickPanelWindow(const QuickPanelWindow&) = delete;
    QuickPanelWindow& operator=(const QuickPanelWindow&) = delete;

    /// Hides the window while the content that hears of it, and what the content calls, still exist.
    ~QuickPanelWindow() override { view_.hide(); }

    QWindow& window() override { return view_; }

    void whenContentMayMove(std::function<void()> change) override {
        content_.whenRowsMayMove(std::move(change));
    }

  private:
    std::shared_ptr<KelvinbarStore> store_; ///< shown until the end, whoever else has released it
    std::function<bool()> prefersReducedMotion_;
    PanelContent content_;
    SystemMasks masks_;
    QQuickView view_; // last, so that it is destroyed before what it shows
};

} // namespace

std::unique_ptr<PanelWindow> makePanelWindow(KelvinbarStore& store, PanelHandlers handlers) {
    static bool isReady = false;
    if (!std::exchange(isReady, true)) {
        // Scripts this short do not gain from the JIT compiler, and with Qt 6.4 compiled ones occasionally
        // crash in the garbage collector.
        qputenv("QV4_FORCE_INTERPRETER", "1");
        // The software renderer does not wake the graphics card.
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
        qml_register_types_Kelvinbar_Panel();
    }
    return std::make_unique<QuickPanelWindow>(store, std::move(handlers));
}

} // namespace kelvinbar
