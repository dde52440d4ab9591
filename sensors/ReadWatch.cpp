#include "sensors/ReadWatch.h"

#include <algorithm>
#include <utility>

namespace kelvinbar {

namespace {

thread_local WatchedPass* passOfThread = nullptr;

std::string limitText(std::chrono::milliseconds limit) {
    return std::to_string(std::chrono::duration_cast<std::chrono::seconds>(limit).count()) + " s";
}

/// Whether `file` is `device` or in its folder.
bool isInDevice(std::string_view file, std::string_view device) {
    return file.starts_with(device) && (file.size() == device.size() || file[device.size()] == '/');
}

} // namespace

std::chrono::milliseconds ReadWatch::setAsideSilentDevices() {
    std::vector<Line> lines;
    std::chrono::nanoseconds next = limit_;
    {
        const std::lock_guard lock(mutex_);
        const auto now = clock_->now();
        for (NamedDevice& device : devices_) {
            const WatchedPass* const visitor = device.second.visitor;
            if (visitor == nullptr || device.second.silentFile) continue;
            const auto rest = visitor->since_ + limit_ - now;
            if (rest.count() <= 0) {
                lines.push_back(setAside(device));
            } else {
                next = std::min(next, rest);
            }
        }
    }
    for (const Line& line : lines) {
        log_.once(line.category, LogLevel::warning, [&] { return line.text; });
    }
    return std::chrono::ceil<std::chrono::milliseconds>(next);
}

ReadWatch::Line ReadWatch::setAside(NamedDevice& device) {
    auto& [name, state] = device;
    std::string file(state.visitor->file_);
    Line line{state.category, "no answer from " + file + " in " + limitText(limit_) + "; " + name +
                                  " is set aside until it answers"};
    silent_.push_back(&device);
    state.silentFile = std::move(file);
    state.visitor->isAbandoned_ = true;
    --visited_;
    changed_.notify_all();
    return line;
}

/// Whether a visit of `device` depends on what other visitors do. With three devices set aside, one visitor
/// at a time keeps the number of stuck threads at four.
bool ReadWatch::mustWait(const NamedDevice& device) const {
    if (silentFileOf(device)) return false;
    return device.second.visitor != nullptr || visited_ + silent_.size() >= mostSilent;
}

/// The file because of which `device` must not be read; no value if it may be. A file that does not answer
/// may have been read for another device, as in the search for a controller.
std::optional<std::string> ReadWatch::silentFileOf(const NamedDevice& device) const {
    const auto& [name, state] = device;
    if (silent_.empty() || state.silentFile) return state.silentFile;
    for (const NamedDevice* const other : silent_) {
        const auto& file = other->second.silentFile;
        if (file && isInDevice(*file, name)) return file;
    }
    return silent_.size() >= mostSilent ? std::optional(name) : std::nullopt;
}

ReadWatch::NamedDevice* ReadWatch::enter(WatchedPass& pass, std::string_view name, LogCategory category) {
    std::unique_lock lock(mutex_);
    if (pass.isAbandoned_) return nullptr;
    auto device = devices_.find(name);
    if (device == devices_.end()) device = devices_.emplace(name, Device{}).first;
    changed_.wait(lock, [&] { return !mustWait(*device); });
    if (auto file = silentFileOf(*device)) {
        pass.addSilentDevice({device->first, *std::move(file)});
        return nullptr;
    }
    Device& state = device->second;
    state.category = category;
    state.visitor = &pass;
    ++visited_;
    pass.file_ = device->first;
    pass.since_ = clock_->now();
    return &*device;
}

void ReadWatch::leave(WatchedPass& pass, NamedDevice& device) {
    auto& [name, state] = device;
    bool answersAgain = false;
    {
        const std::lock_guard lock(mutex_);
        pass.file_ = {};
        state.visitor = nullptr;
        answersAgain = std::erase(silent_, &device) > 0;
        state.silentFile.reset();
        if (!answersAgain) --visited_;
        changed_.notify_all();
    }
    if (!answersAgain) return;
    log_.write(state.category, LogLevel::info, [&answering = name] { return answering + " answers again"; });
}

/// The file that was noted before; no value if the pass is abandoned.
std::optional<std::string_view> ReadWatch::note(WatchedPass& pass, std::string_view file) {
    const std::lock_guard lock(mutex_);
    if (pass.isAbandoned_) return std::nullopt;
    pass.since_ = clock_->now();
    return std::exchange(pass.file_, file);
}

WatchedPass::Scope::Scope(WatchedPass& pass) {
    if (pass.watch_ != nullptr) passOfThread = &pass;
}

WatchedPass::Scope::~Scope() { passOfThread = nullptr; }

bool WatchedPass::isAbandoned() const {
    if (watch_ == nullptr) return false;
    const std::lock_guard lock(watch_->mutex_);
    return isAbandoned_;
}

void WatchedPass::addSilentDevice(SilentDevice device) {
    if (std::ranges::find(silentDevices_, device) == silentDevices_.end()) {
        silentDevices_.push_back(std::move(device));
    }
}

WatchedPass* WatchedPass::current() { return passOfThread; }

DeviceVisit::DeviceVisit(std::string_view name, LogCategory category) : pass_(passOfThread) {
    if (pass_ == nullptr) return;
    device_ = pass_->watch_->enter(*pass_, name, category);
    pass_->isVisiting_ = device_ != nullptr;
}

DeviceVisit::~DeviceVisit() {
    if (device_ == nullptr) return;
    pass_->isVisiting_ = false;
    pass_->watch_->leave(*pass_, *device_);
}

NotedRead::NotedRead(std::string_view file)
    : pass_(passOfThread != nullptr && passOfThread->isVisiting_ ? passOfThread : nullptr) {
    if (pass_ == nullptr) return;
    if (pass_->openNotes_++ == 0) ++pass_->accesses_;
    outer_ = pass_->watch_->note(*pass_, file);
}

NotedRead::~NotedRead() {
    if (pass_ != nullptr) --pass_->openNotes_;
    // A pass that was abandoned in the meantime stays with the file that did not answer.
    if (outer_) static_cast<void>(pass_->watch_->note(*pass_, *outer_));
}

} // namespace kelvinbar
