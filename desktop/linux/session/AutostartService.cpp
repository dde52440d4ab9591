#include "desktop/linux/session/AutostartService.h"

#include "base/Log.h"

#include <mutex>
#include <utility>

namespace kelvinbar {

/// What the object and a thread that may outlive it have in common.
struct AutostartService::Shared {
    Shared(const std::function<AutostartEntry(AutostartEntry::Report)>& makeEntry, Log& ownLog)
        : log(&ownLog)
        , entry(makeEntry([this](LogLevel level, const std::string& line) { tell(level, line); })) {}

    void tell(LogLevel level, const std::string& line) {
        const std::lock_guard lock(mutex);
        if (log != nullptr) log->write(LogCategory::login, level, [&] { return line; });
    }

    std::mutex mutex;
    Log* log; ///< null when the object is gone
    AutostartEntry entry;
};

AutostartService::AutostartService(const std::function<AutostartEntry(AutostartEntry::Report)>& makeEntry,
                                   Actions actions, Patience patience, Log& log)
    : shared_(std::make_shared<Shared>(makeEntry, log))
    , actions_(std::move(actions))
    , patience_(patience)
    , log_(log) {}

AutostartService::~AutostartService() {
    const std::lock_guard lock(shared_->mutex);
    shared_->log = nullptr;
}

/// Logs the first of several calls that get no answer in time.
CallEnd AutostartService::call(Work work, std::chrono::milliseconds limit) const {
    const CallEnd end = calls_.run([shared = shared_, work] { return work(shared->entry); }, limit);
    const bool isSilent = end == CallEnd::late || end == CallEnd::notStarted;
    if (!std::exchange(isSilent_, isSilent) && isSilent) {
        log_.write(LogCategory::login, LogLevel::warning, [this] {
            return "the disk of the autostart entry " + shared_->entry.file().string() + " does not answer";
        });
    }
    return end;
}

bool AutostartService::isRegistered() const {
    const CallEnd end = call([](AutostartEntry& entry) { return entry.isRegistered(); }, patience_.look);
    if (!isSilent_) isRegistered_ = end == CallEnd::succeeded;
    return isRegistered_;
}

/// Returns false on failure.
bool AutostartService::change(Work work, bool willBeRegistered) {
    const CallEnd end = call(work, patience_.change);
    const bool isMade = end == CallEnd::succeeded || end == CallEnd::late;
    if (isMade) isRegistered_ = willBeRegistered;
    return isMade;
}

bool AutostartService::registerItem() {
    return change([](AutostartEntry& entry) { return entry.registerItem(); }, true);
}

bool AutostartService::unregisterItem() {
    return change([](AutostartEntry& entry) { return entry.unregisterItem(); }, false);
}

void AutostartService::renew() {
    calls_.start([shared = shared_] {
        shared->entry.renew();
        return true;
    });
}

std::string AutostartService::programWord() const { return shared_->entry.programWord(); }

} // namespace kelvinbar
