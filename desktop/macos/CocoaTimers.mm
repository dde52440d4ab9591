#include "desktop/macos/CocoaTimers.h"

#import <Foundation/Foundation.h>
#include <utility>

namespace kelvinbar {

namespace {

NSTimeInterval secondsOf(std::chrono::milliseconds duration) {
    return std::chrono::duration<NSTimeInterval>(duration).count();
}

class CocoaTimer final : public RepeatingTimer {
  public:
    CocoaTimer(std::chrono::milliseconds interval, std::chrono::milliseconds tolerance,
               std::function<void()> block) {
        @autoreleasepool {
            const auto shared = std::make_shared<const std::function<void()>>(std::move(block));
            timer_ = [NSTimer timerWithTimeInterval:secondsOf(interval)
                                            repeats:YES
                                              block:^(NSTimer*) {
                                                const auto kept = shared; // it may destroy the timer
                                                (*kept)();
                                              }];
            timer_.tolerance = secondsOf(tolerance);
            // The common modes include those of open menus and of scrolling.
            [NSRunLoop.mainRunLoop addTimer:timer_ forMode:NSRunLoopCommonModes];
        }
    }

    CocoaTimer(const CocoaTimer&) = delete;
    CocoaTimer& operator=(const CocoaTimer&) = delete;

    ~CocoaTimer() override { stop(); }

    void invalidate() override { stop(); }

  private:
    void stop() {
        @autoreleasepool {
            [timer_ invalidate];
        }
    }

    NSTimer* timer_;
};

} // namespace

std::unique_ptr<RepeatingTimer> CocoaTimers::start(std::chrono::milliseconds interval,
                                                   std::chrono::milliseconds tolerance,
                                                   std::function<void()> block) {
    return std::make_unique<CocoaTimer>(interval, tolerance, std::move(block));
}

} // namespace kelvinbar
