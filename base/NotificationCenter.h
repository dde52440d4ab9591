#pragma once

#include "base/HandlerList.h"

#include <functional>
#include <map>
#include <memory>
#include <string_view>
#include <utility>

/// Broadcasts within the process. Sender and receiver share only the name of a notification and the type of
/// its content; neither knows the other. Use an Observable where the receiver also needs the current value.
///
/// Limits: main thread only. Nothing is queued or stored: an observer misses what was posted before it was
/// added. Pitfall: names are compared as text, so two names with the same text and different content types
/// would collide; each belongs to the type that is observed first, and the other is ignored.
namespace kelvinbar {

/// The name of a notification with the type of its content.
template <typename Content>
struct NotificationName {
    std::string_view name; ///< must outlive every notification centre; a string literal does
};

/// Delivers each notification to the observers of its name, in the order of their registration. Observers may
/// add and remove observers and post notifications while they are called; see HandlerList. Main thread.
class NotificationCenter {
  public:
    /// The observer stays registered as long as the result lives. The result is empty, and the observer is
    /// never called, if the name is in use with another content type.
    template <typename Content>
    Registration addObserver(const NotificationName<Content>& name,
                             std::function<void(const Content&)> handler) {
        auto& channel = channels_[name.name];
        if (channel == nullptr) channel = std::make_unique<TypedChannel<Content>>();
        auto* const typed = dynamic_cast<TypedChannel<Content>*>(channel.get());
        return typed == nullptr ? Registration() : typed->handlers.add(std::move(handler));
    }

    /// Calls the observers before it returns.
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
