#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <utility>

/// A list of callbacks, the base of observable fields and notifications. What one change triggers often
/// registers or removes handlers, so the list allows every change to itself while it calls them.
///
/// Limits: main thread only; no lock. An exception of a handler, such as std::bad_alloc, ends the call: the
/// handlers after it are not called. Adding takes constant time, removing looks at every handler: meant for
/// tens of handlers, not thousands.
///
/// Pitfalls: the registration owns the subscription, so a discarded one ends it at once. A handler must not
/// keep alive the object that owns its registration, or both live as long as the list. Copies of a list share
/// their handlers.
namespace kelvinbar {

/// Keeps a handler registered as long as it lives. It can be destroyed at any time: by its own handler, by
/// another handler, or after the list. An empty registration does nothing. Main thread.
class [[nodiscard]] Registration {
  public:
    Registration() = default;

    explicit Registration(std::function<void()> cancel) : cancel_(std::move(cancel)) {}

    Registration(Registration&& other) noexcept : cancel_(std::exchange(other.cancel_, nullptr)) {}

    Registration& operator=(Registration&& other) noexcept {
        if (this != &other) {
            reset();
            cancel_ = std::exchange(other.cancel_, nullptr);
        }
        return *this;
    }

    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;

    ~Registration() { reset(); }

    /// Removes the handler now. Does nothing when repeated.
    void reset() {
        if (const auto cancel = std::exchange(cancel_, nullptr)) cancel();
    }

  private:
    std::function<void()> cancel_;
};

/// Handlers, called in the order of their registration.
///
/// While it is called, a handler may:
/// - remove itself or others; a removed handler is not called again, not even by the call in progress;
/// - add handlers; the call in progress does not reach them, the next one does;
/// - call the list again, or destroy it.
///
/// Main thread.
template <typename... Arguments>
class HandlerList {
  public:
    using Handler = std::function<void(Arguments...)>;

    /// The handler stays registered as long as the result lives.
    Registration add(Handler handler) {
        const std::uint64_t number = ++state_->lastNumber;
        std::function<void()> cancel = [weak = std::weak_ptr<State>(state_), number] {
            if (const auto state = weak.lock()) state->remove(number);
        };
        state_->entries.push_back({number, true, std::move(handler)});
        return Registration(std::move(cancel));
    }

    /// Calls every handler before it returns. Each receives the same arguments: use references for what is
    /// expensive to copy.
    void call(Arguments... arguments) const {
        const std::shared_ptr<State> state = state_; // a handler may destroy the list
        std::size_t count = state->entries.size();
        const Call call(*state);
        for (auto entry = state->entries.begin(); count > 0; ++entry, --count) {
            if (entry->active) entry->handler(arguments...);
        }
    }

    /// Whether no handler is registered. A handler removed during a call counts until that call has ended.
    [[nodiscard]] bool empty() const { return state_->entries.empty(); }

  private:
    struct Entry {
        std::uint64_t number = 0;
        bool active = false; ///< false once removed
        Handler handler;
    };

    /// Shared with calls in progress, so that it survives the list; registrations refer to it weakly.
    struct State {
        std::list<Entry> entries;
        std::uint64_t lastNumber = 0;
        std::size_t depth = 0; ///< calls in progress, one within the other
        bool hasInactive = false;

        void remove(std::uint64_t number) {
            for (Entry& entry : entries) {
                if (entry.number == number) entry.active = false;
            }
            hasInactive = true;
            sweep();
        }

        /// Destroys removed handlers. Waits until the outermost call has ended, because one of them may still
        /// be running. Allocates nothing: it is what destructors call.
        void sweep() {
            if (depth > 0 || !hasInactive) return;
            hasInactive = false;
            // Destroying a handler destroys what it has captured, which may add or remove handlers. The list
            // is consistent before that happens.
            std::list<Entry> removed;
            for (auto entry = entries.begin(); entry != entries.end();) {
                const auto place = entry++;
                if (!place->active) removed.splice(removed.end(), entries, place);
            }
        }
    };

    /// A call in progress.
    class Call {
      public:
        explicit Call(State& state) : state_(state) { ++state_.depth; }

        Call(const Call&) = delete;
        Call& operator=(const Call&) = delete;

        ~Call() {
            --state_.depth;
            state_.sweep();
        }

      private:
        State& state_;
    };

    std::shared_ptr<State> state_ = std::make_shared<State>();
};

} // namespace kelvinbar
