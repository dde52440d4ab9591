#include "desktop/macos/OpeningAgain.h"

namespace kelvinbar {

void openAgain(const std::function<void()>& openPanel, const std::function<ItemSight()>& itemSight,
               Log& log) {
    if (!openPanel) return;
    openPanel();
    const char* const reason = whyUnseen(itemSight());
    if (reason != nullptr) log.write(LogCategory::tray, LogLevel::warning, reason);
}

} // namespace kelvinbar
