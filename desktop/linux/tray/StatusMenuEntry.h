#pragma once

#include <QString>
#include <functional>
#include <optional>

namespace kelvinbar {

/// One entry of the status item's menu.
struct StatusMenuEntry {
    /// What the entry is, whatever its text: see StatusMenuItem. An identity keeps its kind: it is always a
    /// separator, always has a check mark, or never.
    QString identity;
    QString text; ///< empty for a separator
    /// Not called for a separator. May change the entries. `timestamp` is the display server's time of the
    /// choice in ms, 0 if unknown.
    std::function<void(uint timestamp)> action;
    std::optional<bool> isChecked; ///< no value: has no check mark
};

} // namespace kelvinbar
