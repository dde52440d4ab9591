#include "panel/Artwork.h"

#include <QImage>
#include <QImageReader>
#include <QPainter>
#include <QQuickWindow>

namespace kelvinbar {

std::function<void(QPainter&)> Artwork::painting() const {
    // Scaled to the size on screen first: QPainter skips most pixels when it shrinks an image.
    const QSize pixels = (size() * window()->effectiveDevicePixelRatio()).toSize();
    // Otherwise Qt would load its plugins for all other formats, to ask whether the picture is theirs.
    QImageReader reader(":/artwork/" + name_ + ".png", "png");
    reader.setAutoDetectImageFormat(false);
    const QImage picture = reader.read();
    return [rect = boundingRect(), picture = picture.scaled(pixels, Qt::KeepAspectRatio,
                                                            Qt::SmoothTransformation)](QPainter& painter) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(rect, picture);
    };
}

} // namespace kelvinbar
