// kelvinbar-render-artwork: renders an SVG file as a PNG, or in several sizes as rows of 32-bit ARGB pixels,
// the format of tray icons. Runs during the build, so that the program needs no SVG renderer.
//
// usage: kelvinbar-render-artwork FILE.svg FILE.png SIDE
//        kelvinbar-render-artwork FILE.svg FOLDER SIDE …

#include "process/StandardStreams.h"

#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QtEndian>
#include <iostream>
#include <string>
#include <vector>

namespace {

QImage drawn(QSvgRenderer& artwork, int side) {
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    artwork.render(&painter);
    return image;
}

bool writePixels(const QImage& image, const QString& file) {
    QFile pixels(file);
    if (!pixels.open(QIODevice::WriteOnly)) return false;
    const qsizetype count = qsizetype{image.width()} * image.height();
    QByteArray bytes(count * 4, Qt::Uninitialized);
    qToBigEndian<quint32>(image.constBits(), count, bytes.data());
    return pixels.write(bytes) == bytes.size();
}

int renderAll(const std::vector<QString>& words) {
    QSvgRenderer artwork(words[0]);
    if (!artwork.isValid()) return 1;
    if (words[1].endsWith(".png")) return drawn(artwork, words[2].toInt()).save(words[1]) ? 0 : 1;
    const QString stem = words[1] + "/" + QFileInfo(words[0]).completeBaseName();
    for (std::size_t word = 2; word < words.size(); ++word) {
        const QString file = QString("%1-%2.argb").arg(stem, words[word]);
        if (!writePixels(drawn(artwork, words[word].toInt()), file)) return 1;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    kelvinbar::openClosedStandardStreams();
    const std::vector<QString> words(argv + 1, argv + argc);
    const int status = words.size() < 3 ? 2 : renderAll(words);
    if (status != 0)
        std::cerr << "usage: kelvinbar-render-artwork FILE.svg FILE.png SIDE | FILE.svg FOLDER SIDE ...\n";
    return status;
}
