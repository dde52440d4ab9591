#include "panel/PanelWindow.h"

#include "panel/PanelContent.h"
#include "panel/PanelLook.h"
#include "panel/PanelStyle.h"
#include "panel/RoundedFont.h"
#include "panel/SystemMasks.h"
#include "store/KelvinbarStore.h"

#include <QEvent>
#include <QGuiApplication>
#include <QJSEngine>
#include <QMargins>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QScreen>
#include <array>
#include <utility>

void qml_register_types_Kelvinbar_Panel();

namespace kelvinbar {

namespace {

/// What is seen until the first frame is drawn.
constexpr QColor metal(22, 24, 29);

/// A window that tells when what it looks like on the desktop may have changed.
class PanelView final : public QQuickView {
  public:
    /// The font of the desktop, the text size, or the screen has changed.
    std::function<void()> onLookChange = [] {};

    PanelView() {
        connect(this, &QWindow::screenChanged, this, [this] { followScreens(); });
        connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, [this] { followScreens(); });
        connect(this, &QWindow::visibleChanged, this, [this](bool isVisible) {
            if (isVisible) {
                qGuiApp->installEventFilter(this);
            } else {
                qGuiApp->removeEventFilter(this);
            }
        });
        followScreens();
    }

    /// Sees the events of the whole program, so it is installed while the window is visible.
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::ApplicationFontChange) onLookChange();
        return false;
    }

  private:
    /// The window's own screen, and the primary one, by which fonts are measured.
    void followScreens() {
        for (const QMetaObject::Connection& former : textSizes_) QObject::disconnect(former);
        textSizes_ = {textSizeOf(screen()), textSizeOf(QGuiApplication::primaryScreen())};
        onLookChange();
    }

    QMetaObject::Connection textSizeOf(const QScreen* screen) {
        if (screen == nullptr) return {};
        return connect(screen, &QScreen::logicalDotsPerInchChanged, this, [this] { onLookChange(); });
    }

    std::array<QMetaObject::Connection, 2> textSizes_;
};

class QuickPanelWindow final : public PanelWindow {
  public:
    QuickPanelWindow(KelvinbarStore& store, PanelHandlers handlers)
        : store_(store.shared_from_this())
        , prefersReducedMotion_(std::move(handlers.prefersReducedMotion))
        , prefersMoreContrast_(std::move(handlers.prefersMoreContrast))
        , roundedFont_(QString::fromStdString(handlers.roundedFontFile()))
        , content_(store, handlers.loginItem, SensorListMetrics(textScale(QGuiApplication::primaryScreen())),
                   std::move(handlers.close), PanelEnvironment::ofThisProgram(handlers.program))
        , masks_(std::move(handlers.systemSymbols)) {
        setSystemMasks(view_, masks_);
        view_.setTitle("Kelvinbar");
        QSurfaceFormat format = view_.format();
        format.setAlphaBufferSize(8);
        view_.setFormat(format);
        view_.setColor(metal);
        view_.setResizeMode(QQuickView::SizeRootObjectToView);
        view_.setInitialProperties({{"content", QVariant::fromValue(&content_)}});
        makeViews(presentLook());
        view_.onLookChange = [this] {
            if (view_.isVisible()) followLook();
        };
        QObject::connect(&view_, &QWindow::visibleChanged, &content_, [this](bool isVisible) {
            if (isVisible) {
                followLook();
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
        isRounded_ = isRounded;
        shadowRoom_ = shadowRoom;
        frameViews();
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
    [[nodiscard]] PanelLook presentLook() const {
        return PanelLook::of(view_.screen(), roundedFont_.family(), prefersMoreContrast_());
    }

    /// The views read the style once. A change of it is rare, so they are made anew.
    void followLook() {
        const PanelLook look = presentLook();
        if (look == look_) return;
        view_.setSource({});
        makeViews(look);
        frameViews();
    }

    void makeViews(const PanelLook& look) {
        look_ = look;
        auto* const style =
            view_.engine()->singletonInstance<PanelStyle*>(qmlTypeId("Kelvinbar.Panel", 1, 0, "PanelStyle"));
        style->setLook(look);
        content_.sensors()->setMetrics(SensorListMetrics(look.textScale));
        view_.setSource(QUrl("qrc:/qt-project.org/imports/Kelvinbar/Panel/PanelFrame.qml"));
    }

    void frameViews() {
        view_.setColor(isRounded_ ? QColor(Qt::transparent) : metal);
        QQuickItem* const frame = view_.rootObject();
        if (frame == nullptr) return; // a module of Qt is missing, which Qt has logged
        frame->setProperty("isRounded", isRounded_);
        frame->setProperty("leftRoom", shadowRoom_.left());
        frame->setProperty("topRoom", shadowRoom_.top());
        frame->setProperty("rightRoom", shadowRoom_.right());
        frame->setProperty("bottomRoom", shadowRoom_.bottom());
    }

    std::shared_ptr<KelvinbarStore> store_; ///< shown until the end, whoever else has released it
    std::function<bool()> prefersReducedMotion_;
    std::function<bool()> prefersMoreContrast_;
    RoundedFont roundedFont_;
    bool isAboutWanted_ = false; ///< as soon as the window is shown
    PanelLook look_;             ///< that the views are made for
    bool isRounded_ = false;
    QMargins shadowRoom_;
    PanelContent content_;
    SystemMasks masks_;
    PanelView view_; // last, so that it is destroyed before what it shows
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

/// It does not wake the graphics card. Who sets the toolkit's variable, even to nothing, wants another one.
void useSoftwareRenderer() {
    if (qEnvironmentVariableIsSet("QT_QUICK_BACKEND")) return;
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

} // namespace

std::unique_ptr<PanelWindow> makePanelWindow(KelvinbarStore& store, PanelHandlers handlers) {
    static bool isReady = false;
    if (!std::exchange(isReady, true)) {
        useInterpreter();
        useSoftwareRenderer();
        qml_register_types_Kelvinbar_Panel();
    }
    return std::make_unique<QuickPanelWindow>(store, std::move(handlers));
}

} // namespace kelvinbar
