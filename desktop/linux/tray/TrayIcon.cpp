#include "desktop/linux/tray/TrayIcon.h"

#include <QFile>
#include <utility>

namespace kelvinbar {

TrayIcon::TrayIcon(std::chrono::milliseconds turn, std::function<void()> turnEnded)
    : turn_(turn), turnEnded_(std::move(turnEnded)) {
    QObject::connect(&turnTimer_, &QTimer::timeout, [this] { turnEnded_(); });
}

QString TrayIcon::resourcePath(const std::string& name, int side) {
    return QString(":/artwork/%1-%2.argb").arg(QString::fromStdString(name)).arg(side);
}

void TrayIcon::setOwnImage(const std::string& name) {
    ownImage_.clear();
    for (const int side : iconSides) {
        QFile pixels(resourcePath(name, side));
        if (pixels.open(QIODevice::ReadOnly)) ownImage_.append({side, side, pixels.readAll()});
    }
}

void TrayIcon::setOnDark(bool isOnDark) {
    drawings_ = ReadingIcons(isOnDark);
    drawnText_.clear();
}

StatusNotifierPixmaps TrayIcon::pixmaps(const std::vector<PinnedReading>& pinned) {
    startOrEndTurns(pinned);
    const QString text = drawsReadings_ ? reading_.text(pinned) : QString();
    if (text.isEmpty()) return ownImage_;
    if (text != std::exchange(drawnText_, text)) drawnIcon_ = drawings_.pixmaps(text);
    return drawnIcon_;
}

void TrayIcon::startOrEndTurns(const std::vector<PinnedReading>& pinned) {
    if (alternates_ && drawsReadings_ && IconReading::choices(pinned) > 1) {
        if (!turnTimer_.isActive()) turnTimer_.start(turn_);
    } else {
        turnTimer_.stop();
        reading_.startOver();
    }
}

} // namespace kelvinbar
