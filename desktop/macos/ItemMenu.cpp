#include "desktop/macos/ItemMenu.h"

#include "desktop/StatusMenuCommands.h"

#include <utility>

namespace kelvinbar {

ItemMenu::ItemMenu(Requests requests, const DesktopHandlers& handlers)
    : requests_(std::move(requests))
    , handlers_(handlers)
    , presses_(requests_.watchSecondaryPresses([this](Point place) {
        if (requests_.isOnItem(place)) open();
    })) {}

void ItemMenu::open() {
    if (!handlers_.pinnedReadings || std::exchange(isOpening_, true)) return;
    requests_.popUp(statusMenuItems(handlers_.pinnedReadings()),
                    [this](StatusMenuCommand command) { run(command); });
    isOpening_ = false;
}

void ItemMenu::run(StatusMenuCommand command) const {
    if (const auto handler = handlerOf(command, handlers_)) handler();
}

} // namespace kelvinbar
