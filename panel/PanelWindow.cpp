#include "panel/PanelWindow.h"

#include "panel/PanelContent.h"
#include "panel/PanelStyle.h"
#include "panel/SystemMasks.h"
#include "store/KelvinbarStore.h"

#include <QJSEngine>
#include <QMargins>
#include <QQuickItem>
#include <QQuickView>
#include <utility>

void qml_register_types_Kelvinbar_Panel();

namespace kelvinbar {

namespace {

/// What is seen until the first frame is drawn.
constexpr QColor metal(22, 24, 29);

class QuickPanelWindow final : public PanelWindow {
  public:
    QuickPanelWindow(KelvinbarStore& store, PanelHandlers handlers)
        : store_(store.shared_from_this())
        , prefersReducedMotion_(std::move(handlers.prefersReducedMotion))
        , content_(store, handlers.loginItem, SensorListMetrics(textScale()), std::move(handlers.close))
        , masks_(std::move(handlers.systemSymbols)) {
        setSystemMasks(view_, masks_);
        view_.setTitle("Kelvinbar");
        QSurfaceFormat format = view_.format();
        format.setAlphaBufferSize(8);
        view_.setFormat(format);
        view_.setColor(metal);
        view_.setResizeMode(QQuickView::SizeRootObjectToView);
        view_.setInitialProperties({{"content", QVariant::fromValue(&content_)}});
        view_.setSource(QUrl("qrc:/qt-project.org/imports/Kelvinbar/Panel/PanelFrame.qml"));
        QObject::connect(&view_, &QWindow::visibleChanged, &content_, [this](bool isVisible) {
            if (isVisible) {
                content_.panelWillOpen(prefersReducedMotion_());
                if (std::exchange(isAboutWanted_, false)) content_.showAbout();
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

    void setFrame(bool isRounded, const QMargins& shadowRoom) override {
        view_.setColor(isRounded ? QColor(Qt::transparent) : metal);
        QQuickItem& frame = *view_.rootObject();
        frame.setProperty("isRounded", isRounded);
        frame.setProperty("leftRoom", shadowRoom.left());
        frame.setProperty("topRoom", shadowRoom.top());
        frame.setProperty("rightRoom", shadowRoom.right());
        frame.setProperty("bottomRoom", shadowRoom.bottom());
    }

    void whenContentMayMove(std::function<void()> change) override {
        content_.whenRowsMayMove(std::move(change));
    }

    /// Opening the panel closes what was open in it, so a window that is not shown yet waits for that.
    void showAbout() override {
        isAboutWanted_ = !view_.isVisible();
        if (!isAboutWanted_) content_.showAbout();
    }

  private:
    std::shared_ptr<KelvinbarStore> store_; ///< shown until the end, whoever else has released it
    std::function<bool()> prefersReducedMotion_;
    bool isAboutWanted_ = false; ///< as soon as the window is shown
    PanelContent content_;
    SystemMasks masks_;
    QQuickView view_; // last, so that it is destroyed before what it shows
};

/// Scripts this short do not gain from the JIT compiler, and with Qt 6.4 compiled ones occasionally crash in
/// the garbage collector. Qt reads the variable with the first engine; programs that the panel starts must
/// not inherit it.
void useInterpreter() {
    constexpr auto variable = "QV4_FORCE_INTERPRETER";
    if (qEnvironmentVariableIsSet(variable)) return;
    qputenv(variable, "1");
    const QJSEngine first;
    qunsetenv(variable);
}

} // namespace

std::unique_ptr<PanelWindow> makePanelWindow(KelvinbarStore& store, PanelHandlers handlers) {
    static bool isReady = false;
    if (!std::exchange(isReady, true)) {
        useInterpreter();
        // The software renderer does not wake the graphics card.
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
        qml_register_types_Kelvinbar_Panel();
    }
    return std::make_unique<QuickPanelWindow>(store, std::move(handlers));
}

} // namespace kelvinbar
