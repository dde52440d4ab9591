#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace kelvinbar {

/// Keeps a handler registered for as long as it lives. Safe to destroy at any time: while its own handler
/// runs, from another handler, or after the list it belongs to. Main thread.
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

    void reset() {
        if (const auto cancel = std::exchange(cancel_, nullptr)) cancel();
    }

  private:
    std::function<void()> cancel_;
};

/// Handlers called in the order of their registration.
///
/// A handler may remove itself or others, add handlers, call the list again, or destroy the list while it is
/// called: a removed handler is not called any more, an added one is called from the next call on. Main
/// thread.
template <typename... Arguments>
class HandlerList {
  public:
    using Handler = std::function<void(Arguments...)>;

    Registration add(Handler handler) {
        const std::uint64_t number = ++state_->lastNumber;
        state_->entries.push_back(std::make_unique<Entry>(Entry{number, true, std::move(handler)}));
        return Registration([weak = std::weak_ptr<State>(state_), number] {
            if (const auto state = weak.lock()) state->remove(number);
        });
    }

    void call(Arguments... arguments) const {
        const std::shared_ptr<State> state = state_; // survives a handler that destroys the list
        const std::size_t count = state->entries.size();
        ++state->depth;
        for (std::size_t index = 0; index < count; ++index) {
            if (const Entry& entry = *state->entries[index]; entry.active) entry.handler(arguments...);
        }
        --state->depth;
        state->sweep();
    }

    [[nodiscard]] bool empty() const { return state_->entries.empty(); }

  private:
    struct Entry {
        std::uint64_t number = 0;
        bool active = false;
        Handler handler;
    };

    struct State {
        std::vector<std::unique_ptr<Entry>> entries;
        std::uint64_t lastNumber = 0;
        std::size_t depth = 0;
        bool hasInactive = false;

        void remove(std::uint64_t number) {
            for (const auto& entry : entries) {
                if (entry->number == number) entry->active = false;
            }
            hasInactive = true;
            sweep();
        }

        /// A handler that may be running is destroyed only after the outermost call has returned.
        void sweep() {
            if (depth > 0 || !hasInactive) return;
            hasInactive = false;
            std::vector<std::unique_ptr<Entry>> kept;
            for (auto& entry : entries) {
                if (entry->active) kept.push_back(std::move(entry));
            }
            // What a handler holds may register or remove others when it goes: the list is consistent by
            // then.
            entries.swap(kept);
        }
    };

    std::shared_ptr<State> state_ = std::make_shared<State>();
};

} // namespace kelvinbar
