#include "panel/SystemMasks.h"

#include <QQuickWindow>
#include <QVariant>
#include <algorithm>
#include <utility>

namespace kelvinbar {

namespace {

constexpr const char* masksProperty = "kelvinbarSystemMasks";

QImage imageOf(const SymbolMask& mask) {
    const auto side = static_cast<std::size_t>(std::max(mask.side, 0));
    if (side == 0 || mask.coverage.size() != side * side) return {};
    QImage image(mask.side, mask.side, QImage::Format_Alpha8);
    for (int row = 0; row < mask.side; ++row) {
        const auto first = mask.coverage.begin() + static_cast<std::ptrdiff_t>(row) * mask.side;
        std::copy_n(first, mask.side, image.scanLine(row));
    }
    return image;
}

} // namespace

SystemMasks::SystemMasks(SystemSymbols symbols) : symbols_(std::move(symbols)) {}

QImage SystemMasks::mask(const QString& name, int side) {
    if (!symbols_) return {};
    const std::pair key(name, side);
    const auto found = drawn_.constFind(key);
    if (found != drawn_.constEnd()) return *found;
    const auto mask = symbols_(name.toStdString(), side);
    return *drawn_.insert(key, mask ? imageOf(*mask) : QImage());
}

void setSystemMasks(QQuickWindow& window, SystemMasks& masks) {
    window.setProperty(masksProperty, QVariant::fromValue(static_cast<void*>(&masks)));
}

SystemMasks* systemMasksOf(const QQuickWindow* window) {
    return window == nullptr ? nullptr
                             : static_cast<SystemMasks*>(window->property(masksProperty).value<void*>());
}

} // namespace kelvinbar
