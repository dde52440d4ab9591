// kelvinbar-compile-symbols: converts the SVG files of symbols to outlines, one shape per symbol. The program
// fills them with any colour at any size and needs no SVG renderer. Runs during the build.
//
// usage: kelvinbar-compile-symbols FOLDER FILE.svg …

#include "process/StandardStreams.h"
#include "resources/SymbolDrawing.h"

#include <QDataStream>
#include <QFile>
#include <QFileInfo>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPainterPathStroker>
#include <QSvgRenderer>
#include <iostream>
#include <vector>

namespace {

/// A paint engine that records outlines instead of drawing.
class OutlineEngine final : public QPaintEngine {
  public:
    OutlineEngine() : QPaintEngine(AllFeatures) {}

    [[nodiscard]] const QPainterPath& outline() const { return outline_; }

    bool begin(QPaintDevice* /*device*/) override { return true; }

    bool end() override { return true; }

    [[nodiscard]] Type type() const override { return User; }

    void updateState(const QPaintEngineState& next) override {
        pen_ = next.pen();
        brush_ = next.brush();
        transform_ = next.transform();
    }

    void drawPath(const QPainterPath& path) override {
        if (brush_.style() != Qt::NoBrush) add(path);
        if (pen_.style() != Qt::NoPen) add(QPainterPathStroker(pen_).createStroke(path));
    }

    void drawPolygon(const QPointF* points, int count, PolygonDrawMode mode) override {
        QPainterPath path;
        path.addPolygon(QPolygonF(QList<QPointF>(points, points + count)));
        if (mode != PolylineMode) path.closeSubpath();
        drawPath(path);
    }

    void drawPixmap(const QRectF& /*place*/, const QPixmap& /*picture*/, const QRectF& /*part*/) override {
        hasPicture_ = true;
    }

    /// Whether the drawing contains an image, which has no outline.
    [[nodiscard]] bool hasPicture() const { return hasPicture_; }

  private:
    void add(const QPainterPath& path) { outline_ = outline_.united(transform_.map(path)); }

    QPen pen_;
    QBrush brush_;
    QTransform transform_;
    QPainterPath outline_;
    bool hasPicture_ = false;
};

class OutlineDevice final : public QPaintDevice {
  public:
    explicit OutlineDevice(int side) : side_(side) {}

    [[nodiscard]] QPaintEngine* paintEngine() const override { return &engine_; }

    [[nodiscard]] const OutlineEngine& engine() const { return engine_; }

  protected:
    [[nodiscard]] int metric(PaintDeviceMetric metric) const override {
        switch (metric) {
        case PdmWidth:
        case PdmHeight:
            return side_;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return static_cast<int>(devicePixelRatioFScale());
        default:
            return 72;
        }
    }

  private:
    int side_;
    mutable OutlineEngine engine_; // paintEngine() is const in the base class
};

bool compile(const QString& drawing, const QString& folder) {
    QSvgRenderer renderer(drawing);
    constexpr double side = kelvinbar::symbolSide;
    if (renderer.viewBoxF() != QRectF(0, 0, side, side)) return false;
    OutlineDevice device(static_cast<int>(side));
    QPainter painter(&device);
    renderer.render(&painter, renderer.viewBoxF());
    painter.end();
    const QPainterPath& outline = device.engine().outline();
    if (outline.isEmpty() || device.engine().hasPicture()) return false;

    QFile file(folder + "/" + QFileInfo(drawing).completeBaseName() + ".shape");
    if (!file.open(QIODevice::WriteOnly)) return false;
    QDataStream stream(&file);
    stream.setVersion(QDataStream::Qt_6_4);
    stream << outline;
    return stream.status() == QDataStream::Ok;
}

} // namespace

int main(int argc, char** argv) {
    kelvinbar::openClosedStandardStreams();
    const std::vector<QString> words(argv + 1, argv + argc);
    if (words.size() < 2) {
        std::cerr << "usage: kelvinbar-compile-symbols FOLDER FILE.svg ...\n";
        return 2;
    }
    for (std::size_t word = 1; word < words.size(); ++word) {
        if (compile(words[word], words[0])) continue;
        std::cerr << "kelvinbar-compile-symbols: no shape in " + words[word].toStdString() + "\n";
        return 1;
    }
    return 0;
}
