#pragma once

#include "base/Clock.h"
#include "base/Log.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Reads that never come back. A driver can keep a read in the kernel for ever, and nothing ends such a
/// thread. So a device whose read takes too long is set aside: its thread is left alone, the pass that it
/// worked for is abandoned and done again on another thread, and no pass reads the device until the read
/// returns.
///
/// A pass says what it does: it enters a device (`DeviceVisit`) and notes the file or call that may block
/// (`NotedRead`). The thread that started the pass looks at its notes now and then. Nothing here starts a
/// thread, sets a timer or wakes anybody while all devices answer.
///
/// The pass of a thread is found through a thread-local pointer, so that the functions that open and read
/// files need no further argument. Outside a pass, visits are allowed and notes have no effect.
///
/// Limits: four devices may be set aside. From then on no device is read until one of them answers, so that
/// at most four threads are stuck. Pitfall: time during which the machine sleeps counts; a device set aside
/// for that reason is back at once.
namespace kelvinbar {

class WatchedPass;

/// A read that did not come back.
struct SilentDevice {
    std::string device;
    std::string file; ///< that the thread was reading, or the device itself

    friend bool operator==(const SilentDevice&, const SilentDevice&) = default;
};

/// The devices of one machine, those that are read at the moment and those that have been set aside. Any
/// thread.
class ReadWatch {
  public:
    /// How long a read may take.
    static constexpr std::chrono::milliseconds usualLimit{2000};
    static constexpr std::size_t mostSilent = 4;

    /// `log` outlives the watch.
    ReadWatch(std::shared_ptr<const MonotonicClock> clock, Log& log,
              std::chrono::milliseconds limit = usualLimit)
        : clock_(std::move(clock)), log_(log), limit_(limit) {}

    ReadWatch(const ReadWatch&) = delete;
    ReadWatch& operator=(const ReadWatch&) = delete;
    ~ReadWatch() = default;

    /// Sets aside the devices whose read has taken the limit or longer, and abandons the passes that read
    /// them. Returns the time until the next read reaches the limit; the limit itself while nothing is read.
    std::chrono::milliseconds setAsideSilentDevices();

    [[nodiscard]] std::chrono::milliseconds limit() const { return limit_; }

  private:
    friend class WatchedPass;
    friend class DeviceVisit;
    friend class NotedRead;

    struct Device {
        LogCategory category = LogCategory::sourceKernel;
        WatchedPass* visitor = nullptr;
        std::optional<std::string> silentFile; ///< set while the device is set aside
    };

    using Devices = std::map<std::string, Device, std::less<>>;

    using NamedDevice = Devices::value_type;

    /// A line for the log, which is written without the lock.
    struct Line {
        LogCategory category;
        std::string text;
    };

    // These are called by the thread of the pass. What they return stays valid until the visit ends.
    NamedDevice* enter(WatchedPass& pass, std::string_view name, LogCategory category);
    void leave(WatchedPass& pass, NamedDevice& device);
    std::optional<std::string_view> note(WatchedPass& pass, std::string_view file);

    [[nodiscard]] bool mustWait(const NamedDevice& device) const;
    [[nodiscard]] std::optional<std::string> silentFileOf(const NamedDevice& device) const;
    Line setAside(NamedDevice& device);

    const std::shared_ptr<const MonotonicClock> clock_;
    Log& log_;
    const std::chrono::milliseconds limit_;
    std::mutex mutex_; ///< guards what follows and the private members of passes; never held while reading
    std::condition_variable changed_;
    Devices devices_;
    std::size_t visited_ = 0;                ///< devices with a visitor that are not set aside
    std::vector<const NamedDevice*> silent_; ///< devices set aside, few of many
};

/// One pass over the sensors, as far as the watch sees it. The pass runs on one thread, inside a `Scope`.
class WatchedPass {
  public:
    /// A null `watch` watches nothing.
    explicit WatchedPass(std::shared_ptr<ReadWatch> watch) : watch_(std::move(watch)) {}

    WatchedPass(const WatchedPass&) = delete;
    WatchedPass& operator=(const WatchedPass&) = delete;
    ~WatchedPass() = default;

    /// While it lives, this thread works for `pass`.
    class Scope {
      public:
        explicit Scope(WatchedPass& pass);
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        ~Scope();
    };

    /// Whether the pass was in a device when that was set aside. It reads no further, and nobody waits for
    /// its result. Any thread.
    [[nodiscard]] bool isAbandoned() const;

    /// The devices that this pass was not allowed to enter because they have been set aside. The thread of
    /// the pass, or any after its end.
    [[nodiscard]] const std::vector<SilentDevice>& silentDevices() const { return silentDevices_; }

    /// How often the pass has turned to a file or a driver, to read it or to see whether it is still there. A
    /// noted read inside another one does not count. The thread of the pass, or any after its end. 0 without
    /// a watch.
    [[nodiscard]] std::size_t accesses() const { return accesses_; }

    /// The pass of this thread; null outside a pass and without a watch.
    [[nodiscard]] static WatchedPass* current();

  private:
    friend class ReadWatch;
    friend class DeviceVisit;
    friend class NotedRead;

    /// Unless it is known.
    void addSilentDevice(SilentDevice device);

    const std::shared_ptr<ReadWatch> watch_;
    std::vector<SilentDevice> silentDevices_;
    // Only used by the thread of the pass.
    bool isVisiting_ = false;
    std::size_t openNotes_ = 0;
    std::size_t accesses_ = 0;
    // Guarded by the watch.
    std::string_view file_; ///< that the thread reads
    std::chrono::nanoseconds since_{0};
    bool isAbandoned_ = false;
};

/// A device while the pass of this thread reads it. A device has one visitor at a time: the constructor waits
/// for the other pass, or until the device is set aside. A thread visits one device at a time.
class DeviceVisit {
  public:
    /// `category` is that of the lines in the log.
    DeviceVisit(std::string_view name, LogCategory category);
    DeviceVisit(const DeviceVisit&) = delete;
    DeviceVisit& operator=(const DeviceVisit&) = delete;

    /// Puts a device that had been set aside during this visit back into use.
    ~DeviceVisit();

    /// False if the device must not be touched: it has been set aside, or the pass is abandoned.
    [[nodiscard]] bool isAllowed() const { return pass_ == nullptr || device_ != nullptr; }

  private:
    WatchedPass* const pass_;
    ReadWatch::NamedDevice* device_ = nullptr;
};

/// A file that is read, or a call to a driver, while the object lives. Objects nest; the innermost counts.
class NotedRead {
  public:
    /// `file` must stay valid for the life of the object.
    explicit NotedRead(std::string_view file);
    NotedRead(const NotedRead&) = delete;
    NotedRead& operator=(const NotedRead&) = delete;
    ~NotedRead();

    /// False if the pass is abandoned, whose thread should come back soon.
    [[nodiscard]] bool isAllowed() const { return pass_ == nullptr || outer_; }

  private:
    WatchedPass* const pass_; ///< null outside a visit
    std::optional<std::string_view> outer_;
};

} // namespace kelvinbar
