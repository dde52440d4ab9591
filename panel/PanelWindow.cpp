#include "panel/PanelWindow.h"

#include "store/KelvinbarStore.h"

#include <QQmlContext>
#include <QQuickView>
#include <QStringList>
#include <utility>

namespace kelvinbar {

namespace {

/// One line a reading, until the panel has its cards.
QStringList linesOf(const std::vector<SMCReading>& readings) {
    QStringList lines;
    for (const SMCReading& reading : readings) {
        lines.append(QString::fromStdString(reading.name) + "  " +
                     QString::fromStdString(reading.displayValue()));
    }
    return lines;
}

class QuickPanelWindow final : public PanelWindow {
  public:
    QuickPanelWindow(KelvinbarStore& store, std::function<void()> closeAction)
        : closeAction_(std::move(closeAction)) {
        view_.setTitle("Kelvinbar");
        view_.setColor(QColor(22, 24, 29));
        view_.setResizeMode(QQuickView::SizeRootObjectToView);
        view_.rootContext()->setContextProperty("readingLines", linesOf(store.readings().value()));
        readings_ = store.readings().observe([this](const std::vector<SMCReading>& readings) {
            view_.rootContext()->setContextProperty("readingLines", linesOf(readings));
        });
        view_.setSource(QUrl("qrc:/panel/MenuBarContentView.qml"));
    }

    QWindow& window() override { return view_; }

  private:
    QQuickView view_;
    std::function<void()> closeAction_;
    Registration readings_;
};

} // namespace

std::unique_ptr<PanelWindow> makePanelWindow(KelvinbarStore& store, std::function<void()> closeAction) {
    // The panel must not start a graphics card.
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    return std::make_unique<QuickPanelWindow>(store, std::move(closeAction));
}

} // namespace kelvinbar
