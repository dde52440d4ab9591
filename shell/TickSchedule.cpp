#include "shell/TickSchedule.h"

namespace kelvinbar {

TickSchedule::TickSchedule(std::chrono::milliseconds interval, std::chrono::milliseconds tolerance, Time now)
    : interval_(interval), tolerance_(tolerance), due_(oneIntervalAfter(now)) {}

void TickSchedule::fired(Time now) {
    due_ = now <= due_ + tolerance_ ? due_ + interval_ : oneIntervalAfter(now);
}

TickSchedule::Time TickSchedule::oneIntervalAfter(Time now) const {
    const Time earliest = now + interval_;
    if (tolerance_.count() == 0) return earliest;
    const auto sinceMultiple = earliest.time_since_epoch() % tolerance_;
    return sinceMultiple.count() == 0 ? earliest : earliest - sinceMultiple + tolerance_;
}

} // namespace kelvinbar
