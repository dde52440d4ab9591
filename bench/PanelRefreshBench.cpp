// The cost of a refresh on the main thread while the panel is open: 300 readings, some of them changed, from
// the arrival of the result to the last pixel. Measured in CPU time, because the thread sleeps in between.

#include "bench/MemoryStore.h"
#include "panel/PanelWindow.h"
#include "panel/SensorSections.h"
#include "shell/LoginItemManager.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <deque>
#include <vector>

namespace kelvinbar::bench {

namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

Milliseconds threadTime() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

class WaitingMainQueue final : public MainQueue {
  public:
    void post(std::function<void()> work) override { waiting_.push_back(std::move(work)); }

    /// The machine of this bench has no watch, which alone sets alarms.
    std::unique_ptr<Alarm> makeAlarm(std::function<void()> /*ring*/) override { return nullptr; }

    void drain() {
        for (; !waiting_.empty(); waiting_.pop_front()) waiting_.front()();
    }

  private:
    std::deque<std::function<void()>> waiting_;
};

/// Runs work immediately, outside the measured time.
class ImmediateQueue final : public BackgroundQueue {
  public:
    Cancellation start(Work work) override {
        Cancellation cancellation;
        work(cancellation);
        return cancellation;
    }
};

/// A desktop without login items.
class NoLoginItemService final : public LoginItemService {
  public:
    [[nodiscard]] bool canRegister() const override { return false; }

    [[nodiscard]] bool isRegistered() const override { return false; }

    bool registerItem() override { return false; }

    bool unregisterItem() override { return false; }

    void openLoginItemsSettings() override {}

    void beep() override {}
};

class OpenPanel {
  public:
    OpenPanel() {
        mainQueue_.drain();
        auto& window = panel_->window();
        window.resize(462, 690);
        window.show();
        QObject::connect(static_cast<QQuickWindow*>(&window), &QQuickWindow::frameSwapped, &window,
                         [this] { ++frames_; });
        settle();
    }

    /// The main thread's CPU time for a refresh in which the readings `changed` have new values.
    Milliseconds refresh(const std::vector<std::string>& changed) {
        for (const std::string& key : changed) memory_.driver().changeValue(key);
        memory_.store().refresh(false);
        const int framesBefore = frames_;
        const Milliseconds before = threadTime();
        mainQueue_.drain();
        QCoreApplication::processEvents();
        if (!changed.empty()) waitForFrameAfter(framesBefore);
        return threadTime() - before;
    }

    /// The keys of all rows, from the top of the list.
    [[nodiscard]] std::vector<std::string> keysOfRows() const {
        std::vector<std::string> keys;
        const ReadingList visible = visibleReadings(memory_.store().readings().value(), {});
        for (const SensorSectionModel& section : sectionModels(visible)) {
            for (const SMCReading* const reading : section.readings) keys.push_back(reading->key);
        }
        return keys;
    }

  private:
    /// Sleeps while there is nothing to do.
    void waitForFrameAfter(int number) const {
        constexpr int timeout = 1000; // milliseconds
        QTimer alarm;
        alarm.setSingleShot(true);
        alarm.start(timeout);
        while (frames_ == number && alarm.isActive()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }

    static void settle() {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < 500) QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }

    WaitingMainQueue mainQueue_;
    ImmediateQueue backgroundQueue_;
    MemoryStore memory_{mainQueue_, backgroundQueue_};
    NoLoginItemService loginItemService_;
    LoginItemManager loginItem_{loginItemService_};
    std::unique_ptr<PanelWindow> panel_ =
        makePanelWindow(memory_.store(), {.loginItem = loginItem_,
                                          .close = [] {},
                                          .prefersReducedMotion = [] { return true; },
                                          .prefersMoreContrast = [] { return false; },
                                          .systemSymbols = {},
                                          .roundedFontFile = [] { return std::string(); }});
    int frames_ = 0;
};

void report(const char* title, OpenPanel& panel, const std::vector<std::string>& changed) {
    constexpr int rounds = 300;
    std::vector<double> times;
    times.reserve(rounds);
    for (int round = 0; round < rounds; ++round) times.push_back(panel.refresh(changed).count());
    std::ranges::sort(times);
    std::printf("  %-44s %8.2f %8.2f\n", title, times[rounds / 2], times[rounds * 95 / 100]);
}

} // namespace

} // namespace kelvinbar::bench

int main(int argc, char** argv) {
    using namespace kelvinbar::bench;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    OpenPanel panel;
    const auto keys = panel.keysOfRows();
    std::printf("A refresh of 300 readings, panel open         median ms   95%% ms\n");
    report("nothing has changed", panel, {});
    report("30 have changed, those on the screen first", panel, {keys.begin(), keys.begin() + 30});
    report("all have changed", panel, keys);
    return 0;
}
