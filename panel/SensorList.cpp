#include "panel/SensorList.h"

#include "panel/SensorRowTexts.h"
#include "qt/QtText.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>
#include <utility>

namespace kelvinbar {

// Content

void SensorList::update(const std::vector<SMCReading>& readings, const KeySet& hiddenKeys,
                        const std::vector<std::string>& menuBarKeys) {
    const double formerHeight = contentHeight();
    const int formerRowTotal = rowTotal();
    const double formerViewportTop = viewport_.top; // a view scrolls by itself when its content shrinks
    const std::vector<std::string> successors = successorsOfCurrentRow();
    const std::vector<RowPlace> formerPlaces = placesToKeep();

    derive(readings, hiddenKeys);
    menuBarKeys_ = menuBarKeys;
    keepCurrentRow(successors);
    if (contentHeight() != formerHeight) emit contentHeightChanged();
    if (rowTotal() != formerRowTotal) emit rowTotalChanged();
    for (const auto& [key, formerTop] : formerPlaces) {
        const auto number = numberOfRow(key);
        if (!number) continue;
        requestViewportTop(formerViewportTop + spanOfRow(*number).top - formerTop);
        break;
    }
    publish();
}

void SensorList::setMetrics(const SensorListMetrics& metrics) {
    metrics_ = metrics;
    layOut();
    publish();
    emit contentHeightChanged();
}

void SensorList::updateInPlace(const std::vector<SMCReading>& readings,
                               const std::vector<std::string>& menuBarKeys) {
    std::unordered_map<std::string_view, const SMCReading*> freshReadings;
    for (const SMCReading& reading : readings) {
        if (reading.hasDisplayableValue()) freshReadings.emplace(reading.key, &reading);
    }
    for (SMCReading& shown : readings_) {
        const auto fresh = freshReadings.find(shown.key);
        if (fresh != freshReadings.end()) shown = *fresh->second;
    }
    measureValues();
    menuBarKeys_ = menuBarKeys;
    publish();
}

void SensorList::derive(const std::vector<SMCReading>& readings, const KeySet& hiddenKeys) {
    readings_ = readings;
    const ReadingList visible = visibleReadings(readings_, hiddenKeys);
    visibleReadingCount_ = visible.size();
    sections_ = sectionModels(visible, texts_.memoryCard);
    layOut();
    measureValues();
}

void SensorList::measureValues() {
    valueShapes_.clear();
    for (const SensorSectionModel& section : sections_) {
        valueShapes_.push_back(longestValueShape(section.readings));
    }
}

void SensorList::layOut() {
    std::vector<std::size_t> rowCounts;
    std::ranges::transform(sections_, std::back_inserter(rowCounts),
                           [](const SensorSectionModel& section) { return section.readings.size(); });
    cardSpans_ = cardSpans(metrics_, rowCounts);
}

/// The row under the pointer, then those on the screen. At the top of the list only the former, so that new
/// rows above the others come into view.
std::vector<SensorList::RowPlace> SensorList::placesToKeep() const {
    std::vector<RowPlace> places;
    if (const auto hovered = numberOfRow(hoveredKey_)) {
        const Span span = spanOfRow(*hovered);
        if (overlap(span, viewport_)) places.push_back({hoveredKey_, span.top});
    }
    if (viewport_.top <= 0) return places;
    for (std::size_t section = 0; section < sections_.size(); ++section) {
        const ReadingList& rows = sections_[section].readings;
        const auto [first, count] = visibleRows(metrics_, cardSpans_[section], rows.size(), viewport_);
        for (std::size_t row = first; row < first + count; ++row) {
            places.push_back({rows[row]->key, cardSpans_[section].top + rowSpan(metrics_, row).top});
        }
    }
    return places;
}

const SMCReading* SensorList::reading(const QString& key) const {
    const auto number = numberOfRow(key.toStdString());
    return number ? &readingOfRow(*number) : nullptr;
}

// Rows, numbered through all sections

std::size_t SensorList::rowCount() const {
    std::size_t count = 0;
    for (const SensorSectionModel& section : sections_) count += section.readings.size();
    return count;
}

SensorList::RowIndex SensorList::rowIndex(std::size_t number) const {
    std::size_t section = 0;
    while (number >= sections_[section].readings.size()) number -= sections_[section++].readings.size();
    return {section, number};
}

std::optional<std::size_t> SensorList::numberOfRow(const std::string& key) const {
    std::size_t number = 0;
    if (key.empty()) return std::nullopt;
    for (const SensorSectionModel& section : sections_) {
        const auto found = std::ranges::find(section.readings, key, &SMCReading::key);
        number += static_cast<std::size_t>(found - section.readings.begin());
        if (found != section.readings.end()) return number;
    }
    return std::nullopt;
}

const SMCReading& SensorList::readingOfRow(std::size_t number) const {
    const auto [section, row] = rowIndex(number);
    return *sections_[section].readings[row];
}

Span SensorList::spanOfRow(std::size_t number) const {
    const auto [section, row] = rowIndex(number);
    const Span span = rowSpan(metrics_, row);
    return {cardSpans_[section].top + span.top, span.height};
}

/// Includes the card's header for the first row of a card.
Span SensorList::spanWithHeader(std::size_t number) const {
    const Span span = spanOfRow(number);
    const auto [section, row] = rowIndex(number);
    if (row > 0) return span;
    const double top = cardSpans_[section].top;
    return {top, span.bottom() - top};
}

// The part on the screen

void SensorList::hover(const QString& key, bool isHovered) {
    // The pointer may enter the next row before it leaves this one.
    const std::string row = key.toStdString();
    if (isHovered) {
        hoveredKey_ = row;
    } else if (hoveredKey_ == row) {
        hoveredKey_.clear();
    }
}

QString SensorList::keyAt(double y) const {
    for (std::size_t section = 0; section < sections_.size(); ++section) {
        const ReadingList& rows = sections_[section].readings;
        const auto [first, count] = visibleRows(metrics_, cardSpans_[section], rows.size(), {y, 0});
        if (count > 0) return qtText(rows[first]->key);
    }
    return {};
}

double SensorList::bottomOf(const QString& key) const {
    const auto number = numberOfRow(key.toStdString());
    return number ? spanOfRow(*number).bottom() : 0;
}

void SensorList::setViewport(double top, double height) {
    const Span viewport{top, height};
    if (viewport == viewport_) return;
    viewport_ = viewport;
    publish();
}

void SensorList::requestViewportTop(double top) {
    const double greatest = std::max(0.0, contentHeight() - viewport_.height);
    const double bounded = std::clamp(top, 0.0, greatest);
    if (bounded == viewport_.top) return;
    viewport_.top = bounded;
    emit viewportTopRequested(bounded);
}

void SensorList::publish() {
    std::vector<SensorCardItem> cards;
    std::size_t rowsAbove = 0;
    for (std::size_t index = 0; index < sections_.size(); ++index) {
        const SensorSectionModel& section = sections_[index];
        const std::size_t firstNumber = std::exchange(rowsAbove, rowsAbove + section.readings.size());
        if (!overlap(cardSpans_[index], viewport_)) continue;
        SensorRowsModel& rows = rowsModel(section.id);
        rows.update(shownRows(section, firstNumber, cardSpans_[index]));
        cards.emplace_back(section, cardSpans_[index], valueShapes_[index], rows);
    }
    cardsModel_.update(std::move(cards));
}

std::vector<SensorRowItem> SensorList::shownRows(const SensorSectionModel& section, std::size_t firstNumber,
                                                 const Span& card) const {
    const auto [first, count] = visibleRows(metrics_, card, section.readings.size(), viewport_);
    std::vector<SensorRowItem> rows;
    rows.reserve(count);
    for (std::size_t row = first; row < first + count; ++row) {
        const SMCReading& reading = *section.readings[row];
        const bool isSelected = isPinned(reading.key);
        rows.emplace_back(reading, section.accent, isSelected,
                          isSelected ? texts_.unpinToolTip : texts_.pinToolTip,
                          static_cast<int>(firstNumber + row) + 1, rowSpan(metrics_, row).top);
    }
    return rows;
}

bool SensorList::isPinned(const std::string& key) const {
    return std::ranges::find(menuBarKeys_, key) != menuBarKeys_.end();
}

SensorRowsModel& SensorList::rowsModel(std::string_view sectionId) {
    auto& model = rowsModels_[sectionId];
    if (model == nullptr) model = std::make_unique<SensorRowsModel>();
    return *model;
}

// The keyboard

QString SensorList::currentKey() const { return qtText(currentKey_); }

void SensorList::ensureCurrent() {
    if (rowCount() == 0) return;
    if (const auto current = numberOfRow(currentKey_)) return goToRow(*current);
    std::size_t number = 0;
    while (number + 1 < rowCount() && spanOfRow(number).top < viewport_.top) ++number;
    goToRow(number);
}

void SensorList::setCurrentKey(const QString& key) {
    if (numberOfRow(key.toStdString())) makeCurrent(key.toStdString());
}

void SensorList::moveCurrent(int rows) {
    const auto number = numberOfRow(currentKey_);
    if (!number) return ensureCurrent();
    const auto target = static_cast<std::ptrdiff_t>(*number) + rows;
    const auto last = static_cast<std::ptrdiff_t>(rowCount()) - 1;
    goToRow(static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(target, 0, last)));
}

