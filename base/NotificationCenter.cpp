#include "base/NotificationCenter.h"

namespace kelvinbar {

Registration NotificationCenter::addObserver(std::string_view name, Handler handler) {
    return handlers_[std::string(name)].add(std::move(handler));
}

void NotificationCenter::post(const Notification& notification) const {
    const auto found = handlers_.find(notification.name);
    if (found != handlers_.end()) found->second.call(notification);
}

} // namespace kelvinbar
