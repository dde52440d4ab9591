#pragma once

#include "qt/QtText.h"

#include <QClipboard>
#include <QGuiApplication>
#include <string_view>

namespace kelvinbar {

/// Replaces what is on the clipboard by `text`, which is UTF-8. Main thread, with an application object.
inline void copyToClipboard(std::string_view text) {
    QClipboard& clipboard = *QGuiApplication::clipboard();
    clipboard.clear();
    clipboard.setText(qtText(text));
}

} // namespace kelvinbar
