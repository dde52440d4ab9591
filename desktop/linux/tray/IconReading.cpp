#include "desktop/linux/tray/IconReading.h"

#include "desktop/linux/tray/ReadingIcon.h"
#include "qt/QtText.h"

#include <algorithm>

namespace kelvinbar {

namespace {

QString textOf(const PinnedReading& reading) { return iconText(qtText(reading.compactValue)); }

std::vector<PinnedReading> withNumbers(const std::vector<PinnedReading>& pinned) {
    std::vector<PinnedReading> found;
    std::ranges::copy_if(pinned, std::back_inserter(found),
                         [](const PinnedReading& reading) { return !textOf(reading).isEmpty(); });
    return found;
}

} // namespace

QString IconReading::text(const std::vector<PinnedReading>& pinned) const {
    const auto drawable = withNumbers(pinned);
    if (drawable.empty()) return {};
    const auto chosen = std::ranges::find(drawable, key_, &PinnedReading::key);
    return textOf(chosen == drawable.end() ? drawable.front() : *chosen);
}

void IconReading::goOn(const std::vector<PinnedReading>& pinned) {
    const auto drawable = withNumbers(pinned);
    if (drawable.empty()) return;
    auto next = std::ranges::find(drawable, key_, &PinnedReading::key);
    if (next == drawable.end()) next = drawable.begin();
    if (++next == drawable.end()) next = drawable.begin();
    key_ = next->key;
}

std::size_t IconReading::choices(const std::vector<PinnedReading>& pinned) {
    return withNumbers(pinned).size();
}

} // namespace kelvinbar
