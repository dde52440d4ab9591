#pragma once

#include <cstdlib>
#include <memory>

namespace kelvinbar {

/// Replies of the X server are allocated with malloc and belong to the caller.
struct X11ReplyDeleter {
    void operator()(void* reply) const {
        std::free(reply); // NOLINT(cppcoreguidelines-no-malloc, cppcoreguidelines-owning-memory)
    }
};

/// Null if the request has failed.
template <typename Reply>
using X11Reply = std::unique_ptr<Reply, X11ReplyDeleter>;

/// Takes ownership of a reply.
template <typename Reply>
X11Reply<Reply> ownedReply(Reply* reply) {
    return X11Reply<Reply>(reply);
}

} // namespace kelvinbar
