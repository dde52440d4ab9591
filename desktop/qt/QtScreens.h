#pragma once

#include "shell/PopoverPlacement.h"
#include "shell/ShellPorts.h"

#include <QObject>
#include <QRect>
#include <functional>
#include <memory>

class QScreen;

namespace kelvinbar {

/// The screens as Qt reports them. Needs the application object. Main thread.
class QtScreens : public Screens {
  public:
    QtScreens();
    QtScreens(const QtScreens&) = delete;
    QtScreens& operator=(const QtScreens&) = delete;
    ~QtScreens() override;

    [[nodiscard]] std::optional<Rect> mainVisibleFrame() const override;
    [[nodiscard]] std::vector<Rect> visibleFrames() const override;

    void setChangeHandler(std::function<void()> handler) override { changed_ = std::move(handler); }

    /// The screen at or nearest to `place`, or the main screen if there is no place. Empty frames if there is
    /// no screen.
    [[nodiscard]] ScreenFrames around(const std::optional<Rect>& place) const;

    /// Where a panel hangs whose item's place is unknown.
    [[nodiscard]] virtual Rect anchorWithoutItem(const ScreenFrames& screen) const {
        return cornerOfBar(screen);
    }

  protected:
    /// The part of the screen that no bar covers.
    [[nodiscard]] virtual QRect visibleFrame(const QScreen& screen) const;

  private:
    [[nodiscard]] ScreenFrames framesOf(const QScreen* screen) const;
    void follow(const QScreen& screen);
    void announce() const;

    std::function<void()> changed_;
    std::unique_ptr<QObject> context_; ///< of the connections
};

} // namespace kelvinbar
