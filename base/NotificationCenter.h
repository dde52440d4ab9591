#pragma once

#include "base/HandlerList.h"
#include "base/Value.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace kelvinbar {

/// A broadcast inside the process: a name, optionally the object that it is about, and further entries.
struct Notification {
    std::string_view name;
    std::optional<Value> object;
    Dictionary userInfo;
};

/// Delivers each notification synchronously, in posting order, to the observers of its name in the order of
/// their registration. Holds no observer alive: it keeps the handler only until the registration goes.
/// Observers may remove themselves or others while they are called. Main thread.
class NotificationCenter {
  public:
    using Handler = std::function<void(const Notification&)>;

    Registration addObserver(std::string_view name, Handler handler);
    void post(const Notification& notification) const;

  private:
    std::map<std::string, HandlerList<const Notification&>, std::less<>> handlers_;
};

} // namespace kelvinbar
