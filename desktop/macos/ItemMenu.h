#pragma once

#include "desktop/Desktop.h"
#include "shell/Geometry.h"

#include <functional>
#include <memory>
#include <vector>

namespace kelvinbar {

/// The menu that a secondary click on the status item opens.
///
/// Up to macOS 26 the item's button reports such clicks. On macOS 27 they do not reach it; they come as
/// presses in another program, at a place on the item. One click opens one menu, whichever way it comes. Main
/// thread.
class ItemMenu {
  public:
    /// The calls to the system, replaceable in tests.
    struct Requests {
        std::function<bool(Point)> isOnItem;
        /// Calls `onPress` with the place of every secondary press in another program as long as the result
        /// lives.
        std::function<std::shared_ptr<void>(std::function<void(Point)> onPress)> watchSecondaryPresses;
        /// Shows the entries below the item, and calls `onChosen` with the one that the user chooses. May
        /// return only when the menu has closed.
        std::function<void(const std::vector<StatusMenuItem>&,
                           std::function<void(StatusMenuCommand)> onChosen)>
            popUp;
    };

    /// `handlers` must outlive the object. Without `pinnedReadings` among them, no menu opens.
    ItemMenu(Requests requests, const DesktopHandlers& handlers);
    ItemMenu(const ItemMenu&) = delete;
    ItemMenu& operator=(const ItemMenu&) = delete;
    ~ItemMenu() = default;

    /// Call for a secondary click that the button reports.
    void open();

  private:
    void run(StatusMenuCommand command) const;

    Requests requests_;
    const DesktopHandlers& handlers_;
    bool isOpening_ = false;
    std::shared_ptr<void> presses_;
};

} // namespace kelvinbar
