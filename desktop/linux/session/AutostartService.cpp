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
                                   Actions actions, Log& log)
    : shared_(std::make_shared<Shared>(makeEntry, log)), actions_(std::move(actions)), log_(log) {}

AutostartService::~AutostartService() {
    const std::lock_guard lock(shared_->mutex);
    shared_->log = nullptr;
}

/// False also if there is no answer in time, which is logged.
bool AutostartService::isDone(bool (*work)(AutostartEntry& entry)) const {
    const auto done = calls_.run([shared = shared_, work] { return work(shared->entry); }, usualLimit);
    if (!done) {
        log_.write(LogCategory::login, LogLevel::warning, [this] {
            return "the autostart entry " + shared_->entry.file().string() + " does not answer";
        });
    }
    return done.value_or(false);
}

bool AutostartService::isRegistered() const {
    return isDone([](AutostartEntry& entry) { return entry.isRegistered(); });
}

bool AutostartService::registerItem() {
    return isDone([](AutostartEntry& entry) { return entry.registerItem(); });
}

bool AutostartService::unregisterItem() {
    return isDone([](AutostartEntry& entry) { return entry.unregisterItem(); });
}

void AutostartService::renew() {
    calls_.start([shared = shared_] {
        shared->entry.renew();
        return true;
    });
}

std::string AutostartService::programWord() const { return shared_->entry.programWord(); }

} // namespace kelvinbar
