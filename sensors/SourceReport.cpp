#include "sensors/SourceReport.h"

namespace kelvinbar {

std::string_view textOf(LeftOutReason reason) {
    switch (reason) {
    case LeftOutReason::setting:
        return "a setting, not a measurement";
    case LeftOutReason::repeated:
        return "shown by another reading";
    case LeftOutReason::ignored:
        return "ignored in the configuration of libsensors";
    case LeftOutReason::unnamed:
        return "without a name";
    case LeftOutReason::switchedOff:
        return "switched off in its driver";
    case LeftOutReason::unconnected:
        return "not connected";
    case LeftOutReason::unreadable:
        return "unreadable";
    case LeftOutReason::notPermitted:
        return "readable by the administrator only";
    case LeftOutReason::asleep:
        return "asleep";
    case LeftOutReason::silent:
        return "without an answer";
    }
    return {};
}

} // namespace kelvinbar
