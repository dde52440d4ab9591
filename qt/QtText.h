#pragma once

#include <QString>
#include <string_view>

namespace kelvinbar {

/// Converts UTF-8. Invalid bytes become replacement characters.
inline QString qtText(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace kelvinbar
