#include "base/BoundedCall.h"

#include <exception>
#include <thread>
#include <utility>

namespace kelvinbar {

CallEnd BoundedCall::run(Work work, std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    if (!waitUntil(deadline)) return CallEnd::notStarted;
    start(std::move(work));
    if (!running_.valid()) return CallEnd::notStarted;
    if (!waitUntil(deadline)) return CallEnd::late;
    try {
        return running_.get() ? CallEnd::succeeded : CallEnd::failed;
    } catch (const std::exception&) { // of the work, such as std::bad_alloc
        return CallEnd::failed;
    }
}

void BoundedCall::start(Work work) {
    if (!waitUntil(std::chrono::steady_clock::now())) return;
    running_ = {};
    try {
        std::packaged_task<bool()> task(std::move(work));
        running_ = task.get_future();
        std::thread(std::move(task)).detach();
    } catch (const std::exception&) {
        running_ = {}; // there is no memory or no thread
    }
}

bool BoundedCall::waitUntil(std::chrono::steady_clock::time_point deadline) const {
    return !running_.valid() || running_.wait_until(deadline) == std::future_status::ready;
}

} // namespace kelvinbar
