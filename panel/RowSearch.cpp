#include "panel/RowSearch.h"

#include "panel/PropertyChange.h"
#include "panel/SensorList.h"

#include <algorithm>

namespace kelvinbar {

namespace {

bool isPrintable(const QString& letters) {
    return !letters.isEmpty() && std::ranges::all_of(letters, [](QChar letter) { return letter.isPrint(); });
}

} // namespace

RowSearch::RowSearch(SensorList& sensors) : sensors_(sensors) {
    timeout_.setSingleShot(true);
    timeout_.setInterval(pause);
    connect(&timeout_, &QTimer::timeout, this, &RowSearch::end);
}

bool RowSearch::type(const QString& letters) {
    if (!isPrintable(letters) || (text_.isEmpty() && letters.trimmed().isEmpty())) return false;
    find(text_ + letters);
    return true;
}

bool RowSearch::eraseLast() {
    if (text_.isEmpty()) return false;
    if (text_.size() == 1) return end();
    find(text_.chopped(1));
    return true;
}

bool RowSearch::end() {
    if (text_.isEmpty()) return false;
    timeout_.stop();
    changeProperty(*this, text_, QString(), &RowSearch::textChanged);
    return true;
}

void RowSearch::find(const QString& text) {
    const bool isFirstLetter = text_.isEmpty();
    const bool isFound = sensors_.goToRowNamed(text, isFirstLetter);
    timeout_.start();
    changeProperty(*this, text_, text, &RowSearch::textChanged);
    changeProperty(*this, isFound_, isFound, &RowSearch::isFoundChanged);
}

} // namespace kelvinbar
