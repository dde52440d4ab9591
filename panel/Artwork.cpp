#include "panel/Artwork.h"

#include <QImage>
#include <QPainter>
#include <QQuickWindow>

namespace kelvinbar {

std::function<void(QPainter&)> Artwork::painting() const {
    // Scaled to the size on screen first: QPainter skips most pixels when it shrinks an image.
    const QSize pixels = (size() * window()->effectiveDevicePixelRatio()).toSize();
    const QImage picture(":/artwork/" + name_ + ".png");
    return [rect = boundingRect(), picture = picture.scaled(pixels, Qt::KeepAspectRatio,
                                                            Qt::SmoothTransformation)](QPainter& painter) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(rect, picture);
    };
}

} // namespace kelvinbar
