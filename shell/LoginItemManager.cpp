#include "shell/LoginItemManager.h"

namespace kelvinbar {

namespace {

LoginItemService*& service() {
    static LoginItemService* current = nullptr;
    return current;
}

} // namespace

void LoginItemManager::useService(LoginItemService& newService) { service() = &newService; }

bool LoginItemManager::canRegister() { return service() != nullptr && service()->canRegister(); }

bool LoginItemManager::isEnabled() { return canRegister() && service()->isRegistered(); }

bool LoginItemManager::setEnabled(bool enabled) {
    if (service() == nullptr) return false;
    if (!canRegister()) {
        service()->openLoginItemsSettings();
        return false;
    }
    const bool current = isEnabled();
    if (enabled != current) {
        const bool succeeded = enabled ? service()->registerItem() : service()->unregisterItem();
        if (!succeeded) service()->beep();
    }
    return isEnabled();
}

} // namespace kelvinbar
