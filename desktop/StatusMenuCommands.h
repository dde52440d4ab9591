#pragma once

#include "desktop/Desktop.h"

namespace kelvinbar {

/// The handler that an entry of the status item's menu calls. Empty for a separator, and until the desktop
/// has its handlers.
inline std::function<void()> handlerOf(StatusMenuCommand command, const DesktopHandlers& handlers) {
    switch (command) {
    case StatusMenuCommand::none:
        return nullptr;
    case StatusMenuCommand::openPanel:
        return handlers.openPanel;
    case StatusMenuCommand::refresh:
        return handlers.refresh;
    case StatusMenuCommand::copy:
        return handlers.copy;
    case StatusMenuCommand::openAbout:
        return handlers.openAbout;
    case StatusMenuCommand::quit:
        return handlers.quit;
    }
    return nullptr;
}

} // namespace kelvinbar
