#pragma once

#include "desktop/linux/tray/PanelCorner.h"
#include "desktop/linux/window/ClickPlace.h"
#include "desktop/qt/QtScreens.h"

#include <QPoint>
#include <optional>
#include <vector>

namespace kelvinbar {

class X11Session;

/// What the reports of clicks on the status item are worth.
enum class ClickReports {
    hint,     ///< to be checked against bars and the pointer
    ofPlasma, ///< on Wayland, where neither is known, but Plasma knows
};

/// The lowest of the frames. No value without any. Pure function; any thread.
std::optional<Rect> lowestFrame(const std::vector<Rect>& frames);

/// The screens of a Linux desktop. With several screens Qt does not know what bars cover, so on X11 the space
/// that they reserve is read from the window manager. Main thread.
class LinuxScreens final : public QtScreens {
  public:
    /// `x11` is null outside X11 and must outlive the object.
    LinuxScreens(const X11Session* x11, ClickReports reports) : x11_(x11), reports_(reports) {}

    /// Where the user has clicked the status item that a host reports as clicked at `reported`. No value if
    /// that is unknown.
    [[nodiscard]] std::optional<QPoint> placeOfClick(QPoint reported) const;

    /// The usual place of the panel from now on, on a screen that the compositor chooses.
    void setPanelCorner(PanelCorner corner) { corner_ = corner; }

    [[nodiscard]] std::optional<Rect> mainVisibleFrame() const override;
    [[nodiscard]] Rect usualPlace(const ScreenFrames& screen) const override;

  protected:
    [[nodiscard]] QRect visibleFrame(const QScreen& screen) const override;

  private:
    const X11Session* x11_;
    ClickReports reports_;
    std::optional<PanelCorner> corner_; ///< none: the corner of the bar
};

} // namespace kelvinbar
