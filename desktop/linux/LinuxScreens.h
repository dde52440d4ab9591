#pragma once

#include "desktop/linux/ClickPlace.h"
#include "desktop/qt/QtScreens.h"

#include <QPoint>
#include <optional>

namespace kelvinbar {

class X11Session;

/// The screens of a Linux desktop. With several screens Qt does not know what bars cover, so on X11 the space
/// that they reserve is read from the window manager. Main thread.
class LinuxScreens final : public QtScreens {
  public:
    /// `x11` is null outside X11 and must outlive the object.
    explicit LinuxScreens(const X11Session* x11) : x11_(x11) {}

    /// Where the user has clicked the status item that a host reports as clicked at `reported`. No value if
    /// that is unknown.
    [[nodiscard]] std::optional<QPoint> placeOfClick(QPoint reported) const;

  protected:
    [[nodiscard]] QRect visibleFrame(const QScreen& screen) const override;

  private:
    const X11Session* x11_;
};

} // namespace kelvinbar
