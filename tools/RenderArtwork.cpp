// kelvinbar-render-artwork: draws a vector image in several sizes, as rows of 32-bit pixels, alpha first,
// which is how trays take them. The build runs it, so that the program itself carries no reader of images.
//
// usage: kelvinbar-render-artwork FILE.svg FOLDER SIDE …

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

bool render(QSvgRenderer& artwork, int side, const QString& file) {
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    artwork.render(&painter);
    painter.end();
    QFile pixels(file);
    if (!pixels.open(QIODevice::WriteOnly)) return false;
    const qsizetype count = qsizetype{side} * side;
    QByteArray bytes(count * 4, Qt::Uninitialized);
    qToBigEndian<quint32>(image.constBits(), count, bytes.data());
    return pixels.write(bytes) == bytes.size();
}

int renderAll(const std::vector<QString>& words) {
    QSvgRenderer artwork(words[0]);
    if (!artwork.isValid()) return 1;
    const QString stem = words[1] + "/" + QFileInfo(words[0]).completeBaseName();
    for (std::size_t word = 2; word < words.size(); ++word) {
        const QString file = QString("%1-%2.argb").arg(stem, words[word]);
        if (!render(artwork, words[word].toInt(), file)) return 1;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<QString> words(argv + 1, argv + argc);
    const int status = words.size() < 3 ? 2 : renderAll(words);
    if (status != 0) std::cerr << "usage: kelvinbar-render-artwork FILE.svg FOLDER SIDE ...\n";
    return status;
}
