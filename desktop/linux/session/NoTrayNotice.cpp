#include "desktop/linux/session/NoTrayNotice.h"

#include <utility>

namespace kelvinbar {

namespace {

std::string noticeText(const TraySituation& situation) {
    if (situation.hasBus) {
        return "no tray shows the status item; to open the panel, run \"" + situation.command + "\" again";
    }
    return "no tray shows the status item, and without a session bus a second start cannot open the panel; "
           "run "
           "\"dbus-run-session " +
           situation.command + "\" instead";
}

} // namespace

NoTrayNotice::NoTrayNotice(TraySituation situation, std::chrono::milliseconds wait, Log& log)
    : situation_(std::move(situation)), log_(log) {
    timer_.setSingleShot(true);
    QObject::connect(&timer_, &QTimer::timeout, [this] { look(); });
    timer_.start(wait);
}

void NoTrayNotice::look() {
    const std::optional<bool> hasTray = situation_.hasTray();
    if (!hasTray && !std::exchange(hasAsked_, true)) {
        timer_.start();
    } else if (!hasTray.value_or(false)) {
        giveNotice();
    }
}

void NoTrayNotice::giveNotice() const {
    log_.write(LogCategory::tray, LogLevel::warning, [this] { return noticeText(situation_); });
    const bool isHelpless = situation_.isFirstStart || !situation_.hasBus;
    if (isHelpless && !situation_.isAtLogin) situation_.openPanel();
}

} // namespace kelvinbar
