#include "desktop/linux/window/LayerWindowSystem.h"

#include "desktop/linux/window/ClickPlace.h"
#include "desktop/linux/window/WindowSystem.h"

#include <QGuiApplication>
#include <QPainter>
#include <QRasterWindow>
#include <QScreen>
#include <QTimer>
#include <chrono>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace kelvinbar {

namespace {

using namespace std::chrono_literals;

/// A compositor that gives the focus on demand does so at once.
constexpr auto longestFocusing = 300ms;

int distanceBesideBars(int distance) { return distance <= widestBar ? 0 : distance; }

QScreen* screenOf(const QRect& frame) {
    QScreen* const screen = QGuiApplication::screenAt(frame.center());
    return screen == nullptr ? QGuiApplication::primaryScreen() : screen;
}

void place(const LayerShell& shell, LayerOutput output, QWindow& window, const QRect& frame) {
    QScreen* const screen = screenOf(frame);
    if (screen == nullptr) return;
    LayerPlace place = layerPlace(frame, screen->geometry());
    if (output == LayerOutput::ofPlace) place.screen = screen;
    shell.place(window, place);
    window.resize(frame.size());
}

/// A transparent surface that covers an output except for its bars, and reports presses on it.
class Backdrop final : public QRasterWindow {
  public:
    explicit Backdrop(std::function<void()> onPressed) : onPressed_(std::move(onPressed)) {
        QSurfaceFormat transparent = format();
        transparent.setAlphaBufferSize(8);
        setFormat(transparent);
    }

  protected:
    void mousePressEvent(QMouseEvent* /*event*/) override { onPressed_(); }

    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.setCompositionMode(QPainter::CompositionMode_Clear);
        painter.fillRect(QRect(QPoint(), size()), Qt::transparent);
    }

  private:
    std::function<void()> onPressed_;
};

/// Deletes later, because the backdrop may be in the middle of reporting.
struct BackdropRetirer {
    void operator()(Backdrop* backdrop) const {
        backdrop->hide();
        backdrop->deleteLater();
    }
};

/// The keyboard and the pointer of a popover while it is open.
class LayerInput {
  public:
    explicit LayerInput(LayerShell shell) : shell_(std::move(shell)) {
        wait_.setSingleShot(true);
        wait_.setInterval(longestFocusing);
    }

    void prepare(QWindow& window) const {
        shell_.adopt(window, LayerLevel::aboveAll);
        shell_.setKeyboard(window, LayerKeyboard::onDemand);
    }

    /// Reports until `end`.
    void begin(FocusInput::PressHandlers handlers) { handlers_ = std::move(handlers); }

    void activate(QWindow& window, const FocusRight& right) {
        activateWithToken(window, right);
        wait_.disconnect();
        QObject::connect(&wait_, &QTimer::timeout, &window, [this, &window] {
            if (!window.isVisible()) return;
            // A press on the bare desktop does not move the focus in every compositor.
            window.isActive() ? showBackdrops(LayerLevel::belowWindows) : takeInput(window);
        });
        wait_.start();
    }

    void end() {
        wait_.stop();
        backdrops_.clear();
    }

  private:
    void takeInput(QWindow& window) {
        shell_.setKeyboard(window, LayerKeyboard::exclusive);
        showBackdrops(LayerLevel::aboveWindows);
    }

    void showBackdrops(LayerLevel level) {
        backdrops_.clear();
        const auto screens = QGuiApplication::screens();
        for (QScreen* const screen : screens) showBackdrop(*screen, level);
    }

    void showBackdrop(QScreen& screen, LayerLevel level) {
        // NOLINTNEXTLINE(cppcoreguidelines-owning-memory): the deleter of the pointer is of its own kind
        auto& backdrop = *backdrops_.emplace_back(new Backdrop([this] { handlers_.leaves(); }));
        shell_.adopt(backdrop, level);
        shell_.setKeyboard(backdrop, LayerKeyboard::none);
        shell_.place(backdrop, {.edges = Qt::LeftEdge | Qt::TopEdge | Qt::RightEdge | Qt::BottomEdge,
                                .margins = {},
                                .screen = &screen});
        backdrop.show();
    }

    LayerShell shell_;
    QTimer wait_; ///< for the compositor to give the focus
    FocusInput::PressHandlers handlers_;
    std::vector<std::unique_ptr<Backdrop, BackdropRetirer>> backdrops_;
};

} // namespace

LayerPlace layerPlace(const QRect& frame, const QRect& screen) {
    const int left = frame.left() - screen.left();
    const int right = screen.right() - frame.right();
    const int top = frame.top() - screen.top();
    const int bottom = screen.bottom() - frame.bottom();
    LayerPlace place;
    if (left < right) {
        place.edges |= Qt::LeftEdge;
        place.margins.setLeft(distanceBesideBars(left));
    } else {
        place.edges |= Qt::RightEdge;
        place.margins.setRight(distanceBesideBars(right));
    }
    if (top <= bottom) {
        place.edges |= Qt::TopEdge;
        place.margins.setTop(distanceBesideBars(top));
    } else {
        place.edges |= Qt::BottomEdge;
        place.margins.setBottom(distanceBesideBars(bottom));
    }
    return place;
}

FocusInput::WindowSystem layerWindowSystem(const LayerShell& shell, LayerOutput output) {
    const auto input = std::make_shared<LayerInput>(shell);
    return {.look = [] { return PopoverLook::shadowed; },
            .placesWindow = [] { return true; },
            .prepare = [input](QWindow& window) { input->prepare(window); },
            .activate = [input](QWindow& window, const FocusRight& right) { input->activate(window, right); },
            .placeWindow =
                [shell, output](QWindow& window, const QRect& frame, const QRect& area) {
                    place(shell, output, window, frame);
                    window.setMask(area);
                },
            .watchPresses =
                [input](FocusInput::PressHandlers handlers) {
                    input->begin(std::move(handlers));
                    return std::shared_ptr<void>(nullptr, [input](std::nullptr_t) { input->end(); });
                }};
}

} // namespace kelvinbar
