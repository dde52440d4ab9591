#pragma once

#include "desktop/linux/tray/IconReading.h"
#include "desktop/linux/tray/ReadingIcon.h"
#include "desktop/linux/tray/StatusNotifierTypes.h"
#include "shell/StatusMenuItems.h"

#include <QString>
#include <QTimer>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace kelvinbar {

/// The icon of the status item: the program's own image, or a pinned reading drawn in its place. A drawing is
/// made again only if its text or colour has changed. Main thread.
class TrayIcon {
  public:
    /// While readings alternate, calls `turnEnded` every `turn`: the next one is to be shown.
    TrayIcon(std::chrono::milliseconds turn, std::function<void()> turnEnded);

    /// The resource with the image `name`, `side` pixels wide and high.
    [[nodiscard]] static QString resourcePath(const std::string& name, int side);

    /// The program's image, from its resources.
    void setOwnImage(const std::string& name);

    /// Whether readings are drawn. False at first.
    void setDrawsReadings(bool drawsReadings) { drawsReadings_ = drawsReadings; }

    /// Whether all readings that have a number are drawn by turns, and not only the first. False at first.
    void setAlternates(bool alternates) { alternates_ = alternates; }

    /// Whether drawings are for a dark bar. True at first.
    void setOnDark(bool isOnDark);

    /// The icon in all sizes. Starts the turns if there are at least two readings to alternate between, and
    /// ends them otherwise.
    [[nodiscard]] StatusNotifierPixmaps pixmaps(const std::vector<PinnedReading>& pinned);

    /// Goes on to the next reading. Call when a turn has ended.
    void goOn(const std::vector<PinnedReading>& pinned) { reading_.goOn(pinned); }

  private:
    void startOrEndTurns(const std::vector<PinnedReading>& pinned);

    std::chrono::milliseconds turn_;
    std::function<void()> turnEnded_;
    QTimer turnTimer_; ///< runs only while readings alternate
    bool drawsReadings_ = false;
    bool alternates_ = false;
    IconReading reading_;
    ReadingIcons drawings_{true};
    StatusNotifierPixmaps ownImage_;
    QString drawnText_;
    StatusNotifierPixmaps drawnIcon_;
};

} // namespace kelvinbar