void SensorList::moveCurrentByPages(int pages) {
    moveCurrent(pages * std::max(1, static_cast<int>(viewport_.height / metrics_.rowPitch()) - 1));
}

void SensorList::moveCurrentToFirst() {
    if (rowCount() > 0) goToRow(0);
}

void SensorList::moveCurrentToLast() {
    if (rowCount() > 0) goToRow(rowCount() - 1);
}

bool SensorList::goToRowNamed(const QString& text, bool isAfterCurrent) {
    const auto current = numberOfRow(currentKey_);
    const std::size_t first = current ? *current + (isAfterCurrent ? 1 : 0) : 0;
    for (std::size_t step = 0; step < rowCount(); ++step) {
        const std::size_t number = (first + step) % rowCount();
        if (!qtText(rowName(readingOfRow(number))).contains(text, Qt::CaseInsensitive)) continue;
        goToRow(number);
        return true;
    }
    return false;
}

/// The rows that may replace the current row, best first: those below it, then those above it.
std::vector<std::string> SensorList::successorsOfCurrentRow() const {
    std::vector<std::string> keys;
    const auto current = numberOfRow(currentKey_);
    if (!current) return keys;
    for (std::size_t number = *current; number < rowCount(); ++number)
        keys.push_back(readingOfRow(number).key);
    for (std::size_t number = *current; number > 0; --number) keys.push_back(readingOfRow(number - 1).key);
    return keys;
}

void SensorList::keepCurrentRow(const std::vector<std::string>& successors) {
    if (successors.empty()) return;
    const auto next = std::ranges::find_if(
        successors, [this](const std::string& key) { return numberOfRow(key).has_value(); });
    makeCurrent(next == successors.end() ? "" : *next);
}

void SensorList::makeCurrent(const std::string& key) {
    if (std::exchange(currentKey_, key) != key) emit currentKeyChanged();
}

void SensorList::goToRow(std::size_t number) {
    const Span span = spanWithHeader(number);
    if (span.top - metrics_.margin < viewport_.top) {
        requestViewportTop(span.top - metrics_.margin);
    } else if (span.bottom() + metrics_.margin > viewport_.bottom()) {
        requestViewportTop(span.bottom() + metrics_.margin - viewport_.height);
    }
    publish();
    makeCurrent(readingOfRow(number).key);
}

} // namespace kelvinbar
