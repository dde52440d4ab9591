#pragma once

#include "base/HandlerList.h"

#include <functional>
#include <map>
#include <memory>
#include <string_view>
#include <utility>

namespace kelvinbar {

/// The name of a broadcast inside the process, with the type of what it carries.
template <typename Content>
struct NotificationName {
    std::string_view name; ///< outlives every notification centre
};

/// Delivers each notification synchronously, in posting order, to the observers of its name in the order of
/// their registration. Does not keep observers alive: it holds a handler only until its registration goes.
/// Observers may remove themselves or others while they are called. Main thread.
class NotificationCenter {
  public:
    template <typename Content>
    Registration addObserver(const NotificationName<Content>& name,
                             std::function<void(const Content&)> handler) {
        auto& channel = channels_[name.name];
        if (channel == nullptr) channel = std::make_unique<TypedChannel<Content>>();
        auto* const typed = dynamic_cast<TypedChannel<Content>*>(channel.get());
        return typed == nullptr ? Registration() : typed->handlers.add(std::move(handler));
    }

    template <typename Content>
    void post(const NotificationName<Content>& name, const Content& content) const {
        const auto found = channels_.find(name.name);
        if (found == channels_.end()) return;
        const auto* const typed = dynamic_cast<const TypedChannel<Content>*>(found->second.get());
        if (typed != nullptr) typed->handlers.call(content);
    }

  private:
    struct Channel {
        virtual ~Channel() = default;
    };

    template <typename Content>
    struct TypedChannel final : Channel {
        HandlerList<const Content&> handlers;
    };

    std::map<std::string_view, std::unique_ptr<Channel>> channels_;
};

} // namespace kelvinbar
