#include "shell/LoginItemManager.h"

namespace kelvinbar {

bool LoginItemManager::isEnabled() const { return canRegister() && service_.isRegistered(); }

bool LoginItemManager::setEnabled(bool enabled) {
    if (!canRegister()) {
        service_.openLoginItemsSettings();
        return false;
    }
    if (enabled != isEnabled()) {
        const bool succeeded = enabled ? service_.registerItem() : service_.unregisterItem();
        if (!succeeded) service_.beep();
    }
    return isEnabled();
}

} // namespace kelvinbar
