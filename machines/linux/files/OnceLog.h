#pragma once

#include <functional>
#include <set>
#include <string>
#include <utility>

namespace kelvinbar {

/// Tells people what is left out and why, each thing once a run however often it is found.
class OnceLog {
  public:
    using Sink = std::function<void(const std::string&)>;

    explicit OnceLog(Sink sink) : sink_(std::move(sink)) {}

    void say(const std::string& message) {
        if (said_.insert(message).second) sink_(message);
    }

  private:
    Sink sink_;
    std::set<std::string> said_;
};

} // namespace kelvinbar
