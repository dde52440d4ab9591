#include "panel/SymbolShapes.h"

#include <QDataStream>
#include <QFile>
#include <QHash>

namespace kelvinbar {

namespace {

/// Reads the outline that the build has made from the drawing.
QPainterPath loadedShape(const QString& name) {
    QPainterPath shape;
    QFile file(":/symbols/" + name + ".shape");
    if (!file.open(QIODevice::ReadOnly)) return shape;
    QDataStream stream(&file);
    stream.setVersion(QDataStream::Qt_6_4);
    stream >> shape;
    return shape;
}

} // namespace

QPainterPath symbolShape(const QString& name) {
    static QHash<QString, QPainterPath> shapes;
    const auto found = shapes.constFind(name);
    return found != shapes.constEnd() ? *found : *shapes.insert(name, loadedShape(name));
}

} // namespace kelvinbar
